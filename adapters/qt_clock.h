#pragma once

#include "link/clock.h"

namespace kalde2 {

/// The system's clocks and Qt's event loop.
class QtClock final : public Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point Now() const override;
  [[nodiscard]] std::chrono::milliseconds Monotonic() const override;

  /// Sleeps in the event loop and returns after the first events served; with nothing left to wait
  /// (`at_most` 0 or less) it serves what is pending.
  void ServeEvents(std::chrono::milliseconds at_most) override;
  void Sleep(std::chrono::milliseconds duration) override;
};

}  // namespace kalde2
