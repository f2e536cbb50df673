// What is seen of controls: focus, marks in the dark, what is disabled, and what nothing may cover.

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QHelpEvent>
#include <QLabel>
#include <QRadioButton>
#include <QStyleFactory>
#include <QTest>
#include <cstdlib>
#include <functional>

#include "controls/arrow_control.h"
#include "controls/cpv_slider.h"
#include "controls/drop_down_list.h"
#include "controls/line_list.h"
#include "controls/shared_style.h"

namespace kalde2 {
namespace {

QPalette Dark() {
  QPalette palette(QColor(0x2b, 0x2d, 0x30));
  palette.setColor(QPalette::Highlight, QColor(0x35, 0x74, 0xc8));
  return palette;
}

/// How far the picture's colours go from the one that is everywhere at its edge.
int FarthestFrom(const QColor& ground, const QImage& picture) {
  int farthest = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor color = picture.pixelColor(x, y);
      const int distance = std::abs(color.red() - ground.red()) +
                           std::abs(color.green() - ground.green()) +
                           std::abs(color.blue() - ground.blue());
      farthest = std::max(farthest, distance);
    }
  }
  return farthest;
}

template <typename Control>
void Show(Control& control) {
  control.show();
  control.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&control));
}

QRect OnScreen(const QWidget& widget) {
  return {widget.mapToGlobal(QPoint()), widget.size()};
}

TEST(LooksTest, MarksAreSeenInTheDarkAndOneStyleServesAll) {
  QCheckBox box;
  QRadioButton option;
  DropDownList list(nullptr);
  for (QAbstractButton* const mark :
       {static_cast<QAbstractButton*>(&box), static_cast<QAbstractButton*>(&option)}) {
    mark->setStyle(SharedStyle());
    mark->setPalette(Dark());
    mark->setFocusPolicy(Qt::NoFocus);
    mark->resize(20, 20);
    EXPECT_GT(FarthestFrom(Dark().color(QPalette::Window), mark->grab().toImage()), 150);
  }
  EXPECT_EQ(list.style(), SharedStyle());
}

TEST(LooksTest, ADisabledRailFadesInEveryPalette) {
  for (const QPalette& palette : {QApplication::palette(), Dark()}) {
    cpvSlider slider;
    slider.setPalette(palette);
    slider.setShowValue(false);
    slider.setValue(100);
    slider.resize(120, 24);
    const QColor ground = palette.color(QPalette::Window);
    const int enabled = FarthestFrom(ground, slider.grab().toImage());
    slider.setEnabled(false);
    EXPECT_LT(FarthestFrom(ground, slider.grab().toImage()), enabled / 2);
  }
}

/// The rectangle around the pixels of a colour.
QRect Around(const QColor& color, const QImage& picture) {
  QRect around;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, y) == color) around |= QRect(x, y, 1, 1);
    }
  }
  return around;
}

TEST(LooksTest, ARailIsALineOrAPictureAndTheValueStandsBesideIt) {
  QPixmap red(4, 4);
  red.fill(Qt::red);
  QPixmap blue(16, 16);
  blue.fill(Qt::blue);
  for (const auto form : {cpvSlider::Adjust::kHorizontal, cpvSlider::Adjust::kVertical}) {
    cpvSlider slider;
    EXPECT_EQ(slider.max(), 100);
    EXPECT_EQ(slider.pageStep(), 10);
    slider.setValue(50);
    slider.setAdjustType(form);
    EXPECT_EQ(slider.AdjustType(), form);
    const bool upright = form == cpvSlider::Adjust::kVertical;
    const auto along = [upright](const QSize& size) {
      return upright ? size.height() : size.width();
    };
    const auto across = [upright](const QSize& size) {
      return upright ? size.width() : size.height();
    };
    const QSize narrow = slider.sizeHint();
    slider.setDecimalDisplay(3);
    EXPECT_GT(slider.sizeHint().width(), narrow.width());
    slider.setShowValue(false);
    EXPECT_LT(along(slider.sizeHint()), along(narrow));
    EXPECT_LT(along(slider.minimumSizeHint()), along(slider.sizeHint()));
    slider.resize(upright ? QSize(30, 160) : QSize(160, 30));
    const QImage standard = slider.grab().toImage();
    slider.setRailStyle(cpvSlider::Rail::kPicture);
    EXPECT_EQ(slider.grab().toImage(), standard) << "there is no picture yet";
    slider.setRailPicture(red);
    EXPECT_GT(along(Around(Qt::red, slider.grab().toImage()).size()), 100);
    slider.setSliderIcon(blue);
    EXPECT_FALSE(Around(Qt::blue, slider.grab().toImage()).isEmpty());
    slider.setRailStyle(cpvSlider::Rail::kLine);
    const QImage line = slider.grab().toImage();
    const QColor ink = line.pixelColor(upright ? QPoint(15, 150) : QPoint(150, 15));
    EXPECT_GT(along(Around(ink, line).size()), 120);
    EXPECT_EQ(across(Around(ink, line).size()), 3);
  }
}

