#include "controls/cpv_slider.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStyleOptionSlider>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace kalde2 {
namespace {

/// A slider from 0 to 255 at 100 in a window that has the focus, and another control beside it.
class CpvSliderTest : public testing::Test {
 protected:
  CpvSliderTest() {
    slider_->setMax(255);
    slider_->setValue(100);
    auto* layout = new QVBoxLayout(&window_);
    layout->addWidget(slider_);
    layout->addWidget(other_);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    changed_.clear();
  }

  /// The place of the handle, as the style has it for the rectangle that the rail takes.
  QPoint Handle() const {
    const int text = slider_->fontMetrics().horizontalAdvance("255");
    QStyleOptionSlider option;
    option.initFrom(slider_);
    option.rect = slider_->rect().adjusted(3, 3, -3 - text - 6, -3);
    option.maximum = slider_->max();
    option.minimum = slider_->Min();
    option.sliderPosition = slider_->Value();
    option.sliderValue = slider_->Value();
    return slider_->style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider_)
        .center();
  }

  QPoint RailEnd() const { return {slider_->width() - 45, slider_->height() / 2}; }

  void DoubleClick(const QPoint& place) {
    QTest::mouseClick(slider_, Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(slider_, Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseRelease(slider_, Qt::LeftButton, Qt::NoModifier, place);
  }

  /// Turns the wheel one notch over the slider; tells whether the slider took the event.
  bool TurnWheel() {
    const QPointF place = slider_->rect().center();
    QWheelEvent event(place, slider_->mapToGlobal(place), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider_, &event);
    return event.isAccepted();
  }

  /// The spin box of the open fine adjustment, or null.
  QDoubleSpinBox* OpenSpin() const {
    auto* spin = slider_->findChild<QDoubleSpinBox*>("spin_fineadjust");
    return spin != nullptr && spin->isVisible() ? spin : nullptr;
  }

  QWidget window_;
  cpvSlider* slider_ = new cpvSlider;
  QLineEdit* other_ = new QLineEdit;
  QSignalSpy changed_{slider_, &cpvSlider::ValueChanged};
  QSignalSpy moved_{slider_, &cpvSlider::Moved};
};

TEST_F(CpvSliderTest, CodeRaisesTheChangeButNotTheOperatorsMove) {
  slider_->setValue(100);
  EXPECT_EQ(changed_.count(), 0);
  slider_->setProperty("Value", 900);
  EXPECT_EQ(slider_->property("Value"), 255);
  slider_->setMax(200);
  EXPECT_EQ(slider_->Value(), 200);
  slider_->setMin(210);
  EXPECT_EQ(slider_->max(), 210);
  EXPECT_EQ(changed_.count(), 3);
  EXPECT_EQ(moved_.count(), 0);
}

TEST_F(CpvSliderTest, AMoveOfTheOperatorWhileCodeSetsTheValueIsHis) {
  bool nested = false;
  QObject::connect(slider_, &cpvSlider::ValueChanged, slider_, [&] {
    if (std::exchange(nested, true)) return;
    QTest::keyClick(slider_, Qt::Key_Right);
  });
  slider_->setValue(50);
  ASSERT_EQ(moved_.count(), 1);
  EXPECT_EQ(moved_.at(0).at(0), 51);
}

TEST_F(CpvSliderTest, KeysStepPageAndGoToTheEnds) {
  slider_->setFocus();
  const std::pair<Qt::Key, int> steps[] = {{Qt::Key_Right, 101},  {Qt::Key_Left, 100},
                                           {Qt::Key_PageUp, 125}, {Qt::Key_PageDown, 100},
                                           {Qt::Key_End, 255},    {Qt::Key_Home, 0}};
  for (const auto& [key, value] : steps) {
    QTest::keyClick(slider_, key);
    EXPECT_EQ(slider_->Value(), value);
    ASSERT_FALSE(moved_.isEmpty());
    EXPECT_EQ(moved_.takeLast().at(0), value);
  }
  EXPECT_EQ(changed_.count(), 6);
}

TEST_F(CpvSliderTest, TheWheelMovesItOnlyWithTheFocus) {
  other_->setFocus();
  EXPECT_FALSE(TurnWheel());
  EXPECT_EQ(slider_->Value(), 100);
  slider_->setFocus();
  EXPECT_TRUE(TurnWheel());
  EXPECT_GT(slider_->Value(), 100);
  EXPECT_EQ(moved_.count(), 1);
  EXPECT_EQ(slider_->focusPolicy(), Qt::StrongFocus) << "the wheel must not take the focus";
}

TEST_F(CpvSliderTest, DraggingTheHandleHoldsItUntilTheRelease) {
  slider_->setShowValueTip(true);
  const QPoint start = Handle();
  QTest::mousePress(slider_, Qt::LeftButton, Qt::NoModifier, start);
  EXPECT_TRUE(slider_->isHeld());
  EXPECT_EQ(slider_->Value(), 100);
  QTest::mouseMove(slider_, start + QPoint(30, 0));
  EXPECT_GT(slider_->Value(), 100);
  EXPECT_EQ(moved_.takeLast().at(0), slider_->Value());
  EXPECT_EQ(QToolTip::text(), QString::number(slider_->Value()));
  QTest::mouseMove(slider_, QPoint(3 * slider_->width(), start.y()));
  EXPECT_EQ(slider_->Value(), 255);
  QTest::mouseRelease(slider_, Qt::LeftButton, Qt::NoModifier, start);
  EXPECT_FALSE(slider_->isHeld());

  QTest::mousePress(slider_, Qt::LeftButton, Qt::NoModifier, Handle());
  ASSERT_TRUE(slider_->isHeld());
  slider_->setEnabled(false);
  EXPECT_FALSE(slider_->isHeld());
}

TEST_F(CpvSliderTest, AClickOnTheRailMovesOnePageTowardsIt) {
  QTest::mousePress(slider_, Qt::LeftButton, Qt::NoModifier, RailEnd());
  EXPECT_TRUE(slider_->isHeld());
  QTest::mouseRelease(slider_, Qt::LeftButton, Qt::NoModifier, RailEnd());
  EXPECT_FALSE(slider_->isHeld());
  EXPECT_EQ(slider_->Value(), 125);
  EXPECT_EQ(moved_.count(), 1);
}

TEST_F(CpvSliderTest, ADoubleClickOnTheHandleGoesToInitial) {
  slider_->setInitial(128);
  DoubleClick(RailEnd());
  EXPECT_EQ(slider_->Value(), 150) << "two clicks on the rail are two pages";
  const int page_away = Handle().x();
  slider_->setValue(125);
  DoubleClick(QPoint(page_away, Handle().y()));
  EXPECT_NE(slider_->Value(), 128) << "the first click only brought the handle there";

  slider_->setValue(100);
  moved_.clear();
  DoubleClick(Handle());
  EXPECT_EQ(slider_->Value(), 128);
  EXPECT_EQ(moved_.count(), 1);
}

TEST_F(CpvSliderTest, FineAdjustmentStepsLiveAndEnterKeeps) {
  EXPECT_EQ(slider_->toolTip(), "Right Click to fine adjust");
  QTest::mouseClick(slider_, Qt::RightButton);
  QDoubleSpinBox* spin = OpenSpin();
  ASSERT_NE(spin, nullptr);
  EXPECT_EQ(slider_->Value(), 100);
  EXPECT_TRUE(slider_->isHeld());
  QTest::keyClick(spin, Qt::Key_Up);
  EXPECT_EQ(slider_->Value(), 101);
  QTest::keyClick(spin, Qt::Key_Up);
  EXPECT_EQ(moved_.count(), 2);
  QTest::keyClick(spin, Qt::Key_Return);
  EXPECT_EQ(OpenSpin(), nullptr);
  EXPECT_FALSE(slider_->isHeld());
  EXPECT_EQ(slider_->Value(), 102);

  QTest::mouseClick(slider_, Qt::RightButton);
  ASSERT_NE(OpenSpin(), nullptr);
  moved_.clear();
  spin->selectAll();
  QTest::keyClicks(spin, "217");
  EXPECT_EQ(moved_.count(), 0) << "a number counts once it is complete";
  QTest::keyClick(spin, Qt::Key_Enter);
  EXPECT_EQ(slider_->Value(), 217);
  EXPECT_EQ(moved_.count(), 1);
}

TEST_F(CpvSliderTest, FineAdjustmentIsOpenedByKeysAndEscRestores) {
  slider_->setFocus();
  for (const auto& [key, modifier] :
       {std::pair{Qt::Key_Menu, Qt::NoModifier}, std::pair{Qt::Key_F10, Qt::ShiftModifier}}) {
    QTest::keyClick(slider_, key, modifier);
    QDoubleSpinBox* spin = OpenSpin();
    ASSERT_NE(spin, nullptr);
    QTest::keyClick(spin, Qt::Key_Down);
    ASSERT_EQ(slider_->Value(), 99);
    spin->selectAll();
    QTest::keyClicks(spin, "7");
    QTest::keyClick(spin, Qt::Key_Escape);
    EXPECT_EQ(OpenSpin(), nullptr);
    EXPECT_EQ(slider_->Value(), 100);
    EXPECT_EQ(moved_.takeLast().at(0), 100);
  }
  slider_->OpenFineAdjust();
  ASSERT_NE(OpenSpin(), nullptr);
  slider_->setEnabled(false);
  EXPECT_EQ(OpenSpin(), nullptr);
  slider_->OpenFineAdjust();
  EXPECT_EQ(OpenSpin(), nullptr);
}

TEST_F(CpvSliderTest, DecimalsShowInTheFineAdjustmentToo) {
  slider_->setLocale(QLocale::c());
  slider_->setDecimalDisplay(1);
  slider_->OpenFineAdjust();
  QDoubleSpinBox* spin = OpenSpin();
  ASSERT_NE(spin, nullptr);
  EXPECT_DOUBLE_EQ(spin->value(), 10.0);
  QTest::keyClick(spin, Qt::Key_Up);
  EXPECT_EQ(slider_->Value(), 101);
}

TEST_F(CpvSliderTest, TheRoomOfTheValueFitsTheWidestAndDoesNotDependOnTheValue) {
  const QSize size = slider_->minimumSizeHint();
  slider_->setValue(3);
  EXPECT_EQ(slider_->minimumSizeHint(), size);
  slider_->setMin(-1000);
  EXPECT_GT(slider_->minimumSizeHint().width(), size.width());
  slider_->setShowValue(false);
  EXPECT_LT(slider_->minimumSizeHint().width(), size.width());
  slider_->setProperty("AdjustType", 1);
  EXPECT_EQ(slider_->orientation(), Qt::Vertical);
  EXPECT_GT(slider_->minimumSizeHint().height(), slider_->minimumSizeHint().width());
}

TEST_F(CpvSliderTest, RailAndHandleTakeTheirPictures) {
  const auto has = [this](const QColor& color) {
    const QImage image = slider_->grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, y) == color) return true;
      }
    }
    return false;
  };
  QPixmap rail(4, 4);
  rail.fill(Qt::magenta);
  QPixmap handle(16, 16);
  handle.fill(Qt::green);
  slider_->setRailPicture(rail);
  EXPECT_FALSE(has(Qt::magenta)) << "the picture is for its own rail style";
  slider_->setProperty("RailStyle", 2);
  EXPECT_TRUE(has(Qt::magenta));
  slider_->setSliderIcon(QIcon(handle));
  EXPECT_TRUE(has(Qt::green));
}

TEST_F(CpvSliderTest, AssistiveToolsReadAndMoveIt) {
  QAccessibleInterface* slider = QAccessible::queryAccessibleInterface(slider_);
  ASSERT_NE(slider->valueInterface(), nullptr);
  EXPECT_EQ(slider->role(), QAccessible::Slider);
  EXPECT_EQ(slider->valueInterface()->currentValue(), 100);
  slider->valueInterface()->setCurrentValue(42);
  EXPECT_EQ(slider_->Value(), 42);
  EXPECT_EQ(moved_.count(), 1) << "what a person does with an assistive tool is the operator's";
}

}  // namespace
}  // namespace kalde2
