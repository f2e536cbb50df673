#include <QDialog>
#include <functional>

#include "tests/support/panel_fixture.h"

// Every operation that talks, against every fault of the unit and everything that the operator can
// do in its midst. After each cell the panel tells the truth and the next operation works.

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

struct Operation {
  const char* name;
  void (*run)(PanelFixture&);
  bool opens = false;    ///< begins with the port closed
  bool fetches = false;  ///< may report slots and leave the progress window
};

struct UnitFault {
  const char* plan;        ///< of the simulated unit; several separated by blanks
  bool hangs_up = false;   ///< the line goes away
  bool no_answer = false;  ///< detection gets no valid answer
  bool garbles = false;    ///< detection may get a wrong answer
  bool floods = false;     ///< unasked frames come all the time
};

struct Act {
  const char* name;
  void (*perform)(PanelFixture&);  ///< none: the operation once more, unless it opens
  bool closes = false;
  bool ends = false;
};

// clang-format off
const Operation kOperations[] = {
    {"open",      [](PanelFixture& t) { t.Press("Cmd_openclose"); }, true},
    {"edit",      [](PanelFixture& t) {
       QListWidget& list = *t.Form().lst_commands;
       // Values that noise has garbled may have cut the list short.
       for (auto* line : list.findItems("Back Y", Qt::MatchStartsWith)) list.setCurrentItem(line);
       t.Press("cmd_commandplus"); }},
    {"drag",      [](PanelFixture& t) {
       for (int i = 0; i < 3; ++i) QTest::keyClick(t.Form().Slider("slide_zoom"), Qt::Key_Right); }},
    {"pad",       [](PanelFixture& t) {
       QTest::keyPress(t.Form().Pad("arr_zoompan"), Qt::Key_Right);
       QTest::keyRelease(t.Form().Pad("arr_zoompan"), Qt::Key_Right); }},
    {"fade",      [](PanelFixture& t) { t.Press("cmd_fade"); }},
    {"autoset",   [](PanelFixture& t) { t.Press("cmd_autoset"); }},
    {"store",     [](PanelFixture& t) { t.Choose("cmd_function_strore"); }},
    {"cloneread", [](PanelFixture& t) { t.Choose("mnu_clone_read"); }},
    {"clonewrite",[](PanelFixture& t) { t.Choose("menu_clone_write"); }},
    {"fetch",     [](PanelFixture& t) { t.Choose("mnu_function_refreshRes"); }, false, true},
    {"unasked",   [](PanelFixture& t) {
       for (int i = 0; i < 5; ++i) t.port.Arrive(t.unit->NextUnaskedFrame());
       t.Tick("TmrProcessMessage"); }},
};

const UnitFault kFaultPlans[] = {
    {""}, {"silent", false, true}, {"silent-for=1"}, {"silent-for=2"}, {"late=400"},
    {"late=1500", false, false, true}, {"split=600"}, {"split=1200", false, false, true},
    {"noise-before", false, false, true}, {"noise-inside", false, false, true},
    {"noise-after", false, false, true}, {"error-reply", false, true},
    {"short-frame", false, true}, {"short-packet"}, {"unasked=50", false, false, true, true},
    {"wrong-address"}, {"flow-bytes", false, false, true}, {"hang-up-before=2", true},
    {"hang-up-during=2", true}, {"hang-up-after=2", true},
};

const Act kActs[] = {
    {"nothing",       [](PanelFixture&) {}},
    {"close port",    [](PanelFixture& t) { if (t.port.open) t.Press("Cmd_openclose"); }, true},
    {"Esc",           [](PanelFixture& t) { QTest::keyClick(&t.Window(), Qt::Key_Escape); }, true},
    {"close window",  [](PanelFixture& t) { t.Window().close(); }, true, true},
    {"exit",          [](PanelFixture& t) { t.Choose("mnu_file_exit"); }, true, true},
    {"other control", [](PanelFixture& t) {
       QTest::keyClick(t.Form().Slider("slide_ymin"), Qt::Key_Right); }},
    {"clone read",    [](PanelFixture& t) { t.Choose("mnu_clone_read"); }},
    {"same again",    nullptr},
    {"about",         [](PanelFixture& t) { t.Choose("mnu_about"); }},
    {"close progress",[](PanelFixture& t) { t.panel->Progress().close(); }},
};
// clang-format on

void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

