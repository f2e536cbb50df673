#include "controls/cpv_slider.h"

#include <gtest/gtest.h>

#include <QDoubleSpinBox>
#include <QSignalSpy>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>
#include <functional>

namespace kalde2 {
namespace {

/// A slider from 0 to 255 at 100 that has the focus.
class CpvSliderTest : public testing::Test {
 protected:
  CpvSliderTest() {
    slider_.setMax(255);
    slider_.setValue(100);
    slider_.resize(200, 40);
    slider_.show();
    slider_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&slider_));
    slider_.setFocus();
    changed_.clear();
  }

  QPoint Handle() const {
    QStyleOptionSlider option;
    slider_.initStyleOption(&option);
    return slider_.style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider_)
        .center();
  }

  struct : cpvSlider {
    using cpvSlider::initStyleOption;
  } slider_;
  QSignalSpy changed_{&slider_, &cpvSlider::ValueChanged};
  QSignalSpy moved_{&slider_, &cpvSlider::Moved};
};

TEST_F(CpvSliderTest, CodeRaisesTheChangeButNotTheOperatorsMove) {
  slider_.setValue(100);
  EXPECT_EQ(changed_.count(), 0);
  slider_.setValue(900);
  slider_.setMax(200);
  slider_.setMin(210);
  EXPECT_EQ(changed_.count(), 3);
  EXPECT_EQ(slider_.Value(), 210);
  EXPECT_EQ(moved_.count(), 0);

  QObject::connect(
      &slider_, &cpvSlider::ValueChanged, &slider_,
      [this] { QTest::keyClick(&slider_, Qt::Key_Home); }, Qt::SingleShotConnection);
  slider_.setMin(0);
  slider_.setValue(50);
  ASSERT_EQ(moved_.count(), 1) << "a move while code sets the value is the operator's";
  EXPECT_EQ(moved_.at(0).at(0), 0);
}

TEST_F(CpvSliderTest, TheWheelMovesItOnlyWithTheFocus) {
  const QPointF place = slider_.rect().center();
  for (const bool focused : {true, false}) {
    QWheelEvent turn(place, slider_.mapToGlobal(place), QPoint(), QPoint(0, 120), Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&slider_, &turn);
    EXPECT_EQ(turn.isAccepted(), focused);
    EXPECT_EQ(moved_.count(), 1);
    slider_.clearFocus();
  }
  EXPECT_EQ(slider_.focusPolicy(), Qt::StrongFocus) << "the wheel must not take the focus";
}

TEST_F(CpvSliderTest, ItIsHeldWhileAMouseButtonIsDownOnIt) {
  QTest::mousePress(&slider_, Qt::LeftButton, Qt::NoModifier, Handle());
  EXPECT_TRUE(slider_.isHeld());
  QTest::mouseMove(&slider_, Handle() + QPoint(30, 0));
  EXPECT_GT(slider_.Value(), 100);
  EXPECT_EQ(moved_.takeLast().at(0), slider_.Value());
  QTest::mouseRelease(&slider_, Qt::LeftButton);
  EXPECT_FALSE(slider_.isHeld());
}

TEST_F(CpvSliderTest, AClickWhoseReleaseComesWhileItsOwnMoveIsHeardIsOver) {
  constexpr int kRepeatsLater = 700;
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
    slider_.setValue(100);
    moved_.clear();
    const QPoint rail(3, slider_.height() / 2);
    QObject::connect(
        &slider_, &cpvSlider::Moved, &slider_,
        [&] { QTest::mouseRelease(&slider_, button, Qt::NoModifier, rail); },
        Qt::SingleShotConnection);
    QTest::mousePress(&slider_, button, Qt::NoModifier, rail);
    EXPECT_FALSE(slider_.isHeld());
    QTest::qWait(kRepeatsLater);
    EXPECT_EQ(moved_.count(), 1);
  }
}

TEST_F(CpvSliderTest, ADoubleClickOnTheHandleIsTwoClicks) {
  slider_.setInitial(0);
  QTest::mouseClick(&slider_, Qt::LeftButton, Qt::NoModifier, Handle());
  QTest::mouseDClick(&slider_, Qt::LeftButton, Qt::NoModifier, Handle());
  QTest::mouseRelease(&slider_, Qt::LeftButton, Qt::NoModifier, Handle());
  EXPECT_EQ(slider_.Value(), 100);
  EXPECT_EQ(moved_.count(), 0);
  EXPECT_FALSE(slider_.isHeld());
}

