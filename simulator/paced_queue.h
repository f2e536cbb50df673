#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace kalde2 {

/// One direction of a serial line: characters come out at the pace of the line, 10 bits each.
class PacedQueue {
 public:
  using Clock = std::chrono::steady_clock;

  /// @param baud bits a second; 0: everything comes out at once
  explicit PacedQueue(int baud = 0) { SetBaud(baud); }

  /// Takes effect for the characters put in from now on.
  void SetBaud(int baud);

  void Put(std::string_view bytes, Clock::time_point now);

  /// The characters that are through by now.
  [[nodiscard]] std::string Take(Clock::time_point now);

  /// When the character taken last was through; whoever takes late still learns when it was.
  [[nodiscard]] Clock::time_point Through() const { return through_; }

  /// When the next character is through, nothing when none is under way.
  [[nodiscard]] std::optional<Clock::time_point> NextDue() const;

  void Clear() { characters_.clear(); }

 private:
  struct Character {
    Clock::time_point due;
    char code;
  };

  std::chrono::nanoseconds character_time_{0};
  std::deque<Character> characters_;
  Clock::time_point through_;
};

}  // namespace kalde2
