// What the panel adds to the line, measured in the real window against kalde2-unit. Prints lines of
// the table; see figures.h.
//
//   window_bench round-trip | transfers BAUD SHARE | drag | unasked | list

#include <QApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QTime>
#include <QTimer>
#include <atomic>
#include <iostream>
#include <thread>

#include "bench/bare_line.h"
#include "bench/figures.h"
#include "bench/real_panel.h"
#include "bench/unit_process.h"
#include "link/frame_codec.h"

namespace kalde2::bench {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::duration;
using std::chrono::milliseconds;

constexpr double kBitsPerCharacter = 10;  // start, eight data, stop

double Microseconds(Clock::duration time) {
  return duration<double, std::micro>(time).count();
}

double Milliseconds(Clock::duration time) {
  return duration<double, std::milli>(time).count();
}

/// Posts an event to the window every other millisecond, as a mouse or a timer does, and notes how
/// long it took to be served.
class LatencyProbe {
 public:
  LatencyProbe() : thread_([this] { Post(); }) {}
  ~LatencyProbe() { (void)Stop(); }
  LatencyProbe(const LatencyProbe&) = delete;
  LatencyProbe& operator=(const LatencyProbe&) = delete;

  /// The latencies so far, in milliseconds.
  [[nodiscard]] std::vector<double> Stop() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
    QCoreApplication::sendPostedEvents(&window_);
    return latencies_;
  }

 private:
  static constexpr milliseconds kPeriod{2};

  void Post() {
    auto next = Clock::now();
    while (!stop_) {
      QMetaObject::invokeMethod(
          &window_,
          [this, posted = Clock::now()] {
            latencies_.push_back(Milliseconds(Clock::now() - posted));
          },
          Qt::QueuedConnection);
      next += kPeriod;
      std::this_thread::sleep_until(next);
    }
  }

