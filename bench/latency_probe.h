#pragma once

#include <QCoreApplication>
#include <QObject>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "bench/figures.h"

namespace kalde2::bench {

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
  using Clock = std::chrono::steady_clock;

  static constexpr std::chrono::milliseconds kPeriod{2};

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

}  // namespace kalde2::bench
