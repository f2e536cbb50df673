#include "panel/frame_limiter.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QTest>

namespace kalde2 {
namespace {

/// A window that notes what it showed when it was painted last.
class Screen : public QWidget {
 public:
  int value = 0;
  int painted = 0;
  int frames = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    painted = value;
    ++frames;
  }
};

TEST(FrameLimiterTest, PaintsAtOnceThenOnceAFrameAndTheLastChangeAlways) {
  Screen screen;
  FrameLimiter limiter(&screen);
  screen.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&screen));
  QTest::qWait(50);
  const auto change = [&screen] {
    ++screen.value;
    screen.update();
    QCoreApplication::processEvents();
  };
  screen.frames = 0;
  change();
  EXPECT_EQ(screen.painted, 1) << "at once after a pause";
  change();
  limiter.PaintNow();
  EXPECT_EQ(screen.painted, 2) << "for those who sleep next";
  screen.frames = 0;
  constexpr int kFrames = 10;
  for (QDeadlineTimer frames(kFrames * 16); !frames.hasExpired();) change();
  EXPECT_LE(screen.frames, kFrames + 2);
  EXPECT_GE(screen.frames, 2);
  EXPECT_TRUE(QTest::qWaitFor([&screen] { return screen.painted == screen.value; }, 1000));
}

}  // namespace
}  // namespace kalde2
