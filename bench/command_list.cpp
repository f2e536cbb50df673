#include <QCoreApplication>
#include <chrono>
#include <string>
#include <vector>

#include "bench/figures.h"
#include "bench/measurements.h"
#include "bench/real_panel.h"
#include "tests/support/unit_process.h"

namespace kalde2::bench {

void MeasureCommandList() {
  constexpr int kRebuilds = 1000;
  constexpr double kLines = 68;  // all parameters of type 35; not all are shown at once
  constexpr std::int32_t kNeitherSimpleNorAdvanced = 2;
  UnitProcess unit({"--quiet", "--type", "35"});
  RealPanel panel;
  panel.Open(57600);
  ValueStore& values = panel.Window().UnitSession().Unit().values;
  values.StoreParamValue(IndexOf(address::kShrinkEnable), 1);
  values.StoreParamValue(IndexOf(address::kAspectAdjust), kNeitherSimpleNorAdvanced);
  std::vector<double> rebuilt;
  std::vector<double> painted;  // as much of the list as is in view; done once a frame only
  for (int i = 0; i < kRebuilds; ++i) {
    const auto start = std::chrono::steady_clock::now();
    panel.Window().Editor().RefreshCommandList();
    const auto end = std::chrono::steady_clock::now();
    panel.Window().Frames().PaintNow();
    rebuilt.push_back(Milliseconds(end - start));
    painted.push_back(Milliseconds(std::chrono::steady_clock::now() - end));
    QCoreApplication::processEvents();
  }
  const int shown = panel.Form().lst_commands->count();
  const std::string name = "command list, rebuild of " + std::to_string(shown) + " lines, for 68";
  PrintFigure(name + ": median", Median(rebuilt) * kLines / shown, "ms");
  PrintAtMost(name + ": 99th percentile", Percentile(rebuilt, 0.99) * kLines / shown, "ms", "1");
  PrintFigure("command list, painting the lines in view: median", Median(painted), "ms");
  PrintFigure("command list, painting the lines in view: 99th percentile",
              Percentile(painted, 0.99), "ms");
}

}  // namespace kalde2::bench
