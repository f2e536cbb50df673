#include <vector>

#include "adapters/port_numbers.h"
#include "bench/bare_line.h"
#include "bench/figures.h"
#include "bench/measurements.h"
#include "tests/support/helper_process.h"
#include "tests/support/unit_process.h"

namespace kalde2::bench {

void MeasureTrace() {
  constexpr int kRounds = 5;
  constexpr int kTrips = 1000;
  constexpr int kBaud = 57600;
  constexpr std::int16_t kAddress = 259;
  UnitProcess unit({"--quiet"});
  std::vector<double> bare_times;
  std::vector<double> traced_times;
  const auto measure = [](std::vector<double>& times, const std::string& device) {
    const std::vector<double> some = BareLine(device, kBaud).ReadAgain(kAddress, kTrips);
    times.insert(times.end(), some.begin(), some.end());
  };
  // They take turns, so that both see the same machine.
  for (int round = 0; round < kRounds; ++round) {
    measure(bare_times, unit.Device());
    const HelperProcess trace(KALDE2_CTL,
                              {"-p", "1", "-b", "57600", "trace", "--as", "2", "--record", "trace"},
                              "port 2 is ");
    measure(traced_times, (DefaultPortsFolder() + "/2").toStdString());
  }
  const double traced = Median(traced_times);
  PrintFigure("round trip, bare loop through a recorded trace: median", traced, "us");
  PrintFigure("round trip, bare loop through a recorded trace: 99th percentile",
              Percentile(traced_times, 0.99), "us");
  PrintAtMost("round trip, added by a recorded trace: median", traced - Median(bare_times), "us",
              "1000");
}

}  // namespace kalde2::bench
