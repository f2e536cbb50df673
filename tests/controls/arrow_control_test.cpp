#include "controls/arrow_control.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <limits>

namespace kalde2 {
namespace {

using Arrow = ArrowControl::Arrow;

/// A pad in a window that has the focus, with another control to take the focus away.
class ArrowControlTest : public testing::Test {
 protected:
  ArrowControlTest() {
    auto* layout = new QVBoxLayout(&window_);
    layout->addWidget(pad_);
    layout->addWidget(other_);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    pad_->setFocus();
  }

  QWidget* Part(const char* name) const { return pad_->findChild<QWidget*>(name); }
  QString TextOf(const char* name) const { return pad_->findChild<QLabel*>(name)->text(); }
  QWidget* Left() const { return Part("pic_arrow_0"); }
  QWidget* Up() const { return Part("pic_arrow_1"); }
  QWidget* Right() const { return Part("pic_arrow_2"); }
  QWidget* Down() const { return Part("pic_arrow_3"); }

  static void Click(QWidget* arrow) { QTest::mouseClick(arrow, Qt::LeftButton); }

  /// Names of the parts that are shown, of those that belong to one axis.
  QStringList ShownParts() const {
    QStringList shown;
    for (const char* name :
         {"pic_arrow_0", "pic_arrow_1", "pic_arrow_2", "pic_arrow_3", "lbl_valx", "lbl_valy"}) {
      if (Part(name)->isVisible()) shown << name;
    }
    return shown;
  }

  QWidget window_;
  ArrowControl* pad_ = new ArrowControl;
  QLineEdit* other_ = new QLineEdit;
  QSignalSpy events_{pad_, &ArrowControl::ValueChanged};
};

TEST_F(ArrowControlTest, EachArrowStepsItsAxisOnceInItsDirection) {
  Click(Right());
  Click(Right());
  Click(Down());
  EXPECT_EQ(events_.takeLast(), (QVariantList{2, 1}));
  EXPECT_EQ(TextOf("lbl_valx"), "H: 2");
  EXPECT_EQ(TextOf("lbl_valy"), "V: 1");
  Click(Left());
  Click(Up());
  Click(Up());
  EXPECT_EQ(events_.takeLast(), (QVariantList{1, -1}));

  pad_->setReversed(true);
  Click(Left());
  Click(Up());
  EXPECT_EQ(events_.takeLast(), (QVariantList{2, 0}));
  Click(Right());
  Click(Down());
  EXPECT_EQ(events_.takeLast(), (QVariantList{1, -1}));
}

TEST_F(ArrowControlTest, EveryMouseButtonAndTheSecondClickOfADoubleClickStep) {
  for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
    QTest::mouseClick(Right(), button);
  }
  EXPECT_EQ(pad_->valueX(), 4);
  Click(Right());
  QTest::mouseDClick(Right(), Qt::LeftButton);
  QTest::mouseRelease(Right(), Qt::LeftButton);
  EXPECT_EQ(pad_->valueX(), 6);
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kNone);
}

TEST_F(ArrowControlTest, LimitsHoldStepsButNotValuesThatAreSet) {
  pad_->setValueX(100);
  events_.clear();
  Click(Right());
  EXPECT_EQ(pad_->valueX(), 100);
  EXPECT_EQ(events_.count(), 1) << "a step without effect raises the event as well";

  pad_->setValueX(500);
  EXPECT_EQ(events_.count(), 1) << "setting a value raises nothing";
  EXPECT_EQ(TextOf("lbl_valx"), "H: 500");
  Click(Left());
  EXPECT_EQ(pad_->valueX(), 499);
  Click(Right());
  EXPECT_EQ(pad_->valueX(), 100);

  constexpr int kHighest = std::numeric_limits<int>::max();
  pad_->setValueYmax(kHighest);
  pad_->setValueY(kHighest);
  Click(Down());
  EXPECT_EQ(pad_->valueY(), kHighest);
}

