#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "link/fault.h"
#include "model/mod_Producttypes.h"

namespace kalde2 {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// Scope: g one value for the unit, s one a source, v video sources only, r RGB sources only.
struct Row {
  int address;
  const char* name;
  int minimum, maximum, list;
  bool item_data;
  char scope;
  const char* types = "";  ///< of an address that has more than one name
};

// clang-format off
const Row kRows[] = {
    {130,"Main input",0,0,7,true,'g'}, {131,"Resolution",1,1024,0,false,'g'},
    {133,"Sch Phase",-180,180,0,false,'g',"22 23 57"},
    {133,"CCIR Sch Phase",-180,180,0,false,'g',"26 27 30 31 32 59 35 63"},
    {134,"Zoom",100,1000,0,false,'g'}, {135,"Shrink",10,1000,0,false,'g'},
    {138,"Video Standard",0,0,15,false,'v'}, {145,"Input Pixel Phase",0,31,0,false,'g'},
    {146,"Flicker Reduction",0,0,11,false,'g'}, {149,"Flip",0,0,12,false,'g'},
    {156,"Freeze",0,0,9,false,'g'}, {159,"Zoom Pan H",0,100,0,false,'g'},
    {160,"Zoom Pan V",0,100,0,false,'g'}, {161,"Smoothing",0,0,10,false,'g'},
    {163,"On source loss",0,0,18,false,'s'}, {173,"H Out Shift",0,120,0,false,'g'},
    {174,"V Out Shift",0,120,0,false,'g'}, {175,"Key Y min",0,255,0,false,'g'},
    {176,"Key U min",0,255,0,false,'g'}, {177,"Key V min",0,255,0,false,'g'},
    {178,"Key Y max",0,255,0,false,'g'}, {179,"Key U max",0,255,0,false,'g'},
    {180,"Key V max",0,255,0,false,'g'}, {182,"Left shift",-120,120,0,false,'s'},
    {183,"Top shift",-120,120,0,false,'s'}, {184,"De-interlace",0,0,2,false,'s'},
    {185,"Saturation",0,180,0,false,'v'}, {186,"Hue",-90,90,0,false,'v'},
    {187,"Brightness",0,180,0,false,'v'}, {188,"Contrast",0,180,0,false,'v'},
    {193,"RGB Type",0,0,14,false,'r'}, {197,"R Contrast",75,150,0,false,'r'},
    {198,"G Contrast",75,150,0,false,'r'}, {199,"B Contrast",75,150,0,false,'r'},
    {218,"Shrink Posn H",0,100,0,false,'g'}, {219,"Shrink Posn V",0,100,0,false,'g'},
    {222,"Right shift",-120,100,0,false,'s'}, {223,"Bottom shift",-120,100,0,false,'s'},
    {226,"Out type",0,0,19,false,'g'}, {257,"Out std",0,0,1,false,'g'},
    {258,"Aspect adjust",0,0,13,false,'g'}, {259,"Zoom H",100,1000,0,false,'g',"22 23 57 71"},
    {259,"H Zoom",100,1000,0,false,'g',"24 25 58 26 27 28 29 30 68 31 32 59 33 61 34 62 35 63"},
    {260,"Shrink H",10,100,0,false,'g',"22 23 57 71"},
    {260,"H Shrink",10,100,0,false,'g',"24 25 58 26 27 28 29 30 68 31 32 59 33 61 34 62 35 63"},
    {261,"Zoom V",100,1000,0,false,'g',"22 23 57 71"},
    {261,"V Zoom",100,1000,0,false,'g',"24 25 58 26 27 28 29 30 68 31 32 59 33 61 34 62 35 63"},
    {262,"Shrink V",10,100,0,false,'g',"22 23 57 71"},
    {262,"V Shrink",10,100,0,false,'g',"24 25 58 26 27 28 29 30 68 31 32 59 33 61 34 62 35 63"},
    {266,"Lock mode",0,0,6,false,'g'}, {271,"Max fade level",0,100,0,false,'g'},
    {278,"Setup Source",0,0,20,true,'g'}, {289,"Y Softness",0,255,0,false,'g'},
    {290,"Y Invert",0,0,9,false,'g'}, {291,"U Softness",0,255,0,false,'g'},
    {292,"U Invert",0,0,9,false,'g'}, {293,"V Softness",0,255,0,false,'g'},
    {294,"V Invert",0,0,9,false,'g'}, {295,"Key Enable",0,0,9,false,'g'},
    {315,"Back Y",16,235,0,false,'g'}, {316,"Back U",16,240,0,false,'g'},
    {317,"Back V",16,240,0,false,'g'}, {324,"Swap Fore / Background",0,0,9,false,'g'},
    {329,"Lock source",0,0,5,true,'g'}, {384,"Edge Blend",0,0,3,false,'g'},
    {392,"Blend H Gamma",1,15,0,false,'g'}, {395,"Blend H Size",0,512,0,false,'g'},
    {396,"Blend V Size",0,512,0,false,'g'}, {397,"Blend V Gamma",1,15,0,false,'g'},
    {398,"Shrink Enable",0,0,9,false,'g'}, {399,"Blend Guides",0,0,8,false,'g'},
    {400,"Aspect Change",0,0,17,false,'g'}, {403,"Fade",0,0,16,true,'g'},
    {408,"Comp Side",0,99,0,false,'g'}, {409,"RGB Termination",0,0,21,false,'g'},
    {413,"Comp Center",0,99,0,false,'g'},
};

/// Product types and their addresses in order.
const struct { const char* types; const char* addresses; } kOrders[] = {
    {"22",
     "130 131 257 133 403 398 146 149 156 134 259 261 159 160 135 260 262 218 219 258 400 161 "
     "173 174 278 182 183 222 223 163 197 198 199 193 184 185 186 187 188 138 145 409"},
    {"23 57",
     "130 131 266 329 257 315 316 317 133 403 398 146 149 156 134 259 261 159 160 135 260 262 "
     "218 219 258 400 161 173 174 295 324 175 176 177 178 179 180 289 290 291 292 293 294 278 "
     "182 183 222 223 163 197 198 199 193 184 185 186 187 188 138 145 409"},
    {"71",
     "130 131 226 398 161 149 156 134 259 261 159 160 135 260 262 218 219 258 400 173 174 278 "
     "182 183 222 223 163 197 198 199 193 184 185 186 187 188 138 145"},
    {"24 28 33 61",
     "130 131 226 398 146 149 156 259 261 159 160 260 262 218 219 258 400 161 173 174 271 278 "
     "222 223 182 183 163 138 145 184 185 186 187 188 193 197 198 199"},
    {"25 68",
     "130 131 266 329 315 316 317 226 398 146 149 156 259 261 159 160 260 262 218 219 258 400 "
     "161 173 174 271 295 324 175 176 177 178 179 180 289 290 291 292 293 294 278 222 223 182 "
     "183 163 138 145 184 185 186 187 188 193 197 198 199"},
    {"58 29 34 62",
     "130 131 266 329 315 316 317 226 398 146 149 156 259 261 159 160 260 262 218 219 258 400 "
     "161 173 174 271 295 324 175 176 177 178 179 180 289 290 291 292 293 294 384 399 392 397 "
     "395 396 408 413 278 222 223 182 183 163 138 145 184 185 186 187 188 193 197 198 199"},
    {"26 31",
     "130 131 257 133 398 146 149 156 259 261 159 160 260 262 218 219 258 400 161 173 174 271 "
     "278 222 223 182 183 163 138 145 184 185 186 187 188 193 197 198 199 409"},
    {"27 32",
     "130 131 266 329 257 315 316 317 133 226 398 146 149 156 259 261 159 160 260 262 218 219 "
     "258 400 161 173 174 271 295 324 175 176 177 178 179 180 289 290 291 292 293 294 384 399 "
     "392 397 395 396 408 413 278 222 223 182 183 163 138 145 184 185 186 187 188 193 197 198 "
     "199 409"},
    {"30 35 63",
     "130 131 266 329 257 315 316 317 133 226 398 146 149 156 259 261 159 160 260 262 218 219 "
     "258 400 161 173 174 271 295 324 175 176 177 178 179 180 289 290 291 292 293 294 384 399 "
     "392 397 395 396 408 413 278 222 223 182 183 163 138 145 184 185 186 187 188 193 197 198 "
     "199"},
    {"59",
     "130 131 266 329 257 315 316 317 133 226 398 146 149 156 259 261 159 160 260 262 218 219 "
     "258 400 161 173 174 271 278 222 223 182 183 163 138 145 184 185 186 187 188 193 197 198 "
     "199 409"},
};
// clang-format on

std::vector<int> Numbers(const char* text) {
  std::istringstream in(text);
  return {std::istream_iterator<int>(in), {}};
}

const Row& RowOf(int address, int type) {
  return *std::ranges::find_if(kRows, [&](const Row& row) {
    const std::vector<int> types = Numbers(row.types);
    return row.address == address && (types.empty() || std::ranges::count(types, type) == 1);
  });
}

void ExpectRecord(const ParamRecord& record, const Row& row) {
  SCOPED_TRACE(row.name);
  EXPECT_EQ(record.Name, row.name);
  EXPECT_TRUE(record.Active);
  EXPECT_EQ(record.MinValue, row.minimum);
  EXPECT_EQ(record.MaxValue, row.maximum);
  EXPECT_EQ(record.HasList, row.list != 0);
  if (row.list != 0) {
    EXPECT_EQ(record.ListId, row.list);
    EXPECT_EQ(record.UseItemData, row.item_data);
  }
  EXPECT_EQ(record.PerSource, row.scope != 'g');
  if (row.scope != 'g') {
    EXPECT_EQ(record.VideoOnly, row.scope == 'v');
    EXPECT_EQ(record.RgbOnly, row.scope == 'r');
  }
}

std::ptrdiff_t CountActive(const ParamCatalogue& catalogue) {
  std::ptrdiff_t count = 0;
  for (int index = 0; index < kCatalogueSize; ++index) count += catalogue.Record(index).Active;
  return count;
}

TEST(Catalogue, EveryProductHasItsParametersInItsOrder) {
  ParamCatalogue catalogue;  // one for all: nothing of an earlier product may stay
  std::size_t tested = 0;
  for (const auto& [types, addresses] : kOrders) {
    for (const int type : Numbers(types)) {
      SCOPED_TRACE(type);
      AddProductEntries(catalogue, type);
      std::vector<int> order(catalogue.ActiveParams().begin(), catalogue.ActiveParams().end());
      for (int& index : order) index += kFirstAddress;
      ASSERT_EQ(order, Numbers(addresses));
      EXPECT_EQ(CountActive(catalogue), std::ssize(order));
      for (const int address : order) {
        ExpectRecord(catalogue.Record(address - kFirstAddress), RowOf(address, type));
      }
      ++tested;
    }
  }
  EXPECT_EQ(tested, 22u);
}

TEST(Catalogue, SmallProductAfterALargeOneAndNoneAtAll) {
  ParamCatalogue catalogue;
  EXPECT_THAT(catalogue.ActiveParams(), IsEmpty());
  for (const auto& [type, count] : {std::pair{27, 68}, {28, 38}, {60, 0}, {64, 0}}) {
    AddProductEntries(catalogue, type);
    EXPECT_THAT(catalogue.ActiveParams(), SizeIs(count)) << type;
    EXPECT_EQ(CountActive(catalogue), count) << type;
  }
}

TEST(Catalogue, AddedParameterReadsItsTexts) {
  ParamCatalogue catalogue;
  catalogue.AddParameter(208, "a", 7, "", "abc", true);
  const ParamRecord& record = catalogue.Record(208 - kFirstAddress);
  EXPECT_TRUE(record.PerSource && record.MinValue == 0 && record.MaxValue == 0);
  catalogue.AddParameter(208, "b", 0, " -1.5", "2.5", false);
  EXPECT_TRUE(record.MinValue == -2 && record.MaxValue == 2 && !record.HasList);
  EXPECT_TRUE(record.ListId == 7 && record.UseItemData);  // left as they were
  for (const std::int16_t address : {std::int16_t{129}, std::int16_t{414}}) {
    EXPECT_THROW(catalogue.AddParameter(address, "c", 0, "0", "0", false), Fault);
  }
  EXPECT_THROW(catalogue.AddParameter(200, "c", 0, "0", "32768", false), Fault);
  EXPECT_THROW((void)catalogue.Record(284), Fault);
  EXPECT_THROW((void)catalogue.IsPerSource(-1), Fault);
}

TEST(ProductTypes, ModelTableAndGateDiffer) {
  // clang-format off
  const struct { int type; const char* model; bool features, no_overscan; } models[] = {
      {22, "9R-K2-310", 0, 0}, {23, "9R-K2-315", 1, 0}, {24, "9R-K2-320", 0, 1}, {25, "9R-K2-325", 1, 1},
      {26, "K2-5100", 0, 0}, {27, "K2-5150", 1, 0}, {28, "K2-5200", 0, 1}, {29, "K2-5250", 1, 1},
      {30, "K2-5350", 1, 1}, {31, "K2-6100", 0, 0}, {32, "K2-6150", 1, 0}, {33, "K2-6200", 0, 1},
      {34, "K2-6250", 1, 1}, {35, "K2-6350", 1, 1}, {57, "K2-416", 1, 0}, {58, "K2-426", 1, 1},
      {59, "K2-6150", 1, 0}, {60, "K2-6155", 1, 0}, {61, "K2-6205", 1, 1}, {62, "K2-6255", 1, 1},
      {63, "K2-6355", 1, 1}, {71, "9R-K2-340", 0, 0}};
  // clang-format on
  std::set<int> listed;
  for (const auto& [type, model, features, no_overscan] : models) {
    const ProductModel* const row = FindModel(type);
    ASSERT_NE(row, nullptr) << type;
    EXPECT_EQ(row->model_code, model);
    EXPECT_EQ(row->feature_controls, features) << type;
    EXPECT_EQ(row->no_overscan, no_overscan) << type;
    listed.insert(type);
  }
  for (int type = -1; type < 300; ++type) {
    EXPECT_EQ(FindModel(type) != nullptr, listed.contains(type)) << type;
    EXPECT_EQ(IsSupportedProduct(type), listed.contains(type) && type != 62) << type;
  }
}

}  // namespace
}  // namespace kalde2
