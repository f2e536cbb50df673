#include "panel/reply_painter.h"

#include <QDynamicPropertyChangeEvent>

#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

constexpr const char* kTag = "Tag";

void SelectEntry(QComboBox& list, int index, bool has_newer) {
  const bool exists = index >= -1 && index < list.count();
  if (!exists) throw Fault("the list has no such entry");
  if (!has_newer) list.setCurrentIndex(index);
}

int ItemIndexOf(std::int32_t value, const QComboBox& list) {
  return FindItemDataIndex(NarrowToInt16(value), list);
}

}  // namespace

int FindItemDataIndex(std::int16_t value, const QComboBox& list) {
  const int index = list.findData(static_cast<int>(value));
  return index < 0 ? 0 : index;
}

ReplyPainter::ReplyPainter(VornikForm& form, const OperatorQueue& queue)
    : form_(form), queue_(queue) {
  for (QWidget* const control : form.ReplyControls()) {
    control->installEventFilter(this);
    if (auto* const pad = qobject_cast<ArrowControl*>(control)) {
      connect(pad, &ArrowControl::TAG2Changed, this, &ReplyPainter::NoteTags);
    }
  }
  NoteTags();
}

bool ReplyPainter::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::DynamicPropertyChange &&
      static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName() == kTag) {
    NoteTags();
  }
  return false;
}

void ReplyPainter::NoteTags() {
  tagged_.clear();
  for (QWidget* const control : form_.ReplyControls()) {
    NoteTag(*control, control->property(kTag), false);
    if (const auto* const pad = qobject_cast<ArrowControl*>(control)) {
      NoteTag(*control, pad->TAG2(), true);
    }
  }
}

void ReplyPainter::NoteTag(QWidget& control, const QVariant& tag, bool is_vertical) {
  const int address = tag.toInt();
  if (address == 0) return;  // no number
  const std::string name = control.objectName().toStdString();
  const bool is_axis = qobject_cast<ArrowControl*>(&control) != nullptr;
  tagged_.push_back(
      {&control, address, is_vertical, is_axis ? OperatorQueue::PartName(name, address) : name});
}

void ReplyPainter::ShowAspectAdjust(bool advanced) {
  form_.mnu_function_aspect->setChecked(advanced);
  form_.SetAspectVisible(advanced);
}

void ReplyPainter::ShowLockMode(std::int32_t value) {
  if (queue_.HasKept(kLockModeControl)) return;
  form_.ShowLockMode(value);
}

void ReplyPainter::ShowValue(std::int16_t address, std::int32_t value) {
  const QWidget* shown_on = nullptr;
  for (const Tagged& control : tagged_) {
    if (control.address != address) continue;
    // A pad whose axes have one address shows it on the horizontal one alone.
    if (control.is_vertical && control.widget == shown_on) continue;
    Show(control, value);
    shown_on = control.widget;
  }
}

void ReplyPainter::Show(const Tagged& control, std::int32_t value) const {
  if (qobject_cast<QComboBox*>(control.widget) != nullptr) {
    ShowOnList(control, value);
  } else if (HasNewer(control)) {
    return;
  } else if (auto* const pad = qobject_cast<ArrowControl*>(control.widget)) {
    control.is_vertical ? pad->setValueY(value) : pad->setValueX(value);
  } else if (auto* const slider = qobject_cast<cpvSlider*>(control.widget)) {
    slider->Follow(value);
  } else if (auto* const button = qobject_cast<QAbstractButton*>(control.widget);
             button != nullptr && button->isCheckable()) {
    button->setChecked(value != 0);
  } else {
    throw Fault("the control shows no value");
  }
}

/// A list's `Tag` says that a list follows the address; which one it is goes by the address.
void ReplyPainter::ShowOnList(const Tagged& control, std::int32_t value) const {
  switch (control.address) {
    case address::kResolution:  // its value is its place in the list, the sources' are item data
      return SelectEntry(*form_.cbo_resolution, value, HasNewer(control));
    case address::kMainInput:
      return SelectEntry(*form_.cbo_program, ItemIndexOf(value, *form_.cbo_program),
                         HasNewer(control));
    case address::kLockSource:
      return SelectEntry(*form_.cbo_lock, ItemIndexOf(value, *form_.cbo_lock), HasNewer(control));
    default:
      throw Fault("the list shows no value");
  }
}

bool ReplyPainter::HasNewer(const Tagged& control) const {
  return queue_.HasKept(control.name);
}

}  // namespace kalde2
