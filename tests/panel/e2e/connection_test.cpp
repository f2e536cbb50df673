// Opening and refusing units, and what an idle panel costs.

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
  QTest::keyClick(Form().cbo_baud, Qt::Key_End);
  Press("Cmd_openclose");
  EXPECT_EQ(State(), "OPEN : K2-6350");

  Window().close();
  EXPECT_EQ(panel->ends, 1);
  StartPanel();
  EXPECT_EQ(Form().cbo_baud->currentText(), "115200");
  panel->settings.SaveSetting("Tessaly", "Serial Parameters", "57600");
}

}  // namespace
}  // namespace kalde2
