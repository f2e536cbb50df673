#include <gmock/gmock.h>

#include <QAccessible>
#include <QDialog>
#include <QFontInfo>
#include <QLabel>
#include <QMenuBar>
#include <QWheelEvent>
#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FormTest : public PanelFixture {
 protected:
  void TearDown() override {
    panel.reset();
    QApplication::setFont(desktop_font_);
  }

  void StartWithFont(int points) {
    QFont font = desktop_font_;
    font.setPointSize(points);
    QApplication::setFont(font);
    StartAndOpen(32);
  }

  [[nodiscard]] std::vector<QWidget*> VisibleControls() {
    std::vector<QWidget*> controls;
    for (QWidget* const widget :
         Form().fra_control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      if (widget->isVisible() && !widget->isWindow()) controls.push_back(widget);
    }
    return controls;
  }

  /// Where the window shows a control.
  [[nodiscard]] QRect PlaceOf(const QWidget* widget) {
    return {widget->mapTo(&Window(), QPoint()), widget->size()};
  }

  [[nodiscard]] static bool IsShrinkControl(const QWidget* widget) {
    return widget->objectName().contains(QLatin1String("shrink"));
  }

  static QStringList TextsOf(const QList<QAction*>& actions) {
    QStringList texts;
    for (const QAction* const action : actions) {
      texts << (action->isSeparator() ? action->objectName() : action->text());
    }
    return texts;
  }

 private:
  QFont desktop_font_ = QApplication::font();
};

TEST_F(FormTest, EveryControlBearsItsNameKindCaptionAndTag) {
  struct Row {
    const char* name;
    const char* kind;
    const char* caption = nullptr;
    const char* tooltip = nullptr;
    const char* tag = nullptr;
  };
  constexpr const char* kSlider = "kalde2::cpvSlider";
  constexpr const char* kAdjust = "Right Click to fine adjust";
  const Row rows[] = {
      {"cbo_program", "QComboBox", nullptr, nullptr, "130"},
      {"cbo_resolution", "QComboBox", nullptr, nullptr, "131"},
      {"cbo_lock", "QComboBox", nullptr, nullptr, "329"},
      {"lbl_lockmode", "QLabel", "Lock Mode"},
      {"lbl_locksource", "QLabel", "Lock Source"},
      {"opt_lockoff", "QRadioButton", "Off"},
      {"opt_lockgenlock", "QRadioButton", "Genlock"},
      {"opt_lockmix", "QRadioButton", "Mix"},
      {"slide_zoom", kSlider, nullptr, kAdjust, "259"},
      {"slide_zoomv", kSlider, nullptr, kAdjust, "261"},
      {"slide_shrink", kSlider, nullptr, kAdjust, "260"},
      {"slide_shrinkv", kSlider, nullptr, kAdjust, "262"},
      {"slide_ymin", kSlider, nullptr, kAdjust, "175"},
      {"slide_umin", kSlider, nullptr, kAdjust, "176"},
      {"slide_vmin", kSlider, nullptr, kAdjust, "177"},
      {"slide_ymax", kSlider, nullptr, kAdjust, "178"},
      {"slide_umax", kSlider, nullptr, kAdjust, "179"},
      {"slide_vmax", kSlider, nullptr, kAdjust, "180"},
      {"slide_softy", kSlider, nullptr, kAdjust, "289"},
      {"slide_softu", kSlider, nullptr, kAdjust, "291"},
      {"slide_softv", kSlider, nullptr, kAdjust, "293"},
      {"arr_zoompan", "kalde2::ArrowControl", nullptr, "Pan within a zoomed image", "159"},
      {"arr_shrinkposn", "kalde2::ArrowControl", nullptr, "Change the position of the window",
       "218"},
      {"chk_keyenable", "QCheckBox", "Enable", "Enable Keyer", "295"},
      {"chk_swapforback", "QCheckBox", "Swap Fore-Back", "Swap key from foreground to background",
       "324"},
      {"chk_shrinkenable", "QCheckBox", "Shrink Enable", "Enable shrink", "398"},
      {"chk_zoomenable", "QCheckBox", "Zoom Enable", "Enable zoom"},
      {"lbl_keyerenable", "QLabel", "Keyer"},
      {"lbl_zoomv", "QLabel"},
      {"lbl_shrink", "QLabel"},
      {"lbl_shrinkv", "QLabel"},
      {"cmd_fade", "QPushButton", "&Fade", "Toggle fade"},
      {"cmd_black", "QPushButton", "&Black Key", "Set Key back to black"},
      {"cmd_overscan", "QPushButton", "&OverScan", "Overscan"},
      {"cmd_underscan", "QPushButton", "&Underscan", "Underscan"},
      {"cmd_autoset", "QPushButton", "&AutoSet", "Autoadjust RGB sources"},
      {"cmd_commandMinus", "QPushButton"},
      {"cmd_commandplus", "QPushButton"},
      {"cmd_test", "QPushButton"},
      {"lst_commands", "QListWidget", nullptr, "Select command to change"},
      {"cbo_command", "QComboBox"},
      {"txt_commandval", "QLineEdit"},
  };
  Start();
  std::set<QString> tagged;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    auto* const widget =
        Form().fra_control->findChild<QWidget*>(row.name, Qt::FindDirectChildrenOnly);
    ASSERT_NE(widget, nullptr);
    EXPECT_STREQ(widget->metaObject()->className(), row.kind);
    if (row.caption) {
      EXPECT_EQ(widget->property("text").toString(), row.caption);
    }
    if (row.tooltip) {
      EXPECT_EQ(widget->toolTip(), row.tooltip);
    }
    EXPECT_EQ(widget->property("Tag").toString(), QLatin1String(row.tag ? row.tag : ""));
    if (row.tag) tagged.insert(row.name);
  }
  EXPECT_EQ(Form().arr_zoompan->TAG2(), "160");
  EXPECT_EQ(Form().arr_shrinkposn->TAG2(), "219");
  EXPECT_EQ(Form().arr_zoompan->Title(), "PAN");
  EXPECT_EQ(Form().arr_shrinkposn->Title(), "POSN");
  for (const QWidget* const widget : Window().findChildren<QWidget*>()) {
    if (widget->property("Tag").isValid()) {
      EXPECT_TRUE(tagged.contains(widget->objectName()));
    }
  }

  for (const auto& [name, kind] : {std::pair{"cbo_baud", "QComboBox"},
                                   {"txt_port", "QLineEdit"},
                                   {"Cmd_openclose", "QPushButton"},
                                   {"lbl_comstate", "QLabel"}}) {
    auto* const widget = Find<QWidget>(name);
    EXPECT_STREQ(widget->metaObject()->className(), kind);
    EXPECT_FALSE(Form().fra_control->isAncestorOf(widget)) << name;
  }
  EXPECT_EQ(Find<QTimer>("TmrProcessMessage")->interval(), 100);
  EXPECT_EQ(Find<QTimer>("tmr_updatelstCommands")->interval(), 1000);
}