  QObject window_;
  std::vector<double> latencies_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

// ---------------------------------------------------------------------------------------------

/// One parameter that controls show ("Zoom", percent), asked for again and again.
constexpr std::int16_t kShownAddress = 259;

std::vector<double> BareRoundTrips(BareLine& line, int count) {
  const std::string request = HexToWire(BuildRequest({true, 16, 0, kShownAddress}));
  std::vector<double> times;
  for (int i = 0; i < count; ++i) times.push_back(Microseconds(line.RoundTrip(request)));
  return times;
}

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

/// The bare loop and the panel take turns, so that both see the same machine.
void MeasureRoundTrip() {
  constexpr int kRounds = 5;
  constexpr int kTrips = 1000;
  UnitProcess unit({"--quiet"});
  BareLine bare(unit.Device(), 57600);  // first: the panel lets nobody else open the device
  RealPanel panel;
  panel.Open(57600);
  CommandLink& link = panel.Application().Link();
  std::vector<double> bare_times;
  std::vector<double> reads;
  std::vector<double> writes;
  const auto append = [](std::vector<double>& all, const std::vector<double>& some) {
    all.insert(all.end(), some.begin(), some.end());
  };
  for (int round = 0; round < kRounds; ++round) {
    append(bare_times, BareRoundTrips(bare, kTrips));
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

// ---------------------------------------------------------------------------------------------

/// What the wire alone would have needed of a time, in percent.
double WireShare(std::size_t characters, int baud, Clock::duration time) {
  const double wire = static_cast<double>(characters) * kBitsPerCharacter / baud;
  return 100 * wire / duration<double>(time).count();
}

/// The same of the bare loop: what the unit's own pace costs.
double BareWireShare(const UnitProcess& unit, int baud) {
  constexpr int kTrips = 300;
  constexpr std::size_t kCharacters = 14 + 20;
  BareLine bare(unit.Device(), baud);
  const auto start = Clock::now();
  (void)BareRoundTrips(bare, kTrips);
  return WireShare(kTrips * kCharacters, baud, Clock::now() - start);
}

void MeasureTransfers(int baud, const std::string& bound) {
  constexpr int kOpenings = 5;
  // The finished bar's stay in view is not the line's matter.
  constexpr milliseconds kShowResult{2000};
  UnitProcess unit({"--quiet", "--baud", QString::number(baud), "--type", "35", "--sources",
                    "16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31", "--resolutions", "255"});
  PrintFigure("bare loop at " + std::to_string(baud) + " baud, of the wire's rate",
              BareWireShare(unit, baud), "%");
  RealPanel panel;
  const std::string rate = " at " + std::to_string(baud) + " baud, of the wire's rate";
  std::vector<double> openings;
  for (int i = 0; i < kOpenings; ++i) {
    if (panel.Port().PortOpen()) panel.Close();
    panel.Open(baud);
    // From the first character to the last: what else an opening does is not the line's matter.
    const auto [characters, first, last] = panel.Port().TakeTraffic();
    openings.push_back(WireShare(characters, baud, last - first - kShowResult));
  }
  PrintAtLeast("detection and connectivity" + rate, Median(openings), "%", bound);
  const auto measure = [&](const std::string& what, Clock::duration aside, QAction& transfer) {
    const auto start = Clock::now();
    transfer.trigger();
    const auto time = Clock::now() - start - aside;
    PrintAtLeast(what + rate, WireShare(panel.Port().TakeTraffic().characters, baud, time), "%",
                 bound);
  };
  measure("clone read, 16 sources", {}, *panel.Form().mnu_clone_read);
  measure("clone write, 16 sources", {}, *panel.Form().menu_clone_write);
  measure("fetch of 255 resolutions", kShowResult, *panel.Form().mnu_function_refreshRes);
}

// ---------------------------------------------------------------------------------------------

/// A hand on the handle of a slider that stands at its left end.
class Drag {
 public:
  explicit Drag(cpvSlider& slider) : slider_(slider), start_(kHandle, slider.height() / 2.0) {
    Send(QEvent::MouseButtonPress, start_);
    if (!slider.isSliderDown()) throw std::runtime_error("the handle is somewhere else");
  }
  ~Drag() { Send(QEvent::MouseButtonRelease, last_); }
  Drag(const Drag&) = delete;
  Drag& operator=(const Drag&) = delete;

  /// @param pixels to the right of where the handle was
  void MoveTo(double pixels) { Send(QEvent::MouseMove, start_ + QPointF(pixels, 0)); }

 private:
  static constexpr double kHandle = 4;  ///< pixels from the edge, inside the handle in every style

  void Send(QEvent::Type type, QPointF position) {
    last_ = position;
    QMouseEvent event(type, position, slider_.mapToGlobal(position),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&slider_, &event);
  }

  cpvSlider& slider_;
  QPointF start_;
  QPointF last_;
};

int MillisecondsOfDay() {
  return QTime::currentTime().msecsSinceStartOfDay();
}

void MeasureDrag() {
  constexpr int kMoves = 500;
  constexpr milliseconds kBetween{4};
  constexpr int kBaud = 57600;
  constexpr std::int16_t kZoom = 134;
  constexpr double kRoundTrip = (14 + 20) * kBitsPerCharacter / kBaud * 1000;
  UnitProcess unit({"--baud", QString::number(kBaud)});
  RealPanel panel;
  panel.Open(kBaud);
  cpvSlider& slider = *panel.Form().Slider("slide_zoom");
  slider.setValue(slider.Min());

  std::vector<double> latencies;
  int last_move = 0;
  {
    Drag drag(slider);
    LatencyProbe probe;
    int moves = 0;
    QEventLoop loop;
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, &slider, [&] {
      if (moves == kMoves) return;
      ++moves;
      const int there_and_back = moves % 100;
      last_move = MillisecondsOfDay();
      if (moves == kMoves) QTimer::singleShot(100, &loop, &QEventLoop::quit);
      drag.MoveTo(moves == kMoves ? 37 : std::min(there_and_back, 100 - there_and_back));
    });
    hand.setTimerType(Qt::PreciseTimer);
    hand.start(kBetween);
    loop.exec();
    latencies = probe.Stop();
  }
  const std::string last = HexToWire(BuildRequest({false, 16, slider.value(), kZoom}));
  const std::optional<int> arrival =
      unit.LastRequest(QByteArray::fromStdString(last.substr(0, last.size() - 1)));
  if (!arrival) throw std::runtime_error("the unit has not got the last value");
  // The unit notes whole milliseconds, those begun.
  PrintAtMost("drag, 500 moves in 2 s: last move to the unit, in round trips of the line",
              (*arrival + 1 - last_move) / kRoundTrip, "times", "2");
  PrintAtMost("drag, 500 moves in 2 s: event latency, 99th percentile", Percentile(latencies, 0.99),
              "ms", "16");
}

// ---------------------------------------------------------------------------------------------

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

/// A thousand frames in bursts of what the receive ring holds, and a thousand in one.
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

// ---------------------------------------------------------------------------------------------

void MeasureList() {
  constexpr int kRebuilds = 1000;
  constexpr double kLines = 68;  // all parameters of type 35; not all are shown at once
  constexpr int kShrinkEnable = 257 - kFirstAddress;
  constexpr int kAspectAdjust = 258 - kFirstAddress;
  constexpr std::int32_t kNeitherSimpleNorAdvanced = 2;
  UnitProcess unit({"--quiet", "--type", "35"});
  RealPanel panel;
  panel.Open(57600);
  panel.Application().Unit().values.SetParamValue(kShrinkEnable, 1);
  panel.Application().Unit().values.SetParamValue(kAspectAdjust, kNeitherSimpleNorAdvanced);
  std::vector<double> times;
  for (int i = 0; i < kRebuilds; ++i) {
    const auto start = Clock::now();
    panel.Application().Editor().RefreshCommandList();
    times.push_back(Milliseconds(Clock::now() - start));
    QCoreApplication::processEvents();
  }
  const int shown = panel.Form().lst_commands->count();
  const std::string name = "command list, rebuild of " + std::to_string(shown) + " lines, for 68";
  PrintFigure(name + ": median", Median(times) * kLines / shown, "ms");
  PrintAtMost(name + ": 99th percentile", Percentile(times, 0.99) * kLines / shown, "ms", "1");
}

int Run(const QStringList& arguments) {
  const QString what = arguments.value(1);
  if (what == "round-trip") {
    MeasureRoundTrip();
  } else if (what == "transfers") {
    MeasureTransfers(arguments.value(2).toInt(), arguments.value(3).toStdString());
  } else if (what == "drag") {
    MeasureDrag();
  } else if (what == "unasked") {
    MeasureUnasked();
  } else if (what == "list") {
    MeasureList();
  } else {
    std::cerr << "usage: window_bench round-trip | transfers BAUD SHARE | drag | unasked | list\n";
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace kalde2::bench

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KALDE2"));
  try {
    return kalde2::bench::Run(QApplication::arguments());
  } catch (const std::exception& problem) {
    std::cerr << "window_bench: " << problem.what() << '\n';
    return EXIT_FAILURE;
  }
}
