#include <gtest/gtest.h>

#include <QSocketNotifier>
#include <thread>

#include "adapters/qt_clock.h"
#include "tests/adapters/test_line.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

class QtClockTest : public testing::Test {
 protected:
  /// How long serving takes, once what is pending at first is done with.
  std::chrono::milliseconds TimeToServe(std::chrono::milliseconds at_most) {
    clock_.ServeEvents(0ms);
    const auto start = clock_.Monotonic();
    clock_.ServeEvents(at_most);
    return clock_.Monotonic() - start;
  }

  QtClock clock_;
};

TEST_F(QtClockTest, SleepsUntilTheDeadlineAtNoCost) {
  EXPECT_LT(TimeToServe(0ms), 20ms);
  EXPECT_LT(TimeToServe(-5ms), 20ms);
  const auto cpu_before = CpuTime();
  const auto waited = TimeToServe(300ms);
  EXPECT_LT(CpuTime() - cpu_before, 30ms);
  EXPECT_GE(waited, 299ms);
  EXPECT_LT(waited, 400ms);
}

TEST_F(QtClockTest, WakesAtOnceWhenBytesArrive) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  bool has_bytes = false;
  QSocketNotifier notifier(ends[0], QSocketNotifier::Read);
  QObject::connect(&notifier, &QSocketNotifier::activated, [&] {
    has_bytes = true;
    notifier.setEnabled(false);
  });
  std::thread sender([&] {
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(write(ends[1], "F", 1), 1);
  });
  const auto waited = TimeToServe(5s);
  sender.join();
  EXPECT_TRUE(has_bytes);
  EXPECT_LT(waited, 500ms);
  close(ends[0]);
  close(ends[1]);
}

}  // namespace
}  // namespace kalde2
