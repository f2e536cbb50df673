#include "link/value_store.h"

#include <string>

#include "link/fault.h"
#include "link/mod_datatypes.h"
#include "link/per_source.h"
#include "link/source_codes.h"

namespace kalde2 {
namespace {

/// Element whose plain value is the column of a stored per-source value: the element numbered as
/// the address of the setup source, not that address's own element. That is intended.
constexpr int kStoreColumn = address::kSetupSource;

std::size_t Checked(int index, int size, const char* table) {
  if (index < 0 || index >= size) {
    throw Fault(std::string(table) + " has no element " + std::to_string(index));
  }
  return static_cast<std::size_t>(index);
}

}  // namespace

std::int32_t ValueStore::GetParamValue(CatalogueIndex index) {
  if (!scope_.IsPerSource(index)) return ParamValue(index.number);
  if (ParamValue(kCurrentSource) == 0) SetParamValue(kCurrentSource, kFirstSourceCode);
  return SourceValue(PerSourceSlot(AddressOf(index)),
                     SourceCodeToIndex(ParamValue(kCurrentSource)));
}

void ValueStore::StoreParamValue(CatalogueIndex index, std::int32_t value) {
  if (scope_.IsPerSource(index)) {
    SetSourceValue(PerSourceSlot(AddressOf(index)), ParamValue(kStoreColumn), value);
    return;
  }
  SetParamValue(index.number, value);
  if (index == IndexOf(address::kZoom)) SetParamValue(IndexOf(address::kZoomH).number, value);
  if (index == IndexOf(address::kShrink)) SetParamValue(IndexOf(address::kShrinkH).number, value);
}

std::int32_t ValueStore::ParamValue(int element) const {
  return param_values_[Checked(element, kParamValues, "ParamValues")];
}

void ValueStore::SetParamValue(int element, std::int32_t value) {
  param_values_[Checked(element, kParamValues, "ParamValues")] = value;
}

std::int32_t ValueStore::SourceValue(int slot, int source) const {
  return source_values_[Checked(slot, kSourceSlots, "SourceValues")]
                       [Checked(source, kSourceColumns, "SourceValues")];
}

void ValueStore::SetSourceValue(int slot, int source, std::int32_t value) {
  source_values_[Checked(slot, kSourceSlots, "SourceValues")]
                [Checked(source, kSourceColumns, "SourceValues")] = value;
}

}  // namespace kalde2
