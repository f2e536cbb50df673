#include <algorithm>
#include <chrono>
#include <string>

#include "bench/figures.h"
#include "bench/latency_probe.h"
#include "bench/measurements.h"
#include "bench/real_panel.h"
#include "tests/support/unit_process.h"

namespace kalde2::bench {
namespace {

using std::chrono::milliseconds;

/// The front panel's frames for one address, counting up, as many as are asked for in one go.
void SendUnasked(UnitProcess& unit, int first, int count) {
  QByteArray commands;
  for (int i = 0; i < count; ++i) {
    commands += "set 259 " + QByteArray::number(100 + (first + i) % 900) + '\n';
  }
  unit.Command(commands.chopped(1));
}

/// Counts the unasked values that arrive in the window: each moves the slider.
class ShownValues {
 public:
  explicit ShownValues(cpvSlider& slider) {
    connection_ = QObject::connect(&slider, &cpvSlider::ValueChanged, [this] { ++count_; });
  }
  ~ShownValues() { QObject::disconnect(connection_); }
  ShownValues(const ShownValues&) = delete;
  ShownValues& operator=(const ShownValues&) = delete;

  [[nodiscard]] int Count() const { return count_; }

 private:
  int count_ = 0;
  QMetaObject::Connection connection_;
};

}  // namespace

void MeasureUnasked() {
  constexpr int kFrames = 1000;
  constexpr int kBurst = 18;              // frames of 20 characters, and some ends: under 400
  constexpr milliseconds kPerFrame{100};  // the timer takes one frame a tick
  UnitProcess unit({"--quiet"});
  RealPanel panel;
  panel.Open(57600);
  cpvSlider& slider = *panel.Form().Slider("slide_zoom");

  const auto measure = [&](const std::string& what, int burst) {
    const ShownValues shown(slider);
    LatencyProbe probe;
    for (int sent = 0; sent < kFrames;) {
      const int count = std::min(burst, kFrames - sent);
      SendUnasked(unit, sent + 1, count);
      sent += count;
      RealPanel::Serve(kPerFrame * (std::min(count, kBurst) + 2));
    }
    PrintAtMost(what + ": event latency, 99th percentile", Percentile(probe.Stop(), 0.99), "ms",
                "16");
    return kFrames - shown.Count();
  };
  PrintAtMost("1000 unasked frames, 18 at a time: lost",
              measure("1000 unasked frames, 18 at a time", kBurst), "frames", "0");
  PrintFigure("1000 unasked frames at once: lost, beyond what the ring holds",
              measure("1000 unasked frames at once", kFrames), "frames");
}

}  // namespace kalde2::bench
