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

ReplyPainter::ReplyPainter(VornikForm& form, const OperatorQueue& queue)
    : form_(form), queue_(queue) {
  for (QWidget* const control : form.ReplyControls()) {
    const QVariant tag = control->property("Tag");
    if (!tag.isValid()) continue;
    const auto* const pad = qobject_cast<ArrowControl*>(control);
    tagged_.push_back({control, tag.toInt(), pad != nullptr ? pad->TAG2().toInt() : 0});
  }
}

void ReplyPainter::ShowAspectAdjust(bool advanced) {
  form_.mnu_function_aspect->setChecked(advanced);
  form_.SetAspectVisible(advanced);
}

void ReplyPainter::ShowLockMode(std::int32_t value) {
  if (queue_.HasKept(kLockModeControl)) return;
  form_.SelectLockMode(value);
  // The option buttons' own effect: genlock and mix have a source, off has none.
  if (value >= 0 && static_cast<std::size_t>(value) < kLockModes.size()) {
    form_.SetLockSourceVisible(value != 0);
  }
}

void ReplyPainter::ShowValue(std::int16_t address, std::int32_t value) {
  for (const Tagged& control : tagged_) {
    if (control.tag != address && control.tag2 != address) continue;
    if (auto* const combo = qobject_cast<QComboBox*>(control.widget)) {
      ShowOnCombo(*combo, address, value);
    } else if (auto* const pad = qobject_cast<ArrowControl*>(control.widget)) {
      ShowOnPad(*pad, control.tag == address, value);
    } else {
      ShowOnOther(*control.widget, value);
    }
  }
}

void ReplyPainter::ShowOnCombo(QComboBox& combo, std::int16_t address, std::int32_t value) const {
  if (HasNewer(combo)) return;
  // The resolution's value is its place in the list, the sources' are item data.
  SelectEntry(combo, address == address::kResolution
                         ? value
                         : FindItemDataIndex(NarrowToInt16(value), combo));
}

void ReplyPainter::ShowOnPad(ArrowControl& pad, bool is_horizontal, std::int32_t value) const {
  if (pad.PressedArrow() != ArrowControl::Arrow::kNone || HasNewer(pad)) return;
  if (is_horizontal) {
    pad.setValueX(value);
  } else {
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
  return queue_.HasKept(control.objectName().toStdString());
}

}  // namespace kalde2
