// What stays where it is in the main window, what fits the screen, and what is told of it.

#include <QAccessible>
#include <QScrollBar>
#include <map>
#include <sstream>

#include "controls/shared_style.h"
#include "panel/app_info.h"
#include "panel/clipping_area.h"
#include "tests/support/panel_fixture.h"
#include "tests/support/written_down.h"

namespace kalde2 {
namespace {

class FormTest : public PanelFixture {
 protected:
  using Places = std::map<std::string, QRect>;

  /// Where every control is that has a name, and is to stay: all but the command list's lower edge.
  [[nodiscard]] Places PlacesNow() const {
    QCoreApplication::processEvents();
    Places places;
    for (const QWidget* const control : Window().findChildren<QWidget*>()) {
      const bool own = control->parentWidget() == Form().fra_control ||
                       control->parentWidget() == Form().fra_control->parentWidget();
      if (own && !control->objectName().isEmpty()) {
        places[control->objectName().toStdString()] = control->geometry();
      }
    }
    places["lst_commands"].setHeight(0);
    return places;
  }

  [[nodiscard]] static QRect OnScreen(const QWidget& widget) {
    return {widget.mapToGlobal(QPoint()), widget.size()};
  }
};

TEST_F(FormTest, NothingMovesButTheListsLowerEdge) {
  Start();
  Form().ShowDevice("/dev/ttyS0");
  Form().txt_port->setText("1");
  const Places closed = PlacesNow();
  ConnectUnit();
  Press("Cmd_openclose");
  Form().ShowDevice("/dev/serial/by-path/pci-0000:00:14.0-usb-0:2:1.0-port0");
  Form().txt_port->setText("12345678");
  Form().lbl_status->setText(QString(500, 'W'));
  EXPECT_EQ(Form().lbl_portdevice->toolTip(), Form().lbl_portdevice->text());
  EXPECT_EQ(PlacesNow(), closed);
  Tick("tmr_updatelstCommands");
  LineList& list = *Form().lst_commands;
  const QPoint top = list.pos();
  const auto expect_whole_lines = [&list] {
    QCoreApplication::processEvents();
    EXPECT_EQ(list.viewport()->height() % list.visualItemRect(list.item(0)).height(), 0);
  };
  SelectLine("Zoom Pan H");  // a number
  expect_whole_lines();
  const int compact = list.height();
  const Places compact_places = PlacesNow();
  Choose("mnu_function_advanced");
  EXPECT_EQ(PlacesNow(), compact_places);
  expect_whole_lines();
  EXPECT_GT(list.height(), compact + 60);
  EXPECT_EQ(Form().Pad("arr_shrinkposn")->x(), Form().Pad("arr_zoompan")->x());
  Choose("mnu_function_advanced");
  SelectLine("Main input");  // a list
  QCoreApplication::processEvents();
  EXPECT_EQ(list.geometry(), QRect(top, QSize(list.width(), compact)));
}

TEST_F(FormTest, AViewThatTheScreenHasNoRoomForScrollsAndFollowsTheFocus) {
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSizeF(usual.pointSizeF() * 2);
  QApplication::setFont(large);
  OpenSettled();
  Choose("mnu_function_aspect");
  Choose("mnu_function_advanced");
  Press("chk_shrinkenable");
  Window().activateWindow();
  const QRect screen = Window().screen()->availableGeometry();
  EXPECT_LE(Window().width(), screen.width());
  EXPECT_LE(Window().height(), screen.height());
  const auto* const area = Window().findChild<QScrollArea*>();
  for (const char* name : {"cbo_command", "slide_shrinkv", "cbo_program", "arr_shrinkposn"}) {
    auto* const control = Find<QWidget>(name);
    control->setFocus();
    QCoreApplication::processEvents();
    EXPECT_TRUE(OnScreen(*area->viewport()).contains(OnScreen(*control))) << name;
  }
  Choose("mnu_function_advanced");
  area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
  const QWidget* const strip = Form().Check("chk_shrinkenable");
  EXPECT_FALSE(OnScreen(*area->viewport()).intersects(OnScreen(*strip))) << "out of the view";
  panel.reset();
  QApplication::setFont(usual);
}

constexpr const char* kProperties =
    "text title windowTitle Tag TAG2 accessibleName accessibleDescription toolTip "
    "focusPolicy enabled visible checkable checked Min max Value Initial ShowValueTip "
    "valueXmin valueXmax valueYmin valueYmax TextX RepeatInterval interval timerType "
    "inputMethodHints textFormat alignment wordWrap maxVisibleItems "
    "minimumContentsLength sizeAdjustPolicy autoDefault autoFillBackground "
    "uniformItemSizes lineWidth default separator frameShape count currentText modal";

/// What an object is like; what is 0, false or empty is left out.
std::string Description(QObject& object) {
  QString text = object.objectName();
  for (const QByteArray& name : QByteArray(kProperties).split(' ')) {
    const QVariant value = object.property(name);
    bool is_number = false;
    const int number = value.toInt(&is_number);  // of texts that name the same on every system
    const QString shown = is_number ? QString::number(number) : value.toString();
    if (!shown.isEmpty() && shown != "0") text += QString(" %1=%2").arg(name, shown);
  }
  if (const auto* const label = qobject_cast<const QLabel*>(&object); label && label->buddy()) {
    text += " buddy=" + label->buddy()->objectName();
  }
  if (auto* const widget = qobject_cast<QWidget*>(&object)) {
    if (const auto* const node = QAccessible::queryAccessibleInterface(widget);
        qobject_cast<const QAbstractButton*>(widget) != nullptr) {
      text += " read=" + node->text(QAccessible::Name);
    }
    if (widget->font().bold()) text += " bold";
    if (widget->style() == SharedStyle()) text += " drawn";
    if (widget->sizePolicy().retainSizeWhenHidden()) text += " stays";
  }
  return text.replace('\n', ' ').replace(AppInfo::kVersion, "VERSION").toStdString();
}

// After a change that is meant, KALDE2_UPDATE=1 writes form.txt anew, for its difference to be
// read.
TEST_F(FormTest, IsAsItsDescriptionSays) {
  Start();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !Form().lbl_portdevice->text().isEmpty(); }));
  Choose("mnu_about");
  std::ostringstream now;
  now << "focus " << Window().focusWidget()->objectName().toStdString() << '\n';
  const auto is_told = [](const QObject* object) {
    const QString name = object->objectName();
    return !name.isEmpty() && !name.startsWith("qt_");
  };
  for (QWidget* next = &Window(); (next = next->nextInFocusChain()) != &Window();) {
    if (next->focusPolicy() != Qt::NoFocus && is_told(next)) now << Description(*next) << '\n';
  }
  for (auto* const object : Window().findChildren<QObject*>()) {
    const auto* const widget = qobject_cast<const QWidget*>(object);
    const bool is_in_chain =
        widget != nullptr && widget->focusPolicy() != Qt::NoFocus && widget->window() == &Window();
    if (!is_in_chain && is_told(object)) now << Description(*object) << '\n';
  }
  ExpectAsWrittenDown(now.str(), KALDE2_TESTS "/panel/form.txt");
}

