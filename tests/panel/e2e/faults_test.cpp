// What goes wrong on a real line, in real time: a chosen part of the fault matrix.

#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

enum class Act { kNothing, kOtherControl, kClosePort, kCloseWindow };

struct Cell {
  const char* fault;        ///< a fault as the unit's front panel takes it, or "baud RATE"
  Act act = Act::kNothing;  ///< what the operator does in the midst of it
  std::string_view box{};   ///< how the only message begins; the port is closed then
};

struct Operation {
  const char* name;
  void (*run)(EndToEnd&);
  std::vector<Cell> cells;
};

constexpr std::string_view kNoAnswer = "critical, Connect: Could not read the product type.";
constexpr std::string_view kLost = "critical, Connect: The serial port was lost: ";
constexpr std::string_view kNoAnswerOrLost = "critical, Connect: ";  // whichever is noticed first

// The time-out of a reply is a second.
// clang-format off
const Operation kOperations[] = {
    {"open", [](EndToEnd& t) { t.Press("Cmd_openclose"); }, {
       {"silent-for=1"}, {"late=600", Act::kCloseWindow}, {"split=600"},
       {"split=1200", Act::kClosePort}, {"noise-before"}, {"error-reply", {}, kNoAnswer},
       {"baud 9600", {}, kNoAnswer}, {"baud 115200", Act::kClosePort},
       {"hang-up-before=1", {}, kNoAnswerOrLost}, {"hang-up-during=30", {}, kLost}}},
    {"slider", [](EndToEnd& t) { QTest::keyClick(t.Form().Slider("slide_ymax"), Qt::Key_Right); }, {
       {"silent-for=1"}, {"silent-for=1", Act::kOtherControl}, {"late=600", Act::kClosePort},
       {"split=600"}, {"split=1200"}, {"noise-before"}, {"error-reply"},
       {"baud 9600", Act::kOtherControl}, {"unasked=200", Act::kOtherControl},
       {"hang-up-before=1", {}, kLost}}},
    {"cloneread", [](EndToEnd& t) { t.Choose("mnu_clone_read"); }, {
       {"silent-for=1"}, {"late=600", Act::kOtherControl}, {"split=600", Act::kCloseWindow},
       {"split=1200", Act::kClosePort}, {"noise-before"}, {"error-reply=20"}, {"unasked=200"},
       {"hang-up-during=20", {}, kLost}}},
    // The line goes while the count, a first and a second packet are awaited.
    {"fetch", [](EndToEnd& t) { t.Choose("mnu_function_refreshRes"); }, {
       {"hang-up-before=1", {}, kLost}, {"hang-up-before=2", {}, kLost},
       {"hang-up-during=3", {}, kLost}}},
    {"idle", [](EndToEnd& t) { t.unit->Command("hang-up"); }, {{"none", {}, kLost}}},
};
// clang-format on

void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

class FaultsInRealTime : public EndToEnd, public ::testing::WithParamInterface<Operation> {
 protected:
  void RunCell(const Cell& cell) {
    const bool opens = GetParam().name == std::string_view("open");
    if (opens == panel->port.PortOpen()) Press("Cmd_openclose");
    ASSERT_NE(opens, panel->port.PortOpen());
    const QByteArray fault = cell.fault;
    const bool other_rate = fault.startsWith("baud");
    unit->Command(other_rate ? fault : "fault " + fault);
    ASSERT_TRUE(unit->Says(other_rate ? "line runs at " : "faults: "));

    bool acted = false;
    const auto act = [&] {
      if (!std::exchange(acted, true)) Perform(cell.act);
    };
    QTimer in_the_midst;
    in_the_midst.callOnTimeout(act);
    in_the_midst.start(150ms);
    // Slow in the first reply only: in each of hundreds it would take minutes.
    const bool is_slow = fault.startsWith("late") || fault.startsWith("split");
    QTimer mending;
    mending.callOnTimeout([this] { unit->Command("fault none"); });
    if (is_slow) mending.start(300ms);
    GetParam().run(*this);
    act();
    mending.stop();
    in_the_midst.stop();
    unit->Command("fault none\nbaud any");
    // What is still on its way is part of this operation, not of the next.
    if (is_slow) Rest(1500ms);
    ExpectBox(cell.box);
    EXPECT_FALSE(QFile::exists("resdata.txt"));
    if (!cell.box.empty() && cell.box != kNoAnswer) {
      EXPECT_TRUE(unit->Says("hung up"));
      unit->Command("replug");
      EXPECT_TRUE(unit->Says("ready: port 1"));
    }
    EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
    EXPECT_FALSE(Find<QWidget>("frm_Progress")->isVisible());
    if (cell.act == Act::kCloseWindow) {
      EXPECT_EQ(panel->ends, 1);
      EXPECT_FALSE(panel->port.PortOpen() || Window().isVisible());
      StartPanel();
    } else if (cell.act == Act::kClosePort || !cell.box.empty()) {
      ExpectShowsClosed();
    } else {
      ExpectShowsOpen();
    }
    ExpectNextOperationWorks();
  }

 private:
  void Perform(Act act) {
    if (act == Act::kOtherControl) QTest::keyClick(Form().Slider("slide_ymin"), Qt::Key_Right);
    if (act == Act::kClosePort) Press("Cmd_openclose");
    if (act == Act::kCloseWindow) Window().close();
  }

  void ExpectBox(std::string_view beginning) {
    QStringList boxes = Boxes();
    EXPECT_TRUE(beginning.empty() || Becomes([&] { return !(boxes += Boxes()).isEmpty(); }));
    Rest(100ms);  // for one that should not come
    boxes += Boxes();
    EXPECT_EQ(boxes.size(), beginning.empty() ? 0 : 1);
    EXPECT_EQ(boxes.join("; ").toStdString().substr(0, beginning.size()), beginning);
  }

  void ExpectNextOperationWorks() {
    if (!panel->port.PortOpen()) Press("Cmd_openclose");
    ExpectShowsOpen();
    auto* const slider = Form().Slider("slide_softv");
    const int before = slider->Value();
    QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(slider->Value(), before + 1);
    EXPECT_EQ(unit->Value(293), before + 1);
  }
};

TEST_P(FaultsInRealTime, EndInTruthAndInAPanelThatGoesOn) {
  StartUnit();
  StartPanel();
  for (const Cell& cell : GetParam().cells) {
    SCOPED_TRACE(std::string(cell.fault) + ", act " + std::to_string(static_cast<int>(cell.act)));
    RunCell(cell);
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultsInRealTime, ::testing::ValuesIn(kOperations),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kalde2
