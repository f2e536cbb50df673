#include "link/value_store.h"

#include <string>

#include "link/fault.h"
#include "link/per_source.h"
#include "link/source_codes.h"

namespace kalde2 {
namespace {

constexpr int kZoomIndex = 4;
constexpr int kZoomMirror = 129;
constexpr int kShrinkIndex = 5;
constexpr int kShrinkMirror = 130;

/// Element whose plain value is the column of a stored per-source value: the element numbered as
/// the address of the setup source, not that address's own element. That is intended.
constexpr int kStoreColumn = 278;

std::size_t Checked(int index, int size, const char* table) {
  if (index < 0 || index >= size) {
    throw Fault(std::string(table) + " has no element " + std::to_string(index));
  }
  return static_cast<std::size_t>(index);
}

}  // namespace

std::int32_t ValueStore::GetParamValue(int index) {
  if (!scope_.IsPerSource(index)) return ParamValue(index);
  if (ParamValue(kCurrentSource) == 0) SetParamValue(kCurrentSource, kFirstSourceCode);
  return SourceValue(PerSourceSlot(index + kFirstAddress),
                     SourceCodeToIndex(ParamValue(kCurrentSource)));
}

void ValueStore::StoreParamValue(int index, std::int32_t value) {
  if (scope_.IsPerSource(index)) {
    SetSourceValue(PerSourceSlot(index + kFirstAddress), ParamValue(kStoreColumn), value);
    return;
  }
  SetParamValue(index, value);
  if (index == kZoomIndex) SetParamValue(kZoomMirror, value);
  if (index == kShrinkIndex) SetParamValue(kShrinkMirror, value);
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
