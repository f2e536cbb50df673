#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <tuple>

#include "model/mod_Producttypes.h"

namespace kalde2 {
namespace {

std::vector<int> Numbers(const std::string& text) {
  std::istringstream in(text);
  return {std::istream_iterator<int>(in), {}};
}

bool Contains(const std::string& numbers, int number) {
  return std::ranges::count(Numbers(numbers), number) == 1;
}

/// Product types, each after another, and their addresses in order.
constexpr std::pair<const char*, const char*> kOrders[] = {
    {"27 32",
     "130 131 266 329 257 315 316 317 133 226 398 146 149 156 259 261 159 160 260 262 218 219 258 "
     "400 161 173 174 271 295 324 175 176 177 178 179 180 289 290 291 292 293 294 384 399 392 397 "
     "395 396 408 413 278 222 223 182 183 163 138 145 184 185 186 187 188 193 197 198 199 409"},
    {"71",
     "130 131 226 398 161 149 156 134 259 261 159 160 135 260 262 218 219 258 400 173 174 278 182 "
     "183 222 223 163 197 198 199 193 184 185 186 187 188 138 145"},
    {"60 64", ""}};

TEST(Catalogue, ProductsHaveTheirParametersInTheirOrder) {
  ParamCatalogue catalogue;  // one for all: nothing of an earlier product may stay
  for (const auto& [types, addresses] : kOrders) {
    for (const int type : Numbers(types)) {
      AddProductEntries(catalogue, type);
      std::vector<int> order;
      for (const CatalogueIndex index : catalogue.ActiveParams()) order.push_back(AddressOf(index));
      EXPECT_EQ(order, Numbers(addresses)) << type;
      int active = 0;
      for (const CatalogueIndex index : kCatalogueIndexes) {
        const ParamRecord& record = catalogue.Record(index);
        active += record.Active ? 1 : 0;
        EXPECT_FALSE(record.PerSource && !record.Active) << type;
      }
      EXPECT_EQ(active, static_cast<int>(order.size())) << type;
    }
  }
}

TEST(Catalogue, NamesAndLimitsThatAreEasilyPutRight) {
  const std::tuple<int, int, const char*, int, int> rows[] = {
      {32, 133, "CCIR Sch Phase", -180, 180}, {57, 259, "Zoom H", 100, 1000},
      {32, 262, "V Shrink", 10, 100},         {57, 135, "Shrink", 10, 1000},
      {32, 222, "Right shift", -120, 100},    {32, 315, "Back Y", 16, 235}};
  for (const auto& [type, address, name, minimum, maximum] : rows) {
    ParamCatalogue catalogue;
    AddProductEntries(catalogue, type);
    const ParamRecord& record = catalogue.Record(IndexOf(address));
    EXPECT_EQ(record.Name, name);
    EXPECT_TRUE(record.MinValue == minimum && record.MaxValue == maximum) << name;
  }
}

TEST(ProductTypes, ModelTableAndGateDiffer) {
  const std::string gate = "22 23 24 25 26 27 28 29 30 31 32 33 34 35 57 58 59 60 61 63 71";
  for (int type = -1; type < 300; ++type) {
    EXPECT_EQ(FindSupportedProduct(type) != nullptr, Contains(gate, type)) << type;
    EXPECT_EQ(FindProduct(type) != nullptr, Contains(gate + " 62 68", type)) << type;
  }
  EXPECT_EQ(FindProduct(59)->model_code, "K2-6150");  // as 32
  EXPECT_EQ(FindProduct(62)->model_code, "K2-6255");
}

}  // namespace
}  // namespace kalde2
