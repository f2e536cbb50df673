#include "panel/input_gate.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace kalde2 {
namespace {

bool IsInput(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
      return true;
    case QEvent::KeyPress: {
      const int key = static_cast<const QKeyEvent&>(event).key();
      return key != Qt::Key_Tab && key != Qt::Key_Backtab && key != Qt::Key_Escape;
    }
    default:
      return false;
  }
}

}  // namespace

BusyControls::BusyControls(QWidget& frame) : frame_(frame) {
  frame.setCursor(Qt::BusyCursor);
  for (QWidget* const control : frame.findChildren<QWidget*>()) {
    if (control->testAttribute(Qt::WA_SetCursor)) {
      pointers_.push_back({control, control->cursor()});
      control->setCursor(Qt::BusyCursor);
    }
    // The toolkit gives the focus before anything can swallow the click.
    const Qt::FocusPolicy policy = control->focusPolicy();
    if ((policy & Qt::ClickFocus) == 0) continue;
    const auto meanwhile = static_cast<Qt::FocusPolicy>(policy & Qt::TabFocus);
    focusables_.push_back({control, policy, meanwhile});
    control->setFocusPolicy(meanwhile);
  }
}

BusyControls::~BusyControls() {
  frame_.unsetCursor();
  for (const Pointer& pointer : pointers_) {
    if (pointer.control != nullptr) pointer.control->setCursor(pointer.before);
  }
  for (const auto& [control, before, meanwhile] : focusables_) {
    // A change of the view sets some anew, and is to stand.
    if (control != nullptr && control->focusPolicy() == meanwhile) control->setFocusPolicy(before);
  }
}

InputGate::InputGate(QWidget& controls, const OperatorQueue& queue)
    : controls_(controls), queue_(queue) {
  QCoreApplication::instance()->installEventFilter(this);
}

void InputGate::ShowBusy(bool is_busy) {
  if (is_busy) {
    busy_.emplace(controls_);
  } else {
    busy_.reset();
  }
}

bool InputGate::eventFilter(QObject* watched, QEvent* event) {
  return queue_.IsBulk() && IsInput(*event) && IsUnitControl(watched);
}

/// Follows the parents across windows: the list of a combo box is a window of its own.
bool InputGate::IsUnitControl(const QObject* object) const {
  while (object != nullptr && object != &controls_) object = object->parent();
  return object != nullptr;
}

}  // namespace kalde2
