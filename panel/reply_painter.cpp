#include "panel/reply_painter.h"

#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

void SelectEntry(QComboBox& combo, int index) {
  const bool exists = index >= -1 && index < combo.count();
  combo.setCurrentIndex(exists ? index : -1);
  if (!exists) throw Fault("the list has no such entry");
}

}  // namespace

int FindItemDataIndex(std::int16_t value, const QComboBox& list) {
  const int index = list.findData(static_cast<int>(value));
  return index < 0 ? 0 : index;
}

void ReplyPainter::ShowAspectAdjust(bool advanced) {
  form_.mnu_function_aspect->setChecked(advanced);
  form_.SetAspectVisible(advanced);
}

void ReplyPainter::ShowLockMode(std::int32_t value) {
  if (queue_ != nullptr && queue_->HasKept(kLockModeControl)) return;
  form_.SelectLockMode(value);
  // The option buttons' own effect: genlock and mix have a source, off has none.
  if (value >= 0 && static_cast<std::size_t>(value) < kLockModes.size()) {
    form_.SetLockSourceVisible(value != 0);
  }
}

void ReplyPainter::ShowValue(std::int16_t address, std::int32_t value) {
  for (QWidget* const control : form_.ReplyControls()) {
    const QVariant tag_property = control->property("Tag");
    if (!tag_property.isValid()) continue;
    const int tag = tag_property.toInt();
    if (auto* const combo = qobject_cast<QComboBox*>(control)) {
      ShowOnCombo(*combo, tag, address, value);
    } else if (auto* const pad = qobject_cast<ArrowControl*>(control)) {
      ShowOnPad(*pad, tag, address, value);
    } else if (tag == address) {
      ShowOnOther(*control, value);
    }
  }
}

void ReplyPainter::ShowOnCombo(QComboBox& combo, int tag, std::int16_t address,
                               std::int32_t value) const {
  if (tag != address || HasNewer(combo)) return;
  // The resolution's value is its place in the list, the sources' are item data.
  SelectEntry(combo,
              tag == address::kResolution ? value : FindItemDataIndex(NarrowToInt16(value), combo));
}

void ReplyPainter::ShowOnPad(ArrowControl& pad, int tag, std::int16_t address,
                             std::int32_t value) const {
  if (pad.PressedArrow() != ArrowControl::Arrow::kNone || HasNewer(pad)) return;
  if (tag == address) {
    pad.setValueX(value);
  } else if (pad.TAG2().toInt() == address) {
    pad.setValueY(value);
  }
}

void ReplyPainter::ShowOnOther(QWidget& control, std::int32_t value) const {
  if (HasNewer(control)) return;
  if (auto* const slider = qobject_cast<cpvSlider*>(&control)) {
    if (!slider->isHeld()) slider->setValue(value);
  } else if (auto* const box = qobject_cast<QCheckBox*>(&control)) {
    box->setChecked(value != 0);
  } else {
    throw Fault("the control shows no value");
  }
}

bool ReplyPainter::HasNewer(const QWidget& control) const {
  return queue_ != nullptr && queue_->HasKept(control.objectName().toStdString());
}

}  // namespace kalde2
