#pragma once

#include <cstdint>

namespace kalde2::bench {

// Each starts a unit and a panel of its own, in the real window, and prints its lines of the table.
// What goes wrong ends it with a std::runtime_error.

/// A transaction against a bare loop, on the same line and unit.
void MeasureRoundTrip();

/// The same bare loop with `kalde2ctl trace` between it and the unit.
void MeasureTrace();

/// Opening, clone and resolution fetch against the rate of a paced line. @param baud of the line
/// @param least share of the wire's rate, percent
void MeasureTransfers(int baud, int least);

/// A slider that is dragged back and forth.
void MeasureDrag();

/// The command list, built anew.
void MeasureCommandList();

/// Frames that arrive unasked, in bursts.
void MeasureUnasked();

/// What a character is on the line: a start bit, eight of data, a stop bit.
inline constexpr double kBitsPerCharacter = 10;

}  // namespace kalde2::bench
