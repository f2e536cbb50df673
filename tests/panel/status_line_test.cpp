#include <gmock/gmock.h>

#include <QAccessible>

#include "tests/support/panel_fixture.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kLooking = "Looking for the unit... Esc stops";
constexpr const char* kSilent = "The unit does not answer";
constexpr const char* kUnread = "Values have not been read: Clone > Read fetches them";
constexpr const char* kLoaded = "Loading sent nothing: Clone > Write does";
constexpr const char* kListed = "New resolutions are listed from the next start";

class StatusLineTest : public PanelFixture {
 protected:
  /// Starts with a unit of two resolutions, and notes the line from now on.
  void StartNoting() {
    UnitOptions options;
    options.fitted_sources = {16, 48};
    options.resolutions.resize(2);
    ConnectUnit(std::move(options));
    port.on_write = [this, answer = port.on_write](std::string_view frame) {
      Note();
      return answer(frame);
    };
    Start();
  }

  /// What the line has come to say since the last call, at each request and now.
  std::vector<std::string> Said() {
    Note();
    return std::exchange(said_, {});
  }

  void TurnASlider() { Key("slide_ymin", Qt::Key_Right); }

  TempFolder folder;

 private:
  /// As a screen reader has it.
  void Note() {
    const auto* const line = QAccessible::queryAccessibleInterface(Form().lbl_status);
    const std::string text = line->text(QAccessible::Name).toStdString();
    if (std::exchange(last_, text) != text) said_.push_back(text);
  }

  std::vector<std::string> said_;
  std::string last_;
};

TEST_F(StatusLineTest, TellsWhatRunsAndWhatIsNotKnown) {
  StartNoting();
  dialogs.name = "settings.txt";
  Press("Cmd_openclose");
  EXPECT_THAT(Said(), ElementsAre(kLooking, kUnread));
  TurnASlider();
  Choose("mnu_file_save");
  EXPECT_THAT(Said(), IsEmpty());
  Choose("mnu_clone_read");
  EXPECT_THAT(Said(), ElementsAre(""));
  Choose("mnu_file_load");
  EXPECT_THAT(Said(), ElementsAre(kLoaded));
  Choose("menu_clone_write");
  EXPECT_THAT(Said(), ElementsAre(""));
  WriteText("empty.txt", "");
  dialogs.name = "empty.txt";
  Choose("mnu_file_load");
  EXPECT_THAT(Said(), IsEmpty()) << "there was nothing to load";
  Choose("mnu_function_refreshRes");
  EXPECT_THAT(Said(), ElementsAre("Slot 1 of 2", "Slot 2 of 2", kListed));
  TurnASlider();
  EXPECT_THAT(Said(), ElementsAre(""));

  ASSERT_FALSE(unit->Faults().Add("silent"));
  TurnASlider();
  EXPECT_THAT(Said(), ElementsAre(kSilent));
  Press("Cmd_openclose");
  EXPECT_THAT(Said(), ElementsAre(""));
  clock.After(milliseconds(2500), [this] { EXPECT_EQ(Status(), kLooking); });
  Press("Cmd_openclose");
  EXPECT_THAT(Said(), ElementsAre(kLooking, "")) << "not detected";

  unit->Faults().Clear();
  Press("Cmd_openclose");
  ASSERT_FALSE(unit->Faults().Add("error-reply"));
  Choose("mnu_function_refreshRes");
  EXPECT_THAT(Said(), ElementsAre(kLooking, kUnread)) << "a refusal is an answer";
  port.HangUp();
  EXPECT_THAT(Said(), ElementsAre(""));
}

TEST_F(StatusLineTest, IsSeenAndInNobodysWay) {
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

}  // namespace
}  // namespace kalde2
