#include "adapters/qt_clock.h"

#include <QCoreApplication>
#include <QTimer>
#include <thread>

namespace kalde2 {

using std::chrono::milliseconds;

std::chrono::system_clock::time_point QtClock::Now() const {
  return std::chrono::system_clock::now();
}

milliseconds QtClock::Monotonic() const {
  return std::chrono::duration_cast<milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

void QtClock::ServeEvents(milliseconds at_most) {
  if (at_most <= milliseconds::zero()) {
    QCoreApplication::processEvents();
    return;
  }
  // The time limit of processEvents() would spin; a timer is one more event to sleep for.
  QTimer deadline;
  deadline.setTimerType(Qt::PreciseTimer);
  deadline.setSingleShot(true);
  deadline.start(at_most);
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtClock::Sleep(milliseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace kalde2