TEST_F(ArrowControlTest, HoldingRepeatsWithTheLargerStepUntilTheRelease) {
  constexpr int kInterval = 60;
  pad_->setRepeatInterval(kInterval);
  pad_->setValueX(98);
  QElapsedTimer held;
  held.start();
  QTest::mousePress(Right(), Qt::RightButton);
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kRight);
  EXPECT_EQ(pad_->valueX(), 99);
  ASSERT_TRUE(QTest::qWaitFor([this] { return events_.count() >= 2; }, 5000));
  EXPECT_GE(held.elapsed(), kInterval) << "the first repetition comes one interval after the press";
  ASSERT_TRUE(QTest::qWaitFor([this] { return events_.count() >= 3; }, 5000));
  EXPECT_EQ(events_.at(1), (QVariantList{100, 0}));
  EXPECT_EQ(events_.at(2), (QVariantList{100, 0}));

  QTest::mouseRelease(Right(), Qt::RightButton);
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kNone);
  const auto count = events_.count();
  QTest::qWait(3 * kInterval);
  EXPECT_EQ(events_.count(), count);
}

TEST_F(ArrowControlTest, TheRepeatIntervalIsTheTimersAndZeroNeverRepeats) {
  auto* timer = pad_->findChild<QTimer*>("tmr_repeat");
  ASSERT_NE(timer, nullptr);
  timer->setInterval(70);
  EXPECT_EQ(pad_->RepeatInterval(), 70);
  pad_->setRepeatInterval(0);
  QTest::mousePress(Right(), Qt::LeftButton);
  QTest::qWait(50);
  EXPECT_EQ(events_.count(), 1);

  pad_->setRepeatInterval(20);  // while the arrow is held
  EXPECT_TRUE(QTest::qWaitFor([this] { return events_.count() >= 2; }, 5000));
  pad_->setRepeatInterval(0);
  events_.clear();
  QTest::qWait(50);
  EXPECT_EQ(events_.count(), 0);
  QTest::mouseRelease(Right(), Qt::LeftButton);
}

TEST_F(ArrowControlTest, ArrowKeysStepAndRepeatAtThePadsPace) {
  pad_->setRepeatInterval(10'000);
  QTest::keyPress(pad_, Qt::Key_Down);
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kDown);
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, QString(), true);
  QKeyEvent released(QEvent::KeyRelease, Qt::Key_Down, Qt::NoModifier, QString(), true);
  QApplication::sendEvent(pad_, &released);
  QApplication::sendEvent(pad_, &repeated);
  EXPECT_EQ(events_.count(), 1) << "the keyboard's own repetition does not step";
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kDown);

  QTest::keyPress(pad_, Qt::Key_Left);
  QTest::keyRelease(pad_, Qt::Key_Down);
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kLeft) << "the newer key holds on";
  QTest::keyRelease(pad_, Qt::Key_Left);
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kNone);
  EXPECT_EQ(events_.takeLast(), (QVariantList{-1, 1}));

  QTest::keyClick(pad_, Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(pad_->valueX(), -1);
}

TEST_F(ArrowControlTest, AHoldEndsWhenThePadLosesFocusOrIsDisabledOrHidden) {
  pad_->setRepeatInterval(10);
  const auto ends_hold = [this](const char* how, const std::function<void()>& act) {
    SCOPED_TRACE(how);
    QTest::mousePress(Right(), Qt::LeftButton);
    ASSERT_EQ(pad_->PressedArrow(), Arrow::kRight);
    act();
    EXPECT_EQ(pad_->PressedArrow(), Arrow::kNone);
    events_.clear();
    QTest::qWait(40);
    EXPECT_EQ(events_.count(), 0);
    QTest::mouseRelease(Right(), Qt::LeftButton);
    EXPECT_EQ(pad_->PressedArrow(), Arrow::kNone);
  };
  ends_hold("focus", [this] { other_->setFocus(); });
  pad_->setFocus();
  ends_hold("hidden", [this] { pad_->hide(); });
  pad_->show();
  ends_hold("disabled", [this] { pad_->setEnabled(false); });

  events_.clear();
  Click(Right());
  QTest::keyClick(pad_, Qt::Key_Right);
  EXPECT_EQ(events_.count(), 0) << "a disabled pad cannot be stepped";
}

