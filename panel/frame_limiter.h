#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <chrono>

namespace kalde2 {

/// Lets a window paint what has changed once a frame instead of once a reply: a reply that moves a
/// control would otherwise be painted before the next one is read. What has changed after a frame's
/// pause is painted at once.
class FrameLimiter : public QObject {
 public:
  explicit FrameLimiter(QWidget* window) : QObject(window), window_(window) {
    next_.setSingleShot(true);
    next_.setTimerType(Qt::PreciseTimer);
    next_.callOnTimeout(this, &FrameLimiter::PaintNow);
    window->installEventFilter(this);
  }

  /// Paints what has changed, for those who sleep next.
  void PaintNow() {
    next_.stop();
    last_.invalidate();
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window_, &request);
  }

 protected:
  bool eventFilter(QObject* /*window*/, QEvent* event) override {
    if (event->type() != QEvent::UpdateRequest) return false;
    const milliseconds passed = last_.isValid() ? milliseconds(last_.elapsed()) : kFrame;
    if (passed >= kFrame) {
      last_.start();
      return false;
    }
    if (!next_.isActive()) next_.start(kFrame - passed);
    return true;
  }

 private:
  using milliseconds = std::chrono::milliseconds;

  /// No screen shows more pictures than one in this time.
  static constexpr milliseconds kFrame{16};

  QWidget* window_;
  QTimer next_;
  QElapsedTimer last_;
};

}  // namespace kalde2
