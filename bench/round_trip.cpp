#include <chrono>
#include <stdexcept>
#include <vector>

#include "bench/bare_line.h"
#include "bench/figures.h"
#include "bench/measurements.h"
#include "bench/real_panel.h"
#include "tests/support/unit_process.h"

namespace kalde2::bench {
namespace {

using Clock = std::chrono::steady_clock;

/// One parameter that controls show ("Zoom", percent), asked for again and again.
constexpr std::int16_t kShownAddress = 259;

template <typename Transact>
std::vector<double> PanelRoundTrips(int count, Transact transact) {
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    const auto start = Clock::now();
    const ReplyRecord reply = transact(i);
    times.push_back(Microseconds(Clock::now() - start));
    if (!reply.Valid) throw std::runtime_error("a reply is missing");
  }
  return times;
}

}  // namespace

void MeasureRoundTrip() {
  constexpr int kRounds = 5;
  constexpr int kTrips = 1000;
  UnitProcess unit({"--quiet"});
  BareLine bare(unit.Device(), 57600);  // first: the panel lets nobody else open the device
  RealPanel panel;
  panel.Open(57600);
  CommandLink& link = panel.Window().UnitSession().Link();
  std::vector<double> bare_times;
  std::vector<double> reads;
  std::vector<double> writes;
  const auto append = [](std::vector<double>& all, const std::vector<double>& some) {
    all.insert(all.end(), some.begin(), some.end());
  };
  // They take turns, so that both see the same machine.
  for (int round = 0; round < kRounds; ++round) {
    append(bare_times, bare.ReadAgain(kShownAddress, kTrips));
    append(reads, PanelRoundTrips(kTrips, [&](int) {
             return link.SendParameter(kRead, 16, 0, kShownAddress);
           }));
    append(writes, PanelRoundTrips(kTrips, [&](int i) {
             return link.SendParameter(kWrite, 16, 100 + i % 900, kShownAddress);
           }));
  }
  const double median = Median(bare_times);
  const double worst = Percentile(bare_times, 0.99);
  PrintFigure("round trip, bare loop: median", median, "us");
  PrintFigure("round trip, bare loop: 99th percentile", worst, "us");
  PrintFigure("round trip, panel reads: median", Median(reads), "us");
  PrintFigure("round trip, panel reads: 99th percentile", Percentile(reads, 0.99), "us");
  PrintAtMost("round trip, panel to bare loop: median", Median(reads) / median, "times", "1.5");
  PrintAtMost("round trip, panel to bare loop: 99th percentile", Percentile(reads, 0.99) / worst,
              "times", "2");
  PrintFigure("round trip, each reply moving a slider: median", Median(writes) / median, "times");
  PrintFigure("round trip, each reply moving a slider: 99th percentile",
              Percentile(writes, 0.99) / worst, "times");
}

}  // namespace kalde2::bench
