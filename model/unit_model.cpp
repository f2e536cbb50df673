#include "model/unit_model.h"

#include "link/fault.h"
#include "link/per_source.h"
#include "link/source_codes.h"

namespace kalde2 {
namespace {

/// Address whose controls show a value: overall zoom and shrink move the horizontal ones.
constexpr std::int16_t ShownAddress(std::int16_t address) {
  switch (address) {
    case address::kShrink:
      return address::kShrinkH;
    case address::kZoom:
      return address::kZoomH;
    default:
      return address;
  }
}

}  // namespace

void UnitModel::ApplyReply(ReplyRecord& record) {
  try {
    Store(record);
    record.Valid = true;
    Show(record);
    refresh_.Enable();
  } catch (const Fault&) {
    record.Valid = false;
  }
}

void UnitModel::Store(const ReplyRecord& record) {
  const PerSourceRow* const row = FindPerSource(record.Address);
  if (row != nullptr && row->under_reply_source) {
    values.SetSourceValue(row->slot, SourceCodeToIndex(record.Source), record.Value);
  } else {
    values.StoreParamValue(IndexOf(record.Address), record.Value);
  }
}

void UnitModel::Show(const ReplyRecord& record) {
  if (record.Address == address::kLockMode) {
    display_.ShowLockMode(record.Value);
    return;
  }
  if (record.Address == address::kAspectAdjust) display_.ShowAspectAdjust(record.Value != 0);
  display_.ShowValue(ShownAddress(record.Address), record.Value);
}

}  // namespace kalde2