class FaultMatrix : public PanelFixture, public ::testing::WithParamInterface<Operation> {
 protected:
  void RunCell(const Operation& operation, const UnitFault& fault, const Act& act) {
    if (operation.opens == port.open) Press("Cmd_openclose");
    ASSERT_NE(operation.opens, port.open);
    boxes.shown.clear();
    clock.StartCounting();
    // A time-out across the full hour never comes, which is intended and not this test's business.
    clock.SetMillisecondOfHour(std::chrono::minutes(1));
    ends = 0;
    ASSERT_TRUE(*fault.plan == '\0' || !unit->Faults().Add(fault.plan));
    if (fault.floods) Flood();
    // In the midst of the first wait, or right after an operation that has none.
    bool acted = false;
    const auto perform = [&] {
      if (std::exchange(acted, true)) return;
      if (act.perform != nullptr) {
        act.perform(*this);
      } else if (!operation.opens) {
        operation.run(*this);
      }
    };
    clock.After(milliseconds(1), perform);
    operation.run(*this);
    perform();
    clock.ServeEvents(milliseconds(1));
    // What is late comes in, and what was cut off is found out.
    for (int i = 0; i < 8; ++i) {
      clock.ServeEvents(milliseconds(1000));
      Tick("TmrProcessMessage");
      Tick("tmr_updatelstCommands");
    }
    unit->Faults().Clear();
    flooding_ = false;
    EXPECT_EQ(ends, act.ends ? 1 : 0);
    ExpectTruth();
    ExpectOnlyStatedBoxes(operation, fault, act);
    // A garbled answer may end the connectivity, and a fetch, where they stand, which is intended.
    const bool may_stay =
        operation.fetches ? *fault.plan != '\0' : operation.opens && fault.garbles && port.open;
    EXPECT_TRUE(may_stay || !panel->Progress().isVisible());
    if (auto* const about = Window().findChild<QDialog*>(QStringLiteral("frm_About"))) {
      about->close();
    }
    Window().show();
    ExpectNextOperationWorks();
  }

 private:
  /// A frame each 20 ms, whatever else is on the line.
  void Flood() {
    static constexpr milliseconds kPeriod{20};
    flooding_ = true;
    const auto next = [this](const auto& again) -> void {
      if (!flooding_ || !port.open) return;
      port.Arrive(unit->NextUnaskedFrame());
      clock.After(kPeriod, [again] { again(again); });
    };
    clock.After(kPeriod, [next] { next(next); });
  }

  void ExpectTruth() {
    if (port.open) {
      EXPECT_TRUE(panel->UnitSession().UnitConnected());
      ExpectShowsOpen();
    } else if (ends == 0) {
      ExpectShowsClosed();
    } else {
      // The end of the program leaves the rest of the panel as it is.
      EXPECT_EQ(Form().lbl_comstate->text(), "CLOSED");
    }
  }

  void ExpectOnlyStatedBoxes(const Operation& operation, const UnitFault& fault, const Act& act) {
    int connect = 0;
    for (const FakeBoxes::Box& box : boxes.shown) {
      if (box.title == "Connect") {
        ++connect;
        const bool lost = box.prompt.starts_with("The serial port was lost");
        EXPECT_TRUE(lost ? fault.hangs_up : operation.opens && (fault.no_answer || fault.garbles))
            << box;
      } else {
        EXPECT_TRUE(operation.fetches && box.prompt.starts_with("Problem reading resolution"))
            << box;
      }
    }
    EXPECT_LE(connect, 1);
    // A unit that says nothing leaves time to act, and closing the port is no failure to report.
    const bool silent = std::string_view(fault.plan) == "silent";
    if (operation.opens && (silent || (fault.no_answer && !act.closes))) {
      EXPECT_EQ(connect, act.closes ? 0 : 1);
    }
  }

  void ExpectNextOperationWorks() {
    if (!port.open) Press("Cmd_openclose");
    ExpectShowsOpen();
    auto* const slider = Form().Slider("slide_softv");
    const int before = slider->Value();
    QTest::keyClick(slider, before < 200 ? Qt::Key_Right : Qt::Key_Home);
    EXPECT_NE(slider->Value(), before);
    EXPECT_EQ(unit->Value(293, 16), slider->Value());
  }

  bool flooding_ = false;
};

TEST_P(FaultMatrix, EndsInTruthAndGoesOn) {
  constexpr std::size_t kFewSlots = 4;
  UnitOptions options;
  options.fitted_sources = {16, 48};
  options.resolutions.resize(kFewSlots);
  ConnectUnit(std::move(options));
  Start();
  for (const UnitFault& fault : kFaultPlans) {
    // A garbled count of slots asks for hours of slots.
    if (GetParam().fetches && std::string_view(fault.plan) == "short-frame") continue;
    for (const Act& act : kActs) {
      SCOPED_TRACE(std::string(fault.plan) + " / " + act.name);
      ASSERT_NO_THROW(RunCell(GetParam(), fault, act));
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultMatrix, ::testing::ValuesIn(kOperations),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kalde2
