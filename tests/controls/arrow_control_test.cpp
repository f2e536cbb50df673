#include "controls/arrow_control.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDeadlineTimer>
#include <QLabel>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <limits>
#include <map>

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

  QString ShownParts() const {
    QStringList shown;
    for (const QWidget* part : pad_.findChildren<QWidget*>()) {
      if (part->isVisible()) shown << part->objectName();
    }
    return shown.join(' ');
  }

  ArrowControl pad_;
  QSignalSpy events_{&pad_, &ArrowControl::ValueChanged};
};

TEST_F(ArrowControlTest, EachArrowStepsItsAxisInItsDirectionAtEveryClickOfAnyButton) {
  constexpr std::tuple<Arrow, int, int> kSteps[] = {
      {Arrow::kRight, 1, 0}, {Arrow::kDown, 1, 1}, {Arrow::kLeft, 0, 1}, {Arrow::kUp, 0, 0}};
  for (const int sign : {1, -1}) {
    pad_.setReversed(sign < 0);
    for (const auto& [arrow, x, y] : kSteps) {
      Click(arrow);
      EXPECT_EQ(events_.takeLast(), (QVariantList{sign * x, sign * y}));
      EXPECT_TRUE(events_.isEmpty());
    }
  }
  QWidget* const right = Picture(Arrow::kRight);
  for (const auto button : {Qt::RightButton, Qt::BackButton}) QTest::mouseClick(right, button);
  QTest::mouseDClick(right, Qt::LeftButton);
  QTest::qWait(50);
  EXPECT_EQ(events_.count(), 3) << "with an interval of 0 nothing repeats";
}

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
  pad_.setRepeatInterval(kInterval);
  EXPECT_TRUE(QTest::qWaitFor([&] { return events_.count() > count; }, 5000));
  const std::vector<QVariantList> first(events_.begin(), events_.begin() + 3);
  EXPECT_EQ(first, (std::vector<QVariantList>{{99, 0}, {100, 0}, {100, 0}})) << "at the limit, too";
  QTest::mouseRelease(Picture(Arrow::kRight), Qt::RightButton);
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

TEST_F(ArrowControlTest, AHoldEndsWithWhatBeganItAndWhenHiddenOrDisabled) {
  QWidget* const right = Picture(Arrow::kRight);
  const std::map<std::string, std::function<void()>> acts = {
      {"mouse", [&] { QTest::mousePress(right, Qt::RightButton); }},
      {"key", [&] { QTest::keyPress(&pad_, Qt::Key_Right); }},
      {"mouse up", [&] { QTest::mouseRelease(right, Qt::RightButton); }},
      {"key up", [&] { QTest::keyRelease(&pad_, Qt::Key_Right); }},
      {"leave", [&] { pad_.clearFocus(); }},
      {"hide", [&] { pad_.hide(); }},
      {"disable", [&] { pad_.setEnabled(false); }}};
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"mouse", "mouse up", true}, {"mouse", "key up", false}, {"mouse", "leave", false},
      {"key", "mouse up", false},  {"key", "key up", true},    {"key", "leave", true},
      {"mouse", "disable", true},  {"key", "disable", true},   {"mouse", "hide", true},
      {"key", "hide", true}};
  pad_.setRepeatInterval(10);
  for (const auto& [begin, end, ends] : cases) {
    SCOPED_TRACE(std::string(begin) + ", " + end);
    pad_.show();
    pad_.setEnabled(true);
    pad_.setFocus();
    acts.at(begin)();
    ASSERT_EQ(pad_.PressedArrow(), Arrow::kRight);
    acts.at(end)();
    events_.clear();
    const auto repeats = [this] { return !events_.isEmpty(); };
    EXPECT_EQ(QTest::qWaitFor(repeats, ends ? 40 : 5000), !ends);
    acts.at("mouse up")();
    acts.at("key up")();
    EXPECT_EQ(pad_.PressedArrow(), Arrow::kNone);
  }
  events_.clear();
  pad_.setEnabled(false);
  Click(Arrow::kRight);
  QTest::keyClick(&pad_, Qt::Key_Right);
  EXPECT_EQ(events_.count(), 0) << "a disabled pad cannot be stepped";
}

TEST_F(ArrowControlTest, AxisVisibilityAppliesOnReadingAndXPrecedesY) {
  const QString all = ShownParts();
  const auto shown = [this](const QVariantMap& bag) {
    pad_.ReadProperties(bag);
    return ShownParts();
  };
  EXPECT_EQ(shown({{"VisibleX", true}, {"visibleY", false}}),
            "lbl_arrowtitle lbl_valx pic_arrow_0 pic_arrow_2");
  QTest::keyClick(&pad_, Qt::Key_Down);
  EXPECT_EQ(pad_.valueY(), 0) << "an arrow that is not shown has no key";
  EXPECT_EQ(shown({{"VisibleX", false}, {"visibleY", false}}),
            "lbl_arrowtitle lbl_valy pic_arrow_1 pic_arrow_3");
  EXPECT_EQ(shown({{"visiblex", false}, {"VisibleY", false}}), all) << "names differ by case";
  pad_.setVisibleX(false);
  EXPECT_EQ(ShownParts(), all) << "writing the property alone shows and hides nothing";
}

