// Opening, refusing and losing units.

#include "tests/adapters/test_line.h"
#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

class EndToEndConnection : public EndToEnd {};

const QString kNoAnswer =
    "critical, Connect: Could not read the product type.\r\n Please ensure the unit is connected";

/// The share of a core that the panel takes while events are served for a time.
double CpuShare(const std::function<void(std::chrono::milliseconds)>& rest) {
  constexpr auto kSpan = 2000ms;
  const auto before = CpuTime();
  rest(kSpan);
  return std::chrono::duration<double>(CpuTime() - before) / kSpan;
}

TEST_F(EndToEndConnection, TakesNoCpuClosedOpenOrWaitingForASilentUnit) {
  constexpr double kNone = 0.01;
  StartUnit({"--fault", "silent"});
  StartPanel();
  Rest(200ms);
  EXPECT_LT(CpuShare(Rest), kNone) << "closed";

  std::chrono::microseconds before{};
  std::chrono::microseconds after{};
  QTimer::singleShot(500ms, [&] { before = CpuTime(); });
  QTimer::singleShot(2500ms, [&] { after = CpuTime(); });
  Press("Cmd_openclose");
  EXPECT_LT(after - before, 20ms) << "waiting";
  EXPECT_EQ(Boxes(), QStringList(kNoAnswer));
  EXPECT_EQ(State(), "CLOSED");
  EXPECT_EQ(unit->Requests().filter("F84104100C499").size(), 3);

  unit->Command("fault none");
  Press("Cmd_openclose");
  EXPECT_EQ(State(), "OPEN : K2-6350");
  EXPECT_TRUE(Becomes([this] { return !Form().tmr_updatelstCommands->isActive(); }));
  EXPECT_LT(CpuShare(Rest), kNone) << "open";
}

TEST_F(EndToEndConnection, NeedsTheRateOfTheUnitAndRemembersIt) {
  StartUnit({"--baud", "115200"});
  StartPanel();
  EXPECT_EQ(Form().cbo_baud->currentText(), "57600");
  Press("Cmd_openclose");
  EXPECT_EQ(Boxes(), QStringList(kNoAnswer));
  (void)unit->Requests();

  QTest::keyClick(Form().cbo_baud, Qt::Key_End);
  unit->Command("fault silent-for=2");
  Press("Cmd_openclose");
  EXPECT_EQ(State(), "OPEN : K2-6350");
  EXPECT_EQ(unit->Requests().filter("F84104100C499").size(), 3);
  EXPECT_EQ(Boxes(), QStringList());

  Window().close();
  EXPECT_EQ(panel->ends, 1);
  StartPanel();
  EXPECT_EQ(Form().cbo_baud->currentText(), "115200");
  panel->settings.SaveSetting("Tessaly", "Serial Parameters", "57600");
}

TEST_F(EndToEndConnection, SaysOnceThatTheLineIsGoneAndOpensTheNext) {
  const auto expect_loss = [this](const char* moment) {
    SCOPED_TRACE(moment);
    EXPECT_TRUE(Becomes([this] { return State() == "CLOSED"; }));
    Rest(300ms);
    const QStringList boxes = Boxes();
    EXPECT_EQ(boxes.size(), 1);
    EXPECT_TRUE(boxes.join("").startsWith("critical, Connect: "));
    EXPECT_EQ(Form().Cmd_openclose->text(), "Open &Port");
    EXPECT_FALSE(Form().fra_control->findChild<QListWidget*>()->isEnabled());
    EXPECT_FALSE(Find<QWidget>("frm_Progress")->isVisible());
    EXPECT_TRUE(unit->Says("hung up"));
    unit->Command("replug");
    EXPECT_TRUE(unit->Says("ready: port 1"));
  };
  StartUnit({"--fault", "hang-up-before=30"});
  StartPanel();
  Press("Cmd_openclose");
  expect_loss("reading the connectivity");

  Press("Cmd_openclose");
  EXPECT_EQ(State(), "OPEN : K2-6350");
  unit->Command("fault hang-up-during=20");
  EXPECT_TRUE(unit->Says("faults: hang-up-during"));
  Choose("mnu_clone_read");
  expect_loss("reading a clone");

  Press("Cmd_openclose");
  EXPECT_EQ(State(), "OPEN : K2-6350");
  unit->Command("hang-up");
  expect_loss("idle");
}

}  // namespace
}  // namespace kalde2
