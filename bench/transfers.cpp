#include <QAction>
#include <algorithm>
#include <chrono>
#include <string>

#include "bench/bare_line.h"
#include "bench/figures.h"
#include "bench/measurements.h"
#include "bench/real_panel.h"
#include "tests/support/unit_process.h"

namespace kalde2::bench {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// What the wire alone would have needed of a time, in percent.
double WireShare(std::size_t characters, int baud, Clock::duration time) {
  const double wire = static_cast<double>(characters) * kBitsPerCharacter / baud;
  return 100 * wire / std::chrono::duration<double>(time).count();
}

/// The best of several runs: what else the computer does in the midst of one is not the panel's.
template <typename Run>
double BestOf(int runs, Run run) {
  double best = 0;
  for (int i = 0; i < runs; ++i) best = std::max(best, run());
  return best;
}

/// Prints a share of the wire's rate, and how much that is of the bare loop's share: the line and
/// the computer keep the rest from either.
void PrintShare(const std::string& what, double share, double bare, int baud, int least) {
  const std::string at_rate = what + " at " + std::to_string(baud) + " baud, of the ";
  PrintFigure(at_rate + "wire's rate", share, "%");
  PrintAtLeast(at_rate + "bare loop's", 100 * share / bare, "%", std::to_string(least));
}

/// `WireShare` of the bare loop: what the unit's own pace costs.
double BareWireShare(const UnitProcess& unit, int baud) {
  constexpr int kTrips = 300;
  constexpr std::int16_t kAnyAddress = 130;
  constexpr std::size_t kCharacters = 14 + 20;
  BareLine bare(unit.Device(), baud);
  const auto start = Clock::now();
  (void)bare.ReadAgain(kAnyAddress, kTrips);
  return WireShare(kTrips * kCharacters, baud, Clock::now() - start);
}

}  // namespace

void MeasureTransfers(int baud, int least) {
  constexpr int kRuns = 4;
  // The finished bar's stay in view is not the line's matter.
  constexpr milliseconds kShowResult{2000};
  UnitProcess unit({"--quiet", "--baud", QString::number(baud), "--type", "35", "--sources",
                    "16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31", "--resolutions", "255"});
  const double bare = BestOf(kRuns, [&] { return BareWireShare(unit, baud); });
  PrintFigure("bare loop at " + std::to_string(baud) + " baud, of the wire's rate", bare, "%");
  RealPanel panel;
  const auto open = [&] {
    if (panel.Port().PortOpen()) panel.Close();
    panel.Open(baud);
    // From the first character to the last before the finished bar stays in view.
    const auto [characters, first, last] = panel.Port().TakeTraffic();
    return WireShare(characters, baud, last - first);
  };
  PrintShare("detection and connectivity", BestOf(kRuns, open), bare, baud, least);
  const auto measure = [&](const std::string& what, Clock::duration aside, QAction& transfer) {
    const auto run = [&] {
      const auto start = Clock::now();
      transfer.trigger();
      const auto time = Clock::now() - start - aside;
      return WireShare(panel.Port().TakeTraffic().characters, baud, time);
    };
    PrintShare(what, BestOf(kRuns, run), bare, baud, least);
  };
  measure("clone read, 16 sources", {}, *panel.Form().mnu_clone_read);
  measure("clone write, 16 sources", {}, *panel.Form().menu_clone_write);
  measure("fetch of 255 resolutions", kShowResult, *panel.Form().mnu_function_refreshRes);
}

}  // namespace kalde2::bench
