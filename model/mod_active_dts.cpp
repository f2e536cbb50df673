#include "model/mod_active_dts.h"

#include <algorithm>

#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

// The scope of a parameter is the unit's, not the product's: it is fixed here for all products.
// 208 is among them although no product lists it; that is intended.
constexpr std::array<std::int16_t, 16> kPerSourceAddresses = {
    138, 163, 182, 183, 184, 185, 186, 187, 188, 193, 197, 198, 199, 208, 222, 223};
constexpr std::array<std::int16_t, 4> kRgbOnlyAddresses = {193, 197, 198, 199};
constexpr std::array<std::int16_t, 5> kVideoOnlyAddresses = {138, 185, 186, 187, 188};

template <std::size_t N>
bool Contains(const std::array<std::int16_t, N>& addresses, std::int16_t address) {
  return std::ranges::find(addresses, address) != addresses.end();
}

int CheckedIndex(int index) {
  if (index < 0 || index >= kCatalogueSize) {
    throw Fault("catalogue index " + std::to_string(index) + " is outside 0..283");
  }
  return index;
}

}  // namespace

void ParamCatalogue::BeginBuild() {
  for (ParamRecord& record : records_) {
    record.PerSource = false;
    record.Active = false;
  }
  active_params_.clear();
}

void ParamCatalogue::AddParameter(std::int16_t address, std::string_view name, std::int32_t list,
                                  std::string_view minimum, std::string_view maximum,
                                  Bool16 use_item_data) {
  const std::int16_t index = NarrowToInt16(address - kFirstAddress);
  active_params_.push_back(index);
  ParamRecord& record = records_[static_cast<std::size_t>(CheckedIndex(index))];

  record.PerSource = Contains(kPerSourceAddresses, address);
  if (record.PerSource) {
    record.RgbOnly = Contains(kRgbOnlyAddresses, address);
    record.VideoOnly = Contains(kVideoOnlyAddresses, address);
  }
  record.Active = true;
  record.MaxValue = RoundToInt16(NumericValue(maximum));
  record.MinValue = RoundToInt16(NumericValue(minimum));
  record.Name = name;
  record.HasList = list != 0;
  if (record.HasList) {
    record.ListId = list;
    record.UseItemData = use_item_data;
  }
}

const ParamRecord& ParamCatalogue::Record(int index) const {
  return records_[static_cast<std::size_t>(CheckedIndex(index))];
}

}  // namespace kalde2
