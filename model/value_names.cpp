#include "model/value_names.h"

#include <initializer_list>
#include <span>

#include "link/fault.h"
#include "link/numbers.h"
#include "model/mod_Producttypes.h"

namespace kalde2 {
namespace {

using Items = std::initializer_list<std::string_view>;

struct FixedList {
  int list;
  Items items;
};

// Leading blanks, "Med" beside "Med." and "RGBs" beside " RGBS" are the unit's own wording.
// clang-format off
const FixedList kFixedLists[] = {
    {0,  {""}},
    {1,  {"NTSC-M/PAL-BDGHI", "PAL-M/PAL-N", "SECAM"}},
    {2,  {"Normal", "Auto", "Film 3:2", "Low", "Med", "High"}},
    {3,  {"None", "L", "R", "LR", "T", "L T", "RT", "LRT",
          "B", "L B", "R B", "LR B", "TB", "L TB", "RTB", "LRTB"}},
    {4,  {"A", "Z"}},
    {6,  {"Off", "Lock", "Lock+Mix"}},
    {8,  {"Off", "Auto", "On"}},
    {9,  {"Off", "On"}},
    {10, {"Off", "Med.", "High", "Auto"}},
    {11, {"Off", "Low", "Med.", "High"}},
    {12, {"Off", "Horiz", "Vertical", "H & V"}},
    {13, {"Simple", "Advanced"}},
    {14, {"RGBHV", "RGBs", "RGsB", "YUV", "tlYUV", "CV/YC", "D-RGB",
          "tlRGB", " Auto", "  N/A", "A-RGB", "D-YUV", "A-YUV"}},
    {15, {"PAL BGDHI / NTSC M", "NTSC 4.43 50 / PAL 60", "PAL N / NTSC 4.43 60",
          "NTSC N 3.58 / PAL M", "NTSC-Japan 3.58", "SECAM", "B&W 50Hz / 60Hz"}},
    {16, {"Fade Out, -1", "Fade In, 1"}},
    {17, {"Normal", "LetterBox", "SideBars"}},
    {18, {"Show", "Freeze", "Blue", "Black", "Remove"}},
    {19, {"RGBHV", " RGBS", " RGsB", "  YUV", "tlYUV"}},
    {21, {"Off", "On", "Auto"}},
};
// clang-format on

void SetItems(ValueNames& names, int list, std::span<const std::string_view> items) {
  int item = 0;
  for (const std::string_view text : items) names.SetItem(list, item++, text);
}

/// Writes "name,source number" of each fitted source, in ascending order, to all lists given.
void SetFittedSources(ValueNames& names, std::initializer_list<int> lists, const InputNames& inputs,
                      const Connectivity& connectivity) {
  int item = 0;
  for (std::size_t source = 0; source < kSources; ++source) {
    if (!connectivity.SourceFitted[source]) continue;
    const std::int16_t name = connectivity.SourceInfo[source].NameIndex;
    if (name < 0 || static_cast<std::size_t>(name) >= inputs.size()) {
      throw Fault("there is no input name " + std::to_string(name));
    }
    const std::string text = inputs[static_cast<std::size_t>(name)] + "," + std::to_string(source);
    for (const int list : lists) names.SetItem(list, item, text);
    ++item;
  }
}

}  // namespace

const std::string& ValueNames::Item(int list, int item) const {
  if (list < 0 || list >= kLists || item < 0 || item >= kItems) {
    throw Fault("value list " + std::to_string(list) + " has no item " + std::to_string(item));
  }
  return items_[static_cast<std::size_t>(list)][static_cast<std::size_t>(item)];
}

void ValueNames::SetItem(int list, int item, std::string_view text) {
  (void)Item(list, item);
  items_[static_cast<std::size_t>(list)][static_cast<std::size_t>(item)] = text;
}

LabelledNumber SplitItem(std::string_view item) {
  const auto comma = item.find(',');
  if (comma == std::string_view::npos) throw Fault("list item without a number");
  const std::string_view rest = item.substr(comma + 1);
  return {std::string(item.substr(0, comma)),
          RoundToInt32(NumericValue(rest.substr(0, rest.find(','))))};
}

bool IsOfFittedInputs(int list, std::int32_t product_type) {
  if (list == kSetupSourceList) return true;
  const Product* const product = FindProduct(product_type);
  const bool has_fixed_inputs = product != nullptr && product->inputs != nullptr;
  return (list == kLockSourceList || list == kMainInputList) && !has_fixed_inputs;
}

void LoadValueNames(ValueNames& names, std::int32_t product_type, const InputNames& inputs,
                    const Connectivity& connectivity) {
  for (const FixedList& row : kFixedLists) SetItems(names, row.list, row.items);
  SetFittedSources(names, {kSetupSourceList}, inputs, connectivity);
  const Product* const product = FindProduct(product_type);
  if (product != nullptr && product->inputs != nullptr) {
    SetItems(names, kLockSourceList, product->inputs->lock_source);
    SetItems(names, kMainInputList, product->inputs->main_input);
  } else {
    SetFittedSources(names, {kLockSourceList, kMainInputList}, inputs, connectivity);
  }
}

}  // namespace kalde2
