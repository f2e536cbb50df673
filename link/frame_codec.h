#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "link/addresses.h"
#include "link/mod_datatypes.h"

namespace kalde2 {

/// One parameter request. On the wire, for example, a read of address 0xD8 from source 0x10 is
/// "F84104100D8AD\r" and a write of 2 to address 0x10A is "F041041010A00000262\r".
struct ParameterRequest {
  bool is_read = false;                    ///< command "84" with it, "04" (and a value) without
  std::int16_t source = kFirstSourceCode;  ///< source code, two hex digits on the wire
  std::int32_t value = 0;                  ///< 24-bit two's complement on the wire, writes only
  Address address = 0;
  std::int16_t group = kParameterGroup;
  std::int16_t index = kParameterIndex;
};

/// Each character as the two hex digits of its code: "F" gives "46".
[[nodiscard]] std::string TextToHex(std::string_view text);

/// Each full pair of hex digits as the character with that code; a lone last digit is dropped and
/// a pair that is not hexadecimal gives the character 0.
[[nodiscard]] std::string HexToText(std::string_view hex);

/// As `HexToText`, but a lone last digit is converted too: the form in which frames are sent.
[[nodiscard]] std::string HexToWire(std::string_view hex);

/// Checksum of a frame that is complete but for it. Sums the character pairs behind the "F" as hex
/// numbers and keeps the last two hex digits of the sum; a sum below 16 gives one digit only.
/// @param hex the frame so far, "F" included, in hex-text form
/// @return the checksum characters in hex-text form
/// @throws Fault where the sum leaves 16 bits
[[nodiscard]] std::string FrameChecksum(std::string_view hex);

/// The whole request frame, terminator included, in hex-text form.
[[nodiscard]] std::string BuildRequest(const ParameterRequest& request);

/// True for the unit's refusal: a reply with "F0000" in it that is shorter than eight characters.
[[nodiscard]] bool IsErrorReply(std::string_view reply);

/// Reads the fields of a reply, by position only, into a record in the order Address, Index,
/// Source, Group, Value. `Valid` is left alone; the command and the checksum are not looked at.
/// @param reply the reply with its "\r"
/// @throws Fault where the reply is too short to hold a value; the fields before it are set then
void DecodeReply(std::string_view reply, ReplyRecord& record);

/// First character of a length-prefixed packet.
inline constexpr char kPacketStart = 'S';

/// The length-prefixed packet ("S", a length byte L, L characters) in what has been collected, from
/// the first "S" on: what stands before and behind is no part of it. Empty while fewer than L + 2
/// characters are there; a packet has three at least, so an L of 0 begins none.
[[nodiscard]] std::string_view CountedPacket(std::string_view collected);

}  // namespace kalde2
