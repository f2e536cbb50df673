#include <gmock/gmock.h>

#include <QDialog>
#include <QFontInfo>
#include <QLabel>
#include <QMenuBar>

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

  /// The controls in sight and where the window shows them.
  [[nodiscard]] std::vector<std::pair<QWidget*, QRect>> VisibleControls() {
    std::vector<std::pair<QWidget*, QRect>> controls;
    for (QWidget* const widget :
         Form().fra_control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      if (!widget->isVisible() || widget->isWindow()) continue;
      controls.emplace_back(widget, QRect(widget->mapTo(&Window(), QPoint()), widget->size()));
    }
    return controls;
  }

 private:
  QFont desktop_font_ = QApplication::font();
};

TEST_F(FormTest, MenusStandInOrder) {
  Start();
  const auto texts_of = [](const QWidget* menu) {
    QStringList texts;
    for (const QAction* const action : menu->actions()) {
      texts << (action->isSeparator() ? action->objectName() : action->text());
    }
    return texts.join(", ").toStdString();
  };
  EXPECT_EQ(texts_of(Window().menuBar()), "&File, C&lone, &Function, &About");
  EXPECT_EQ(texts_of(Form().mnu_file), "&Load, &Save, menu_file_seperator, &Exit");
  EXPECT_EQ(texts_of(Form().mnu_clone), "&Read, &Write");
  EXPECT_EQ(texts_of(Form().mnu_function),
            "&Advanced, As&pect Adjust, &Update Resolution Data from unit, mnu_function_sep2, "
            "&Store, mnu_function_space1, &Reset");
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
  for (const QRadioButton* const mode : Form().opt_lock) EXPECT_FALSE(mode->isChecked());
  EXPECT_EQ(Window().height(), 382);

  for (const int height : {475, 382}) {
    Choose("mnu_function_advanced");
    EXPECT_EQ(shown(shrink), 4) << "only the smaller window takes them out of view";
    EXPECT_EQ(Window().height(), height);
  }
  for (const bool aspect : {true, false}) {
    Form().tmr_updatelstCommands->stop();
    Choose("mnu_function_aspect");
    EXPECT_EQ(shown(vertical), aspect ? 4 : 0);
    EXPECT_EQ(Form().tmr_updatelstCommands->isActive(), aspect);
  }
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
      const auto edge = static_cast<int>(std::lround(382 * factor));
      const auto controls = VisibleControls();
      EXPECT_GT(controls.size(), 50U);
      for (auto one = controls.begin(); one != controls.end(); ++one) {
        const auto& [control, place] = *one;
        SCOPED_TRACE(control->objectName().toStdString());
        EXPECT_TRUE(Window().rect().contains(place));
        EXPECT_EQ(place.size(), place.size().expandedTo(control->minimumSizeHint()));
        const bool below = control->objectName().contains(QLatin1String("shrink"));
        EXPECT_TRUE(below ? place.top() >= edge : place.bottom() <= edge);
        for (auto other = controls.begin(); other != one; ++other) {
          EXPECT_FALSE(place.intersects(other->second)) << other->first->objectName().toStdString();
        }
      }
    }
    panel.reset();
  }
}

TEST_F(FormTest, TheWheelTurnsAListOnlyWithTheFocus) {
  OpenSettled(32);
  QComboBox* const list = Form().cbo_resolution;
  Focus(*Form().cmd_fade);
  TurnWheel(list, -120);
  EXPECT_THAT(Written(), IsEmpty());
  Focus(*list);
  TurnWheel(list, -120);
  EXPECT_THAT(Written(), ElementsAre(WriteOf(131, 2)));
}

TEST_F(FormTest, AboutTellsTheVersionBesideTheWindow) {
  Start();
  for (int i = 0; i < 2; ++i) Choose("mnu_about");
  ASSERT_EQ(Window().findChildren<QDialog*>("frm_About").size(), 1);
  auto* const about = Find<QDialog>("frm_About");
  EXPECT_FALSE(about->isModal());
  EXPECT_EQ(about->windowTitle(), "About KALDE2 Control Panel");
  EXPECT_EQ(about->findChild<QLabel*>("lblVersion")->text(), "Version 1.0.7");
  QTest::mouseClick(about->findChild<QAbstractButton*>("cmdOK"), Qt::LeftButton);
  EXPECT_FALSE(about->isVisible());
}

}  // namespace
}  // namespace kalde2
