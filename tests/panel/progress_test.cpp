#include <QLabel>
#include <QProgressBar>

#include "tests/support/panel_fixture.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

/// What the progress window holds at the moment at which a request goes out.
struct Seen {
  std::string request;
  std::string label;
  int value;

  bool operator==(const Seen&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Seen& seen) {
    return out << seen.request << " under \"" << seen.label << "\" " << seen.value;
  }
};

class ProgressWindow : public PanelFixture {
 protected:
  /// Runs an operation and notes what the window holds at each of its requests.
  template <typename Operation>
  [[nodiscard]] std::vector<Seen> SeenIn(Operation operation) {
    std::vector<Seen> all;
    const auto answer = port.on_write;
    port.on_write = [&](std::string_view frame) {
      all.push_back({std::string(frame), Label().text().toStdString(), Bar().value()});
      return answer(frame);
    };
    operation();
    port.on_write = answer;
    return all;
  }

  TempFolder folder;  // the fetch leaves its file there

  [[nodiscard]] QLabel& Label() { return *Find<QLabel>("lbl_progress"); }
  [[nodiscard]] QProgressBar& Bar() { return *Find<QProgressBar>("ProgressBar"); }
};

TEST_F(ProgressWindow, HoldsWhatAStepSetsBeforeItsRequestGoesOut) {
  StartAndOpen();
  Press("Cmd_openclose");
  EXPECT_EQ(clock.Monotonic(), std::chrono::milliseconds(2000)) << "in view, and events served";
  // Again: what the window held at the end of the operation before is not shown for a moment.
  const auto opening = SeenIn([this] { Press("Cmd_openclose"); });
  EXPECT_EQ(opening[1], (Seen{ReadOf(404), "Reading Connectivity... RGB/DVI Sources 0", 16}));
  EXPECT_EQ(opening[117].label, "Reading Connectivity... SDI Sources 10");
  EXPECT_EQ(opening[117].value, 90);

  // The reply is there at once, and the bar moves all the same.
  const auto written = SeenIn([this] { Choose("menu_clone_write"); });
  EXPECT_EQ(written.front(), (Seen{WriteOf(130, 16), "Writing Parameters", 0}));
  EXPECT_EQ(written.back(), (Seen{WriteOf(413, 0), "Writing Parameters", 283}));
  EXPECT_EQ(Bar().value(), 283);

  const auto fetched = SeenIn([this] { Choose("mnu_function_refreshRes"); });
  EXPECT_EQ(fetched.front(), (Seen{"F84104100D8??\r", "Reading ResolutionData", 283}));
  EXPECT_EQ(Bar().maximum(), 0);
  EXPECT_EQ(Label().text(), "Saving file");

  EXPECT_EQ(clock.sleeps.back(), std::chrono::milliseconds(2000)) << "in view, and nothing served";

  const auto autoset = SeenIn([this] { Press("cmd_autoset"); });
  EXPECT_EQ(autoset[1], (Seen{ReadOf(254), "Waiting for Autoset to finish", 0}));
  EXPECT_EQ(autoset.back().label, "Autoset complete reading adjustments");
}

TEST_F(ProgressWindow, StaysAfterAFetchThatFailsUntilItIsClosed) {
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

}  // namespace
}  // namespace kalde2
