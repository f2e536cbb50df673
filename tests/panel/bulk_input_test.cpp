#include <filesystem>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Frames = std::vector<std::string>;
using std::chrono::milliseconds;

/// An operation that keeps the unit to itself.
struct Operation {
  const char* starter;       ///< the button or menu item
  milliseconds well_inside;  ///< a moment in one of its waits
  const char* name;
};

void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

constexpr int kLatency = 5;

constexpr Operation kOperations[] = {
    {"Cmd_openclose", milliseconds(2), "Detection"},
    {"Cmd_openclose", milliseconds(302), "Connectivity"},
    {"Cmd_openclose", milliseconds(1500), "Result"},
    {"mnu_clone_read", milliseconds(202), "CloneRead"},
    {"menu_clone_write", milliseconds(202), "CloneWrite"},
    {"mnu_function_refreshRes", milliseconds(202), "Fetch"},
    {"cmd_autoset", milliseconds(2007), "Autoset"},
};

/// A panel that is about to start one of the operations, with a unit that answers after 5 ms.
class BulkInputTest : public PanelFixture, public ::testing::WithParamInterface<Operation> {
 protected:
  void SetUp() override {
    std::filesystem::remove("resdata.txt");
    StartAndOpen();
    Choose("mnu_function_advanced");
    Choose("mnu_function_aspect");
    if (IsOpening()) Press("Cmd_openclose");
    ASSERT_FALSE(unit->Faults().Add("late=" + std::to_string(kLatency)));
    (void)Written();
  }

  [[nodiscard]] static bool IsOpening() {
    return GetParam().starter == std::string_view("Cmd_openclose");
  }

  /// Runs the operation and does something in its midst. @return the frames of the operation
  Frames RunAnd(std::function<void()> act) {
    bool acted = false;
    clock.After(GetParam().well_inside, [&] {
      acted = true;
      act();
    });
    if (auto* const button = Window().findChild<QAbstractButton*>(GetParam().starter)) {
      QTest::mouseClick(button, Qt::LeftButton);
    } else {
      Choose(GetParam().starter);
    }
    EXPECT_TRUE(acted) << "the operation was over before";
    EXPECT_EQ(clock.deepest_wait, 1);
    return Written();
  }

  /// Every kind of input to one control.
  void Poke(QWidget* widget) {
    const QPoint middle(widget->height() / 2, widget->height() / 2);
    QTest::mouseDClick(widget, Qt::LeftButton, {}, middle);
    QTest::mouseClick(widget, Qt::RightButton, {}, middle);
    widget->setFocus();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Down, Qt::Key_End, Qt::Key_Return}) {
      QTest::keyClick(widget, key);
    }
  }

  /// Clicks on everything, which lets no focus move; the pointer says why.
  void ExpectBusy() {
    Focus(*Form().lst_commands);
    const QWidget* const focused = Window().focusWidget();
    for (QWidget* const widget : Form().fra_control->findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      QTest::mouseClick(widget, Qt::LeftButton);
      EXPECT_EQ(Window().focusWidget(), focused);
      EXPECT_TRUE(IsBusy(*widget)) << widget->objectName().toStdString();
    }
    EXPECT_FALSE(IsBusy(*Form().Cmd_openclose));
    const bool was_shown = panel->Progress().isVisible();
    panel->Progress().close();
    EXPECT_EQ(panel->Progress().isVisible(), was_shown);
  }

  [[nodiscard]] static bool IsBusy(const QWidget& widget) {
    return widget.cursor().shape() == Qt::BusyCursor;
  }

  void PokeEverything() {
    Focus(*Form().fra_control);
    for (QWidget* const widget : Form().fra_control->findChildren<QWidget*>()) {
      if (widget->isVisible()) Poke(widget);
    }
    for (const char* item :
         {"mnu_file_load", "mnu_file_save", "mnu_clone_read", "menu_clone_write",
          "mnu_function_refreshRes", "cmd_function_strore", "mnu_function_reset"}) {
      Choose(item);
    }
    QTest::keyClick(&Window(), Qt::Key_B, Qt::AltModifier);
  }
};

TEST_P(BulkInputTest, InputToTheUnitsControlsDoesNothing) {
  const Frames undisturbed = RunAnd([] {});
  Tick("tmr_updatelstCommands");
  SelectLine("Zoom Pan H");  // with its editor, which has a pointer of its own
  if (IsOpening()) Press("Cmd_openclose");
  const Frames frames = RunAnd([this] {
    ExpectBusy();
    PokeEverything();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  });
  EXPECT_EQ(frames, undisturbed);
  EXPECT_TRUE(boxes.shown.empty() && boxes.confirmations.empty());
  EXPECT_TRUE(dialogs.opened.empty() && dialogs.saved.empty());
  EXPECT_FALSE(IsBusy(*Form().cmd_fade) || IsBusy(*Form().txt_commandval));
  for (QWidget* const control :
       {static_cast<QWidget*>(Form().cmd_fade), static_cast<QWidget*>(Form().txt_commandval)}) {
    QTest::mouseClick(control, Qt::LeftButton);
    EXPECT_EQ(Window().focusWidget(), control);
  }
}

TEST_P(BulkInputTest, EndedByEscInTheProgressWindowAndReopenedItStartsAfresh) {
  std::size_t before = 0;
  const Frames frames = RunAnd([&] {
    before = port.written.size();
    QTest::keyClick(&panel->Progress(), Qt::Key_Escape);
    ExpectShowsClosed();
    EXPECT_EQ(Status(), "");
    EXPECT_FALSE(panel->Progress().isVisible() || IsBusy(*Form().cmd_fade));
    // The reply that is still due would be taken for the answer to the first question.
    clock.Advance(milliseconds(kLatency));
    Press("Cmd_openclose");
  });
  ExpectShowsOpen();
  EXPECT_EQ(Status(), "Values have not been read: Clone > Read fetches them");
  ASSERT_GT(frames.size(), before);
  EXPECT_EQ(frames[before], ReadOf(196)) << "nothing more of the operation itself";
  EXPECT_EQ(frames.back(), WriteOf(278, 16));
  EXPECT_FALSE(panel->Progress().isVisible() || std::filesystem::exists("resdata.txt"));
  EXPECT_TRUE(boxes.shown.empty());
}

INSTANTIATE_TEST_SUITE_P(Operations, BulkInputTest, ::testing::ValuesIn(kOperations),
                         [](const auto& operation) { return operation.param.name; });

}  // namespace
}  // namespace kalde2
