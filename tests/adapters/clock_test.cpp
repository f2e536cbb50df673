#include <gtest/gtest.h>

#include <QTimer>

#include "adapters/qt_clock.h"
#include "tests/adapters/test_line.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

TEST(QtClockTest, SleepsUntilTheDeadlineOrAnEventAtNoCost) {
  QtClock clock;
  const auto time_to_serve = [&](std::chrono::milliseconds at_most) {
    clock.ServeEvents(0ms);  // what is pending
    const auto start = clock.Monotonic();
    clock.ServeEvents(at_most);
    return clock.Monotonic() - start;
  };
  EXPECT_LT(time_to_serve(-5ms), 20ms);
  const auto cpu_before = CpuTime();
  const auto waited = time_to_serve(300ms);
  EXPECT_LT(CpuTime() - cpu_before, 30ms);
  EXPECT_GE(waited, 299ms);
  EXPECT_LT(waited, 400ms);

  QTimer event;
  event.start(50ms);
  EXPECT_LT(time_to_serve(5s), 500ms);
}

}  // namespace
}  // namespace kalde2