TEST_F(ArrowControlTest, PropertiesSurviveStoringAndHaveDefaults) {
  const auto stored = [](ArrowControl& pad) {
    QVariantMap bag;
    pad.WriteProperties(bag);
    return bag;
  };
  const QVariantMap defaults = stored(pad_);
  QStringList texts;
  for (const QString& key : defaults.keys()) {
    texts << key + '=' + (key == "Font" ? "" : defaults[key].toString());
  }
  EXPECT_EQ(texts.join(';'),
            "BackColor=-2147483633;BackStyle=0;BorderStyle=0;Enabled=true;Font=;"
            "ForeColor=-2147483630;RepeatInterval=0;Reversed=false;StepRepeat=5;StepSingle=1;TAG2=;"
            "Title=PAN;"
            "VisibleX=true;textX=H: ;textY=V: ;valueX=0;valueXmax=100;valueXmin=-100;valueY=0;"
            "valueYmax=100;valueYmin=-100;visibleY=true");

  QStringList names;
  const QMetaObject& meta = ArrowControl::staticMetaObject;
  for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
    const QMetaProperty property = meta.property(i);
    names << QLatin1String(property.name());
    QVariant other = i;
    if (property.typeId() == QMetaType::Bool) other = !property.read(&pad_).toBool();
    if (property.typeId() == QMetaType::QString) other = names.last();
    if (property.typeId() == QMetaType::QFont) other = QFont("Serif", 20);
    EXPECT_TRUE(property.write(&pad_, other)) << property.name();
  }
  EXPECT_EQ(defaults["Font"].value<QFont>(), ArrowControl().font());
  EXPECT_EQ(pad_.ChangedProperties(), names);

  ArrowControl copy;
  copy.ReadProperties(stored(pad_));
  for (const QString& name : names) {
    EXPECT_EQ(copy.property(name.toLatin1()), pad_.property(name.toLatin1())) << name.toStdString();
  }
  EXPECT_TRUE((pad_.ChangedProperties() + copy.ChangedProperties()).isEmpty());
  copy.ReadProperties({{"StepSingle", "no number"}});
  EXPECT_EQ(stored(copy), defaults) << "what is absent or no number is read as its default";
}

TEST_F(ArrowControlTest, TheArrowThatIsHeldLooksPressedAndAllTakeTheBackColor) {
  QWidget* const up = Picture(Arrow::kUp);
  const QImage released = up->grab().toImage();
  QTest::mousePress(up, Qt::LeftButton);
  EXPECT_NE(up->grab().toImage(), released);
  QTest::keyPress(&pad_, Qt::Key_Left);
  EXPECT_EQ(up->grab().toImage(), released) << "another has taken over";
  QTest::mouseRelease(up, Qt::LeftButton);
  EXPECT_EQ(pad_.PressedArrow(), Arrow::kLeft);
  pad_.setBackColor(0x0000FF);
  EXPECT_EQ(up->grab().toImage().pixelColor(4, up->height() / 2), QColor(Qt::red));
}

TEST_F(ArrowControlTest, AssistiveToolsPressTheArrowsAndReadTheValues) {
  QAccessibleInterface* down = QAccessible::queryAccessibleInterface(Picture(Arrow::kDown));
  EXPECT_EQ(down->text(QAccessible::Name), "PAN down");
  // Whoever hears of the step waits, longer than an arrow that is held takes to repeat.
  pad_.setRepeatInterval(10);
  QObject::connect(
      &pad_, &ArrowControl::ValueChanged, &pad_, [] { QTest::qWait(40); },
      Qt::SingleShotConnection);
  down->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(pad_.valueY(), 1);
  EXPECT_EQ(pad_.PressedArrow(), Arrow::kNone);

  const auto* const pad = QAccessible::queryAccessibleInterface(&pad_);
  EXPECT_EQ(pad->text(QAccessible::Name), "PAN");
  EXPECT_EQ(pad->text(QAccessible::Value), "H: 0, V: 1");
  EXPECT_EQ(pad->text(QAccessible::Description), "H: 0, V: 1");
  pad_.setAccessibleName("Pan");
  pad_.setAccessibleDescription("In the image");
  EXPECT_EQ(pad->text(QAccessible::Name), "Pan");
  EXPECT_EQ(pad->text(QAccessible::Description), "In the image. H: 0, V: 1");
}

}  // namespace
}  // namespace kalde2