TEST_F(FormTest, TheStatusLineIsSeenAndInNobodysWay) {
  StartAndOpen(32);
  Choose("mnu_function_advanced");
  QLabel& line = *Form().lbl_status;
  EXPECT_TRUE(line.isVisible() && line.height() >= line.fontMetrics().height());
  const QRect place(line.mapTo(&Window(), QPoint()), line.size());
  EXPECT_NE(Window().childAt(place.center()), &line) << "clicks go to what lies under it";
  EXPECT_TRUE(Window().rect().contains(place) && place.bottom() < VornikForm::kCompactHeight);
  for (const QWidget* const control : Form().ReplyControls()) {
    const QRect other(control->mapTo(&Window(), QPoint()), control->size());
    EXPECT_FALSE(control->isVisible() && other.intersects(place))
        << control->objectName().toStdString();
  }
  const QString text = line.text();
  line.setProperty("Tag", "134");
  Unasked(WriteOf(134, 300));
  EXPECT_EQ(Form().Slider("slide_zoom")->Value(), 300);
  EXPECT_EQ(line.text(), text);
  Press("Cmd_openclose");
  EXPECT_TRUE(line.isEnabled());
}

TEST_F(FormTest, TheProgressWindowStaysAfterAFetchThatFailsUntilItIsClosed) {
  StartAndOpen();
  ASSERT_FALSE(unit->Faults().Add("error-reply"));
  Choose("mnu_function_refreshRes");
  frm_Progress& window = panel->Progress();
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_FALSE(window.windowFlags() & Qt::WindowMinMaxButtonsHint);
  window.close();
  EXPECT_FALSE(window.isVisible());
}

TEST_F(FormTest, AboutComesUpOnceAndAgainInTheEventThatClosesIt) {
  Start();
  const auto shown = [this] {
    const auto about = Window().findChildren<QWidget*>("frm_About");
    return std::ranges::count_if(about, [](const QWidget* box) { return box->isVisible(); });
  };
  Choose("mnu_about");
  Choose("mnu_about");
  EXPECT_EQ(shown(), 1);
  Window().findChild<QWidget*>("frm_About")->close();
  Choose("mnu_about");
  QTest::qWait(10);
  EXPECT_EQ(shown(), 1);
}

}  // namespace
}  // namespace kalde2