TEST_F(FormTest, MenusStandInOrder) {
  Start();
  EXPECT_EQ(TextsOf(Window().menuBar()->actions()),
            (QStringList{"&File", "C&lone", "&Function", "&About"}));
  EXPECT_EQ(TextsOf(Form().mnu_file->actions()),
            (QStringList{"&Load", "&Save", "menu_file_seperator", "&Exit"}));
  EXPECT_EQ(TextsOf(Form().mnu_clone->actions()), (QStringList{"&Read", "&Write"}));
  EXPECT_EQ(TextsOf(Form().mnu_function->actions()),
            (QStringList{"&Advanced", "As&pect Adjust", "&Update Resolution Data from unit",
                         "mnu_function_sep2", "&Store", "mnu_function_space1", "&Reset"}));
  for (const char* name :
       {"mnu_file", "mnu_file_load", "mnu_file_save", "mnu_file_exit", "mnu_clone",
        "mnu_clone_read", "menu_clone_write", "mnu_function", "mnu_function_advanced",
        "mnu_function_aspect", "mnu_function_refreshRes", "cmd_function_strore",
        "mnu_function_reset", "mnu_about"}) {
    (void)Find<QAction>(name);
  }
}

TEST_F(FormTest, ViewsShowAndHideWhatTheyShould) {
  StartWithFont(9);
  const auto shown = [this](std::initializer_list<const char*> names) {
    return std::ranges::count_if(names,
                                 [this](auto name) { return Find<QWidget>(name)->isVisible(); });
  };
  const auto shrink = {"arr_shrinkposn", "chk_shrinkenable", "lbl_shrink", "slide_shrink"};
  const auto vertical = {"lbl_shrinkv", "slide_shrinkv", "lbl_zoomv", "slide_zoomv"};
  EXPECT_EQ(shown(shrink) + shown(vertical) + shown({"cmd_test"}), 0);
  EXPECT_EQ(shown({"cbo_lock", "lbl_locksource"}), 2);
  for (const QRadioButton* const mode : Form().opt_lock) {
    EXPECT_FALSE(mode->isChecked());
  }
  EXPECT_EQ(Window().height(), 382);

  Choose("mnu_function_advanced");
  EXPECT_EQ(shown(shrink), 4);
  EXPECT_EQ(Window().height(), 475);
  Choose("mnu_function_advanced");
  EXPECT_EQ(shown(shrink), 4) << "only the smaller window takes them out of view";
  EXPECT_EQ(Window().height(), 382);

  Form().tmr_updatelstCommands->stop();
  Choose("mnu_function_aspect");
  EXPECT_EQ(shown(vertical), 4);
  EXPECT_TRUE(Form().tmr_updatelstCommands->isActive());
  Form().tmr_updatelstCommands->stop();
  Choose("mnu_function_aspect");
  EXPECT_EQ(shown(vertical), 0);
  EXPECT_FALSE(Form().tmr_updatelstCommands->isActive());
}