TEST(LooksTest, TheFineAdjustmentNamesItsSliderWhichKeepsItsRing) {
  cpvSlider slider;
  slider.setAccessibleName("Y Min");
  Show(slider);
  slider.setFocus();
  const QImage focused = slider.grab().toImage();
  slider.OpenFineAdjust();
  auto* const spin = slider.findChild<QDoubleSpinBox*>("spin_fineadjust");
  EXPECT_TRUE(QTest::qWaitFor([spin] { return spin->hasFocus(); }));
  slider.clearFocus();
  EXPECT_EQ(slider.findChild<QLabel*>("lbl_fineadjust")->text(), "Y Min");
  EXPECT_EQ(slider.grab().toImage(), focused);
  QTest::keyClick(spin, Qt::Key_Escape);
  EXPECT_NE(slider.grab().toImage(), focused);
}

TEST(LooksTest, TheTipOfADragStandsAboveTheHandle) {
  cpvSlider slider;
  slider.setShowValueTip(true);
  slider.resize(200, 24);
  Show(slider);
  slider.move(100, 100);
  QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(8, 12));
  QTest::mouseMove(&slider, QPoint(60, 12));
  const auto* const tip = slider.findChild<QLabel*>("lbl_valuetip");
  ASSERT_TRUE(tip != nullptr && tip->isVisible());
  EXPECT_EQ(tip->text().toInt(), slider.Value());
  EXPECT_LT(OnScreen(*tip).bottom(), OnScreen(slider).center().y() - 4);
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(60, 12));
  EXPECT_FALSE(tip->isVisible());
}

TEST(LooksTest, APadHasArrowsToBeHitAndNothingCoversItsNumbers) {
  ArrowControl pad;
  pad.setToolTip("Pan within a zoomed image");
  QFont large = pad.font();
  large.setPointSizeF(large.pointSizeF() * 2);
  const std::function<void()> acts[] = {[&] { pad.resize(pad.minimumSizeHint()); },
                                        [&] { pad.resize(300, 200); }, [&] { pad.setFont(large); }};
  for (const auto& act : acts) {
    act();
    Show(pad);
    std::vector<QRect> parts;
    for (const QWidget* const part : pad.findChildren<QWidget*>()) {
      for (const QRect& other : parts) EXPECT_FALSE(other.intersects(part->geometry()));
      parts.push_back(part->geometry());
      EXPECT_TRUE(pad.rect().contains(part->geometry()));
      if (const auto* const label = qobject_cast<const QLabel*>(part)) {
        EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
        EXPECT_GE(label->height(), label->fontMetrics().height());
      } else {
        EXPECT_GE(std::min(part->width(), part->height()), 20);
      }
    }
  }
  QWidget* const number = pad.findChild<QLabel*>("lbl_valx");
  const QPoint middle = number->rect().center();
  QHelpEvent asks(QEvent::ToolTip, middle, number->mapToGlobal(middle));
  QApplication::sendEvent(number, &asks);
  QApplication::sendEvent(&pad, &asks);
  for (const QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->windowType() != Qt::ToolTip || !window->isVisible()) continue;
    EXPECT_FALSE(OnScreen(*window).intersects(OnScreen(*number)));
    return;
  }
  FAIL() << "no tip";
}

TEST(LooksTest, AListHasARingWithTheFocusAndAPalerSelectionWithout) {
  LineList list(nullptr);
  list.addItems({"one", "two"});
  list.setCurrentRow(1);
  Show(list);
  const QColor highlight = list.palette().color(QPalette::Highlight);
  const QRect line = list.visualItemRect(list.item(1));
  const QPoint selected = list.viewport()->mapToParent(line.center() + QPoint(line.width() / 3, 0));
  for (const bool focused : {true, false}) {
    focused ? list.setFocus() : list.clearFocus();
    const QImage picture = list.grab().toImage();
    EXPECT_EQ(picture.pixelColor(selected) == highlight, focused);
    EXPECT_NE(picture.pixelColor(selected), list.palette().color(QPalette::Base));
    EXPECT_EQ(picture.pixelColor(list.width() / 2, 0) == highlight, focused);
  }
}

}  // namespace
}  // namespace kalde2
