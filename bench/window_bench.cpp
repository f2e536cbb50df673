// What the panel adds to the line, measured in the real window against kalde2-unit. Prints lines of
// the table; see figures.h.
//
//   window_bench NAME...     the named ones in turn, all without a name

#include <QApplication>
#include <array>
#include <iostream>

#include "bench/measurements.h"

namespace {

struct Measurement {
  const char* name;
  void (*run)();
};

constexpr auto kMeasurements = std::to_array<Measurement>({
    {"round-trip", kalde2::bench::MeasureRoundTrip},
    {"trace", kalde2::bench::MeasureTrace},
    {"transfers-57600", [] { kalde2::bench::MeasureTransfers(57600, 97); }},
    {"transfers-115200", [] { kalde2::bench::MeasureTransfers(115200, 95); }},
    {"drag", kalde2::bench::MeasureDrag},
    {"command-list", kalde2::bench::MeasureCommandList},
    {"unasked", kalde2::bench::MeasureUnasked},
});

}  // namespace

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KALDE2"));
  const QStringList names = QApplication::arguments().mid(1);
  try {
    for (const auto& [name, run] : kMeasurements) {
      if (names.isEmpty() || names.contains(QLatin1String(name))) run();
    }
  } catch (const std::exception& problem) {
    std::cerr << "window_bench: " << problem.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
