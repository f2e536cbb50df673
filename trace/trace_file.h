#pragma once

#include <chrono>
#include <cstdint>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace kalde2 {

enum class Direction : std::uint8_t { kToUnit, kFromUnit };

/// Bytes that have gone over the line in one piece.
struct TraceEvent {
  std::chrono::microseconds time{0};  ///< since the trace was begun
  Direction direction = Direction::kToUnit;
  std::string bytes;  ///< one at least, of any value

  bool operator==(const TraceEvent&) const = default;
};

/// What has gone over a line. As a file it is text, for example
///
///     kalde2-trace 1 57600
///     # K2-6350, the picture rolls
///          10413 -> 46 38 34 31 30 34 31 30 30 43 34 39 39 0D  # F84104100C499\r
///          12870 <- 46 43 34 31                                # FC41
///
/// A "#" and what follows it in its line is a comment, a line without anything else counts for
/// nothing; lines end with LF or CR LF, and words are parted by blanks or tabs. The first line that
/// counts is "kalde2-trace", the version of the form, 1, and where it is known the rate of the line
/// in bits a second. Each other one is an event: its time in microseconds, "->" to the unit or "<-"
/// from it, and its bytes, two hex digits each.
struct Trace {
  std::optional<int> baud;  ///< 1 or more
  std::vector<TraceEvent> events;

  bool operator==(const Trace&) const = default;
};

/// What is wrong with a trace file.
struct TraceProblem {
  int line;  ///< counted from 1
  std::string text;
};

struct TraceReading {
  Trace trace;  ///< what stands ahead of the problem
  std::optional<TraceProblem> problem;
};

[[nodiscard]] TraceReading ReadTrace(std::istream& file);

/// The two write whole lines and flush them, so that the file is in order whenever the program
/// ends. Whether they came through, the stream tells.
void BeginTrace(std::ostream& file, std::optional<int> baud);
void WriteEvent(std::ostream& file, const TraceEvent& event);

/// The bytes with everything outside printable ASCII spelled out: "\r", "\x13".
[[nodiscard]] std::string Printable(std::string_view bytes);

}  // namespace kalde2