TEST_F(ArrowControlTest, AxisVisibilityAppliesOnReadingAndXPrecedesY) {
  const QStringList all{"pic_arrow_0", "pic_arrow_1", "pic_arrow_2",
                        "pic_arrow_3", "lbl_valx",    "lbl_valy"};
  const QStringList horizontal{"pic_arrow_0", "pic_arrow_2", "lbl_valx"};
  const QStringList vertical{"pic_arrow_1", "pic_arrow_3", "lbl_valy"};
  pad_->setVisibleX(false);
  EXPECT_EQ(ShownParts(), all) << "writing the property alone shows and hides nothing";

  pad_->ReadProperties({{"VisibleX", true}, {"visibleY", false}});
  EXPECT_EQ(ShownParts(), horizontal);
  QTest::keyClick(pad_, Qt::Key_Down);
  EXPECT_EQ(pad_->valueY(), 0) << "an arrow that is not shown has no key";
  pad_->ReadProperties({{"VisibleX", false}, {"visibleY", true}});
  EXPECT_EQ(ShownParts(), vertical);
  pad_->ReadProperties({{"VisibleX", false}, {"visibleY", false}});
  EXPECT_EQ(ShownParts(), vertical);
  pad_->ReadProperties({{"visiblex", false}, {"VisibleY", false}});
  EXPECT_EQ(ShownParts(), all) << "names differ by case";
}

TEST_F(ArrowControlTest, PropertiesStandInOrderAndSurviveStoring) {
  const QMetaObject& meta = ArrowControl::staticMetaObject;
  QStringList names;
  for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
    names << QLatin1String(meta.property(i).name());
  }
  EXPECT_EQ(names.join(' '),
            "BackColor ForeColor Enabled Font BackStyle BorderStyle Title TAG2 valueXmin valueYmin "
            "valueXmax valueYmax valueX valueY TextX TextY StepSingle StepRepeat RepeatInterval "
            "VisibleX visibleY Reversed");

  const QVariantMap written{
      {"BackColor", 0x102030}, {"ForeColor", 0x40}, {"Enabled", false},
      {"BackStyle", 1},        {"BorderStyle", 1},  {"Title", "POSN"},
      {"TAG2", "219"},         {"valueXmin", -7},   {"valueYmin", -8},
      {"valueXmax", 7},        {"valueYmax", 8},    {"valueX", 5},
      {"valueY", 6},           {"TextX", "x"},      {"TextY", "y"},
      {"StepSingle", 2},       {"StepRepeat", 3},   {"VisibleX", false},
      {"visibleY", false},     {"Reversed", true},  {"Font", QFont("Serif", 20)},
      {"RepeatInterval", 500}};
  EXPECT_TRUE(pad_->ChangedProperties().isEmpty());
  for (const QString& name : names) {
    ASSERT_TRUE(pad_->setProperty(name.toLatin1(), written.value(name))) << name.toStdString();
  }
  EXPECT_EQ(pad_->ChangedProperties(), names);

  QVariantMap bag;
  pad_->WriteProperties(bag);
  EXPECT_TRUE(pad_->ChangedProperties().isEmpty());
  EXPECT_EQ(bag.value("textX"), "x");
  EXPECT_EQ(bag.value("textY"), "y");
  EXPECT_FALSE(bag.contains("TextX"));

  ArrowControl copy;
  copy.ReadProperties(bag);
  for (const QString& name : names) {
    EXPECT_EQ(copy.property(name.toLatin1()), pad_->property(name.toLatin1()))
        << name.toStdString();
  }
  EXPECT_TRUE(copy.ChangedProperties().isEmpty());
  EXPECT_EQ(copy.findChild<QLabel*>("lbl_valy")->text(), "y6");
}

