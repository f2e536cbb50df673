#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <ostream>
#include <string>

#include "link/mod_comms.h"
#include "model/unit_model.h"

namespace kalde2 {

/// The settings file: what is held of a unit's values, without a word to the unit. Text, one byte a
/// character, each line ended by CR LF:
///
///     [1.0]
///     [DEVICE]
///     22                  product type
///     [GENERAL1A]
///     130, 0              address, value of each parameter; a blank stands for the plus sign
///     131,-3
///     [SOURCE]
///     138, 16 ,5          address, source code, value of each per-source parameter and source
///     138, 17 ,-2

/// Writes the values that are held. Leaves the code of the last source written as the selected
/// source. What the stream cannot take is lost without a word.
void WriteSettings(std::ostream& file, UnitModel& unit, std::int32_t product_type);

/// The same to a new file at a path in the file system's encoding.
void SaveSettings(const std::string& path, UnitModel& unit, std::int32_t product_type);

/// Hands each line to the sink as if the unit had replied it, before the next is read. A text that
/// does not begin with the line "[1.0]" is not read on. Line ends: see `LineReader`.
/// @return the product type that the text names; nothing where it names none
/// @throws Fault at a malformed line, telling its number and what was expected
std::optional<std::int32_t> ReadSettings(std::istream& text, ReplySink& sink);

/// The same from a file. What was handed over before a fault stays.
/// @throws Fault also where the file cannot be opened or read to its end
std::optional<std::int32_t> LoadSettings(const std::string& path, ReplySink& sink);

}  // namespace kalde2
