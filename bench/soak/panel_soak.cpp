#include "bench/soak/memory_watch.h"
#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

/// The whole panel over fakes.
class PanelSoak : public PanelFixture {
 protected:
  void ForgetTheLog() {
    port.written.clear();
    port.setups.clear();
    port.handshaking.clear();
    clock.sleeps.clear();
  }

  [[nodiscard]] QStringList CommandLines() {
    Tick("tmr_updatelstCommands");
    QStringList lines;
    for (int row = 0; row < Form().lst_commands->count(); ++row) {
      lines << Form().lst_commands->item(row)->text();
    }
    return lines;
  }

  void SendUnasked(long frames) {
    constexpr long kBurst = 10;  // as many as fit the ring with room to spare
    for (long i = 0; i < frames; i += kBurst) {
      std::string burst;
      for (long k = 0; k < kBurst; ++k) burst += unit->NextUnaskedFrame();
      port.Arrive(burst);
      for (long k = 0; k < kBurst; ++k) Tick("TmrProcessMessage");
      QCoreApplication::processEvents();
    }
  }

  void OpenAndClose(long cycles) {
    for (long i = 0; i < cycles; ++i) {
      clock.SetMillisecondOfHour(std::chrono::minutes(30));
      Press("Cmd_openclose");
      ASSERT_TRUE(port.open) << "cycle " << i;
      if (i % 100 == 0) {
        ASSERT_EQ(CommandLines(), first_lines) << "cycle " << i;
      }
      Press("Cmd_openclose");
      ASSERT_FALSE(port.open) << "cycle " << i;
      ASSERT_FALSE(panel->Progress().isVisible()) << "cycle " << i;
      ForgetTheLog();
    }
  }

  QStringList first_lines;
};

TEST_F(PanelSoak, AHundredThousandUnaskedFrames) {
  constexpr long kWarmUp = 20'000;
  constexpr long kFrames = 100'000;
  constexpr int kZoomPanH = 159;
  StartAndOpen();
  SendUnasked(kWarmUp);
  const MemoryWatch memory;
  SendUnasked(kFrames);
  memory.Finish(kFrames, "unasked frames");
  // No frame is lost or late: the panel shows what the unit sent last.
  EXPECT_EQ(panel->UnitSession().Unit().values.GetParamValue(IndexOf(kZoomPanH)),
            unit->Value(kZoomPanH, 16));
}

TEST_F(PanelSoak, AThousandOpeningsAndClosings) {
  constexpr long kWarmUp = 500;  // until Qt's caches are full
  constexpr long kCycles = 1'000;
  StartAndOpen();
  first_lines = CommandLines();
  ASSERT_FALSE(first_lines.isEmpty());
  Press("Cmd_openclose");
  OpenAndClose(kWarmUp);
  const MemoryWatch memory;
  OpenAndClose(kCycles);
  memory.Finish(kCycles, "open and close");
}

}  // namespace
}  // namespace kalde2
