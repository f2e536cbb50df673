#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The frames as the unit sees them. This is the unit's own reading and writing of the line, kept
/// apart from the panel's codec on purpose: each of the two checks the other.
namespace kalde2 {

inline constexpr std::string_view kErrorReply = "F0000\r";
inline constexpr char kFrameEnd = '\r';

/// Bytes of a slot query on the wire: "S", 7, 0xA2, 1, slot, 0, page, 0, "?".
inline constexpr std::size_t kSlotQueryLength = 9;
inline constexpr char kSlotQueryRest = kSlotQueryLength - 2;  ///< the length byte behind the "S"

/// A request for one parameter.
struct UnitRequest {
  bool is_read = true;
  int source = 0;               ///< 0..255
  int address = 0;              ///< 0..511
  std::int32_t value = 0;       ///< -8388608..8388607, 0 for a read
  bool is_count_query = false;  ///< the read of address 0xD8 with "??" for its checksum
};

/// A query for one half of a resolution slot.
struct SlotQuery {
  int slot = 0;  ///< 0..255
  int page = 0;  ///< 0: name, flags, frequencies; 1: widths, heights, positions
};

/// Outcome of reading a request: either the request or what is wrong with it.
template <typename Request>
struct Reading {
  std::optional<Request> request;
  std::string problem;  ///< one line, empty when the request is in order
};

/// Reads "F" + command + source + "41" + "0" + address [+ value] + checksum + "\r", strictly: exact
/// lengths, upper-case digits, right checksum.
[[nodiscard]] Reading<UnitRequest> ReadRequest(std::string_view frame);

/// Reads the nine bytes of a slot query, strictly.
[[nodiscard]] Reading<SlotQuery> ReadSlotQuery(std::string_view packet);

/// What a frame of the unit answers: the first digit of its command.
enum class ReplyTo { kReadRequest, kWriteRequest };

/// Builds a 20-character frame with a value, command "C4" for a read's answer, "44" for a write's
/// answer and for a frame sent unasked. Negative values go out as 24-bit two's complement.
[[nodiscard]] std::string BuildReply(ReplyTo reply_to, int source, int address, std::int32_t value);

/// A frame of the unit read back.
struct UnitReply {
  int source = 0;
  int address = 0;
  std::int32_t value = 0;  ///< as on the line, sign extended
};

/// Reads a frame made by BuildReply; nothing for bytes that are none.
[[nodiscard]] std::optional<UnitReply> ReadOwnReply(std::string_view frame);

/// Two checksum characters for the characters between "F" and the checksum: the sum of all pairs of
/// hex digits, its last two hex digits, not padded.
[[nodiscard]] std::string BodyChecksum(std::string_view body);

}  // namespace kalde2
