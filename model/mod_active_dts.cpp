#include "model/mod_active_dts.h"

#include "link/fault.h"
#include "link/per_source.h"

namespace kalde2 {
namespace {

std::size_t Checked(CatalogueIndex index) {
  if (index.number < 0 || index.number >= kCatalogueSize) {
    throw Fault("catalogue index " + std::to_string(index.number) + " is outside 0..283");
  }
  return static_cast<std::size_t>(index.number);
}

}  // namespace

void ParamCatalogue::BeginBuild() {
  for (ParamRecord& record : records_) {
    record.PerSource = false;
    record.Active = false;
  }
  active_params_.clear();
}

void ParamCatalogue::AddParameter(Address address, std::string_view name, std::int32_t list,
                                  std::int16_t minimum, std::int16_t maximum,
                                  Bool16 use_item_data) {
  const CatalogueIndex index = IndexOf(address);
  active_params_.push_back(index);
  ParamRecord& record = records_[Checked(index)];

  // The scope of a parameter is the unit's, not the product's.
  const PerSourceRow* const per_source = FindPerSource(address);
  record.PerSource = per_source != nullptr;
  if (per_source != nullptr) {
    record.RgbOnly = per_source->inputs == InputKind::kRgb;
    record.VideoOnly = per_source->inputs == InputKind::kVideo;
  }
  record.Active = true;
  record.MaxValue = maximum;
  record.MinValue = minimum;
  record.Name = name;
  record.HasList = list != 0;
  if (record.HasList) {
    record.ListId = list;
    record.UseItemData = use_item_data;
  }
}

const ParamRecord& ParamCatalogue::Record(CatalogueIndex index) const {
  return records_[Checked(index)];
}

}  // namespace kalde2