TEST_F(FormTest, NothingIsClippedOrOverlapsAtAnyFontOrWidth) {
  for (const int points : {9, 10, 11, 12}) {
    StartWithFont(points);
    const double factor = QFontInfo(Window().font()).pixelSize() / 12.0;
    Choose("mnu_function_aspect");
    Choose("mnu_function_advanced");
    const int least = Window().minimumSizeHint().width();
    for (const int width : {least, Window().sizeHint().width(), least + 400}) {
      SCOPED_TRACE(std::to_string(points) + " points, width " + std::to_string(width));
      Window().resize(width, Window().height());
      QCoreApplication::processEvents();
      EXPECT_EQ(Window().height(), std::lround(475 * factor));
      const int edge = static_cast<int>(std::lround(382 * factor));
      const auto controls = VisibleControls();
      EXPECT_GT(controls.size(), 50U);
      for (std::size_t i = 0; i < controls.size(); ++i) {
        const QRect place = PlaceOf(controls[i]);
        const QSize least_size = controls[i]->minimumSizeHint();
        SCOPED_TRACE(controls[i]->objectName().toStdString());
        EXPECT_TRUE(Window().rect().contains(place));
        EXPECT_GE(place.width(), least_size.width());
        EXPECT_GE(place.height(), least_size.height());
        if (IsShrinkControl(controls[i])) {
          EXPECT_GE(place.top(), edge);
        } else {
          EXPECT_LE(place.bottom(), edge);
        }
        for (std::size_t j = 0; j < i; ++j) {
          EXPECT_FALSE(place.intersects(PlaceOf(controls[j])))
              << controls[j]->objectName().toStdString();
        }
      }
    }
    panel.reset();
  }
}

TEST_F(FormTest, TabReachesEveryControlAndEachHasAName) {
  StartWithFont(9);
  Choose("mnu_function_aspect");
  Choose("mnu_function_advanced");
  Press("chk_shrinkenable");
  Form().lst_commands->setCurrentRow(1);
  Activate();
  Form().Cmd_openclose->setFocus();

  std::set<QString> visited;
  for (int i = 0; i < 100; ++i) {
    QWidget* const focus = QApplication::focusWidget();
    ASSERT_NE(focus, nullptr) << i;
    visited.insert(focus->objectName());
    QTest::keyClick(focus, Qt::Key_Tab);
  }
  for (const QWidget* const widget : VisibleControls()) {
    const bool takes_focus = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled();
    if (!takes_focus) continue;
    SCOPED_TRACE(widget->objectName().toStdString());
    EXPECT_TRUE(visited.contains(widget->objectName()));
    auto* const read_out = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    ASSERT_NE(read_out, nullptr);
    EXPECT_FALSE(read_out->text(QAccessible::Name).isEmpty());
  }
}

TEST_F(FormTest, TheWheelTurnsAListOnlyWithTheFocus) {
  StartAndOpen(32);
  (void)Written();
  Activate();
  QComboBox* const list = Form().cbo_resolution;
  const auto turn = [list] {
    const QPointF place = list->rect().center();
    QWheelEvent wheel(place, list->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list, &wheel);
  };
  Form().cmd_fade->setFocus();
  turn();
  EXPECT_EQ(list->currentIndex(), 0);
  EXPECT_THAT(Written(), IsEmpty());
  list->setFocus();
  turn();
  EXPECT_EQ(list->currentIndex(), 1);
  EXPECT_THAT(Written(), ElementsAre(WriteOf(131, 2)));
}

TEST_F(FormTest, AboutTellsTheTitleAndTheVersion) {
  Start();
  Choose("mnu_about");
  auto* const about = Find<QDialog>("frm_About");
  EXPECT_FALSE(about->isModal());
  EXPECT_EQ(about->windowTitle(), "About KALDE2 Control Panel");
  EXPECT_EQ(about->findChild<QLabel*>("lblTitle")->text(), "KALDE2 Control Panel");
  EXPECT_EQ(about->findChild<QLabel*>("lblVersion")->text(), "Version 1.0.7");
  EXPECT_FALSE(about->findChild<QLabel*>("lblDescription")->text().isEmpty());
  Choose("mnu_about");
  EXPECT_EQ(Window().findChildren<QDialog*>("frm_About").size(), 1);
  QTest::mouseClick(about->findChild<QAbstractButton*>("cmdOK"), Qt::LeftButton);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Window().findChild<QDialog*>("frm_About"), nullptr);
}

}  // namespace
}  // namespace kalde2
