#pragma once

#include <chrono>

namespace kalde2 {

/// Time of day and the two ways of letting time pass.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The system time (UTC).
  [[nodiscard]] virtual std::chrono::system_clock::time_point Now() const = 0;

  /// A time that only moves forward, whatever is done to the system time.
  [[nodiscard]] virtual std::chrono::milliseconds Monotonic() const = 0;

  /// Serves pending user-interface events, sleeping until there are some or `at_most` has passed.
  /// Control handlers, timers and the port's receive event may run inside.
  virtual void ServeEvents(std::chrono::milliseconds at_most) = 0;

  /// Sleeps without serving anything.
  virtual void Sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace kalde2
