#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kalde2 {

// The unit's own table and its own reading of the file, with nothing of the panel's: what both took
// from one place would be wrong in both alike, and no test would tell.

/// One slot of the unit's resolution table.
struct ResolutionSlot {
  std::string name;          ///< at most 24 characters go out on the line
  std::uint8_t flags = 0;    ///< bits 0..4: R, Y, C, I, U
  std::uint32_t h_freq = 0;  ///< lines per second, 24 bits
  std::uint16_t width = 0;   ///< active pixels
  std::uint16_t height = 0;  ///< active lines
  std::uint16_t h_total = 0;
  std::uint16_t v_total = 0;
  std::uint16_t h_sync = 0;
  std::uint16_t v_sync = 0;
  std::uint16_t h_pos = 0;
  std::uint16_t v_pos = 0;
  std::uint8_t sync_code = 0;  ///< polarities: 0 "PP", 1 "NP", 2 "PN", 3 "NN"
};

/// The slot count is asked for with one byte.
inline constexpr int kMaxResolutionSlots = 255;

/// Slots that a unit leaves the factory with.
inline constexpr int kFactoryResolutionSlots = 106;

/// The first `count` (0..255) slots of the built-in table: the 106 of the factory, then user
/// formats.
[[nodiscard]] std::vector<ResolutionSlot> BuiltInResolutions(int count = kFactoryResolutionSlots);

struct ResolutionReading {
  std::vector<ResolutionSlot> resolutions;
  std::string problem;  ///< one line, empty when the file was read
};

/// Reads a resolution data file as the panel writes it: six header lines, then one record of 122
/// columns a line. A first record without a name (the panel's entry 0) is no slot. At most 255
/// slots.
[[nodiscard]] ResolutionReading ReadResolutionSlots(const std::string& file_name);

/// The unit's answer to a slot query: "S", length of the rest, echo of the query, the fields of the
/// page. Page 0 has 39 bytes in all, page 1 has 26; numbers are little-endian.
[[nodiscard]] std::string BuildSlotPacket(const ResolutionSlot& slot, int slot_number, int page);

}  // namespace kalde2
