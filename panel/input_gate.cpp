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

InputGate::InputGate(const QObject& controls, const OperatorQueue& queue)
    : controls_(controls), queue_(queue) {
  QCoreApplication::instance()->installEventFilter(this);
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