TEST_F(CpvSliderTest, WhatItFollowsShowsWhenItIsLetGoUnlessItWasChangedSince) {
  const auto spin_key = [this](Qt::Key key) {
    QTest::keyClick(slider_.findChild<QDoubleSpinBox*>("spin_fineadjust"), key);
  };
  struct Hold {
    std::function<void()> begin;
    std::function<void()> change;
    std::function<void()> end;
  };
  const auto press = [this] { QTest::mousePress(&slider_, Qt::LeftButton, {}, Handle()); };
  const auto drag = [this] { QTest::mouseMove(&slider_, Handle() + QPoint(20, 0)); };
  const auto open = [this] { QTest::mouseClick(&slider_, Qt::RightButton); };
  const QPoint rail(3, slider_.height() / 2);
  const auto press_rail = [&] { QTest::mousePress(&slider_, Qt::LeftButton, {}, rail); };
  const Hold holds[] = {
      {press, drag, [this] { QTest::mouseRelease(&slider_, Qt::LeftButton); }},
      {press, drag, [this] { slider_.hide(); }},
      {press, drag, [this] { slider_.setEnabled(false); }},
      {open, [&] { spin_key(Qt::Key_Up); }, [&] { spin_key(Qt::Key_Enter); }},
      {open, [&] { spin_key(Qt::Key_Up); }, [this] { slider_.setEnabled(false); }},
      {press_rail, [] {}, [&] { QTest::mouseRelease(&slider_, Qt::LeftButton, {}, rail); }},
      {press_rail, [] {}, [this] { slider_.setEnabled(false); }},
      {press_rail, [] {}, [this] { slider_.hide(); }},
  };
  for (const Hold& hold : holds) {
    for (const bool changed_since : {false, true}) {
      SCOPED_TRACE(&hold - holds);
      slider_.show();
      slider_.setEnabled(true);
      slider_.setFocus();
      slider_.setValue(100);
      hold.begin();
      slider_.Follow(7);
      slider_.Follow(222);
      EXPECT_NE(slider_.Value(), 222) << "it is held";
      const int before = slider_.Value();
      if (changed_since) hold.change();
      const int changed = slider_.Value();
      moved_.clear();
      hold.end();
      EXPECT_EQ(slider_.Value(), changed == before ? 222 : changed);
      EXPECT_EQ(moved_.count(), 0) << "not the operator's";
      QTest::mouseRelease(&slider_, Qt::LeftButton);
    }
  }
  slider_.Follow(30);
  EXPECT_EQ(slider_.Value(), 30);
}

TEST_F(CpvSliderTest, OnlyAWholeRightClickAndItsKeysOpenTheFineAdjustment) {
  const QPoint outside(-5, -5);
  const QPoint middle = slider_.rect().center();
  const auto menu = [&](QContextMenuEvent::Reason reason) {
    QContextMenuEvent event(reason, middle, slider_.mapToGlobal(middle));
    QApplication::sendEvent(&slider_, &event);
    EXPECT_TRUE(event.isAccepted());
  };
  const std::pair<std::function<void()>, bool> ways[] = {
      {[&] { QTest::mouseClick(&slider_, Qt::RightButton); }, true},
      {[&] { QTest::mouseRelease(&slider_, Qt::RightButton); }, false},
      {[&] {
         QTest::mousePress(&slider_, Qt::RightButton);
         QTest::mouseRelease(&slider_, Qt::RightButton, {}, outside);
       },
       false},
      {[&] { QTest::mouseRelease(&slider_, Qt::RightButton); }, false},
      {[&] { QTest::mouseClick(&slider_, Qt::MiddleButton, {}, Handle()); }, false},
      {[&] { QTest::keyClick(&slider_, Qt::Key_Menu); }, true},
      {[&] { QTest::keyClick(&slider_, Qt::Key_F10, Qt::ShiftModifier); }, true},
      {[&] { QTest::keyClick(&slider_, Qt::Key_F10); }, false},
      {[&] { menu(QContextMenuEvent::Mouse); }, false},
      {[&] { menu(QContextMenuEvent::Keyboard); }, true}};
  for (const auto& [act, opens] : ways) {
    act();
    EXPECT_EQ(slider_.isHeld(), opens) << "one of the ways";
    if (opens)
      QTest::keyClick(slider_.findChild<QDoubleSpinBox*>("spin_fineadjust"), Qt::Key_Escape);
  }
}

TEST_F(CpvSliderTest, FineAdjustmentStepsLiveUntilEnterKeepsOrEscRestores) {
  slider_.setDecimalDisplay(1);
  for (const auto& [key, kept] : {std::pair{Qt::Key_Escape, 100}, {Qt::Key_Enter, 210}}) {
    slider_.setValue(100);
    QTest::mouseClick(&slider_, Qt::RightButton);
    auto* const spin = slider_.findChild<QDoubleSpinBox*>("spin_fineadjust");
    ASSERT_TRUE(spin != nullptr && spin->isVisible() && slider_.isHeld());
    EXPECT_DOUBLE_EQ(spin->value(), 10.0);
    QTest::keyClick(spin, Qt::Key_Up);
    EXPECT_EQ(moved_.takeLast().at(0), 101);
    spin->selectAll();
    QTest::keyClicks(spin, "21");
    EXPECT_EQ(moved_.count(), 0) << "a number counts once it is complete";
    QTest::keyClick(spin, key);
    EXPECT_EQ(moved_.takeLast().at(0), kept);
    EXPECT_FALSE(slider_.isHeld());
  }
}

}  // namespace
}  // namespace kalde2
