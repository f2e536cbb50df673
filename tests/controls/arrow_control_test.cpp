#include "controls/arrow_control.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <limits>

namespace kalde2 {
namespace {

using Arrow = ArrowControl::Arrow;

/// A pad that has the focus.
class ArrowControlTest : public testing::Test {
 protected:
  ArrowControlTest() {
    pad_.show();
    pad_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&pad_));
    pad_.setFocus();
  }

  QWidget* Picture(Arrow arrow) const {
    return pad_.findChild<QWidget*>(QString("pic_arrow_%1").arg(static_cast<int>(arrow)));
  }
  void Click(Arrow arrow) const { QTest::mouseClick(Picture(arrow), Qt::LeftButton); }

  ArrowControl pad_;
  QSignalSpy events_{&pad_, &ArrowControl::ValueChanged};
};

TEST_F(ArrowControlTest, LimitsHoldStepsButNotValuesThatAreSet) {
  pad_.setValueX(500);
  EXPECT_EQ(events_.count(), 0) << "setting a value raises nothing";
  EXPECT_EQ(pad_.findChild<QLabel*>("lbl_valx")->text(), "H: 500");
  Click(Arrow::kLeft);
  EXPECT_EQ(pad_.valueX(), 499);
  Click(Arrow::kRight);
  EXPECT_EQ(pad_.valueX(), 100);

  constexpr int kHighest = std::numeric_limits<int>::max();
  pad_.setValueYmax(kHighest);
  pad_.setValueY(kHighest);
  Click(Arrow::kDown);
  EXPECT_EQ(pad_.valueY(), kHighest);
}

TEST_F(ArrowControlTest, HoldingRepeatsWithTheLargerStep) {
  constexpr int kInterval = 60;
  pad_.findChild<QTimer*>("tmr_repeat")->setInterval(kInterval);
  pad_.setValueX(98);
  const QDeadlineTimer two_intervals(2 * kInterval);
  QTest::mousePress(Picture(Arrow::kRight), Qt::RightButton);
  ASSERT_TRUE(QTest::qWaitFor([this] { return events_.count() >= 3; }, 5000));
  EXPECT_TRUE(two_intervals.hasExpired()) << "the first comes one interval after the press";
  pad_.setRepeatInterval(0);
  const auto count = events_.count();
  QTest::qWait(3 * kInterval);
  EXPECT_EQ(events_.count(), count) << "an interval of 0 ends the repetition";
  EXPECT_EQ(events_.at(0), (QVariantList{99, 0}));
  EXPECT_EQ(events_.at(1), (QVariantList{100, 0}));
  EXPECT_EQ(events_.at(2), (QVariantList{100, 0})) << "raised without effect as well";
}

TEST_F(ArrowControlTest, ArrowKeysStepAndRepeatAtThePadsPace) {
  QTest::keyPress(&pad_, Qt::Key_Down);
  for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
    QKeyEvent repeated(type, Qt::Key_Down, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(&pad_, &repeated);
    EXPECT_EQ(pad_.PressedArrow(), Arrow::kDown);
  }
  EXPECT_EQ(events_.count(), 1) << "the keyboard's own repetition does not step";

  QTest::keyPress(&pad_, Qt::Key_Left);
  QTest::keyRelease(&pad_, Qt::Key_Down);
  EXPECT_EQ(pad_.PressedArrow(), Arrow::kLeft) << "the newer key holds on";
  QTest::keyRelease(&pad_, Qt::Key_Left);
  EXPECT_EQ(pad_.PressedArrow(), Arrow::kNone);
  QTest::keyClick(&pad_, Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(events_.takeLast(), (QVariantList{-1, 1}));
}

TEST_F(ArrowControlTest, AHoldEndsWithTheReleaseTheFocusAndWhenHiddenOrDisabled) {
  QWidget* const right = Picture(Arrow::kRight);
  const std::function<void()> ends[] = {[&] { QTest::mouseRelease(right, Qt::RightButton); },
                                        [&] { pad_.clearFocus(); }, [&] { pad_.hide(); },
                                        [&] { pad_.setEnabled(false); }};
  pad_.setRepeatInterval(10);
  for (const auto& end : ends) {
    pad_.show();
    pad_.setFocus();
    QTest::mousePress(right, Qt::RightButton);
    ASSERT_EQ(pad_.PressedArrow(), Arrow::kRight);
    end();
    events_.clear();
    QTest::qWait(40);
    EXPECT_EQ(events_.count(), 0);
    QTest::mouseRelease(right, Qt::RightButton);
  }
  Click(Arrow::kRight);
  QTest::keyClick(&pad_, Qt::Key_Right);
  EXPECT_EQ(events_.count(), 0) << "a disabled pad cannot be stepped";
}

}  // namespace
}  // namespace kalde2
