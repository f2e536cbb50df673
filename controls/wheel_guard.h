#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>

namespace kalde2 {

/// Lets the wheel change a control only while it has the focus, so that scrolling past it changes
/// nothing.
class WheelGuard : public QObject {
 public:
  static void Protect(QWidget* widget) {
    widget->setFocusPolicy(Qt::StrongFocus);
    widget->installEventFilter(new WheelGuard(widget));
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel) return false;
    if (static_cast<QWidget*>(watched)->hasFocus()) return false;
    event->ignore();
    return true;
  }

 private:
  explicit WheelGuard(QWidget* widget) : QObject(widget) {}
};

}  // namespace kalde2