TEST_F(ArrowControlTest, AbsentPropertiesAreReadAsTheirDefaults) {
  QVariantMap fresh;
  pad_->WriteProperties(fresh);
  ArrowControl used;
  used.setTitle("POSN");
  used.setValueX(7);
  used.setTextY("?");
  used.setStepRepeat(9);
  used.setReversed(true);
  used.setTitleFont(QFont("Serif", 20));
  used.ReadProperties({{"StepSingle", "no number"}});
  QVariantMap bag;
  used.WriteProperties(bag);
  EXPECT_EQ(bag, fresh);
  EXPECT_EQ(fresh.value("Title"), "PAN");
  EXPECT_EQ(fresh.value("textX"), "H: ");
  EXPECT_EQ(fresh.value("textY"), "V: ");
  EXPECT_EQ(fresh.value("valueYmin"), -100);
  EXPECT_EQ(fresh.value("StepSingle"), 1);
  EXPECT_EQ(fresh.value("StepRepeat"), 5);
  EXPECT_EQ(fresh.value("RepeatInterval"), 0);
}

TEST_F(ArrowControlTest, TheLooksOfAnArrowDiffer) {
  const auto picture = [this] { return Up()->grab().toImage(); };
  const QImage released = picture();
  QTest::mousePress(Up(), Qt::LeftButton);
  const QImage pressed = picture();
  QTest::mouseRelease(Up(), Qt::LeftButton);
  EXPECT_EQ(picture(), released);
  pad_->setEnabled(false);
  const QImage disabled = picture();
  pad_->setEnabled(true);
  pad_->setBackColor(0x0000FF);
  EXPECT_EQ(picture().pixelColor(4, Up()->height() / 2), QColor(Qt::red));
  pad_->setBackColor(ArrowControl::kPaletteBackColor);
  EXPECT_EQ(picture(), released);
  EXPECT_NE(pressed, released);
  EXPECT_NE(disabled, released);

  pad_->setFocus();
  const QImage focused = pad_->grab().toImage();
  other_->setFocus();
  EXPECT_NE(pad_->grab().toImage(), focused);
}

TEST_F(ArrowControlTest, PartsFitAtEveryFontSize) {
  pad_->setValueXmax(1000);
  for (const int points : {8, 9, 10, 12, 18}) {
    SCOPED_TRACE(points);
    QFont font = pad_->font();
    font.setPointSize(points);
    pad_->setFont(font);
    pad_->setFixedSize(pad_->sizeHint());
    QCoreApplication::processEvents();
    for (const char* name : {"lbl_arrowtitle", "lbl_valx", "lbl_valy"}) {
      const auto* label = pad_->findChild<QLabel*>(name);
      EXPECT_GE(label->width(), label->sizeHint().width()) << name;
      for (QWidget* arrow : {Left(), Up(), Right(), Down()}) {
        EXPECT_FALSE(label->geometry().intersects(arrow->geometry())) << name;
      }
    }
  }
}

TEST_F(ArrowControlTest, AssistiveToolsReadTheValuesAndPressTheArrows) {
  pad_->setTitle("POSN");
  pad_->setAccessibleDescription("Moves the window");
  Click(Right());
  QAccessibleInterface* pad = QAccessible::queryAccessibleInterface(pad_);
  EXPECT_EQ(pad->text(QAccessible::Name), "POSN");
  EXPECT_EQ(pad->text(QAccessible::Value), "H: 1, V: 0");
  EXPECT_EQ(pad->text(QAccessible::Description), "Moves the window. H: 1, V: 0");

  QAccessibleInterface* down = QAccessible::queryAccessibleInterface(Down());
  EXPECT_EQ(down->role(), QAccessible::Button);
  EXPECT_EQ(down->text(QAccessible::Name), "POSN down");
  down->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(pad_->valueY(), 1);
  EXPECT_EQ(pad_->PressedArrow(), Arrow::kNone);
}

}  // namespace
}  // namespace kalde2
