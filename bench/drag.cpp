#include <QEventLoop>
#include <QMouseEvent>
#include <QTime>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>

#include "bench/figures.h"
#include "bench/latency_probe.h"
#include "bench/measurements.h"
#include "bench/real_panel.h"
#include "link/frame_codec.h"
#include "tests/support/unit_process.h"

namespace kalde2::bench {
namespace {

using std::chrono::milliseconds;

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

/// Time of day, in milliseconds, of the last request that has the text in it, as the unit has noted
/// it; nothing where there is none among what it has printed and nobody has read.
std::optional<int> TimeOfLastRequest(QProcess& unit, const QByteArray& text) {
  constexpr qsizetype kTimeOfDay = 12;  // "HH:MM:SS.mmm"
  QByteArray output = unit.readAll();
  while (unit.waitForReadyRead(100)) output += unit.readAll();
  const qsizetype found = output.lastIndexOf(text);
  if (found < 0) return std::nullopt;
  const qsizetype start = output.lastIndexOf('\n', found) + 1;
  const QString time = QString::fromLatin1(output.mid(start, kTimeOfDay));
  return QTime::fromString(time, QStringLiteral("HH:mm:ss.zzz")).msecsSinceStartOfDay();
}

}  // namespace

void MeasureDrag() {
  constexpr int kMoves = 500;
  constexpr milliseconds kBetween{4};
  constexpr int kBaud = 57600;
  constexpr std::int16_t kZoom = 134;
  constexpr int kSweep = 50;  // pixels
  constexpr int kEnd = 60;    // where the handle has not been before
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
      const int phase = moves % (2 * kSweep);
      last_move = MillisecondsOfDay();
      if (moves == kMoves) QTimer::singleShot(100, &loop, &QEventLoop::quit);
      drag.MoveTo(moves == kMoves ? kEnd : std::min(phase, 2 * kSweep - phase));
    });
    hand.setTimerType(Qt::PreciseTimer);
    hand.start(kBetween);
    loop.exec();
    latencies = probe.Stop();
  }
  const std::string last = HexToWire(BuildRequest({false, 16, slider.value(), kZoom}));
  const std::optional<int> arrival =
      TimeOfLastRequest(unit.Process(), QByteArray::fromStdString(last.substr(0, last.size() - 1)));
  if (!arrival) throw std::runtime_error("the unit has not got the last value");
  // The unit notes whole milliseconds, those begun.
  PrintAtMost("drag, 500 moves in 2 s: last move to the unit, in round trips of the line",
              (*arrival + 1 - last_move) / kRoundTrip, "times", "2");
  PrintAtMost("drag, 500 moves in 2 s: event latency, 99th percentile", Percentile(latencies, 0.99),
              "ms", "16");
}

}  // namespace kalde2::bench
