#include "simulator/unit_frames.h"

#include <algorithm>
#include <cstdio>

#include "simulator/unit_addresses.h"
#include "trace/trace_file.h"

namespace kalde2 {
namespace {

constexpr std::size_t kReadLength = 14;
constexpr std::size_t kWriteLength = 20;
constexpr std::int32_t kValueSpan = 0x1000000;

bool IsHexDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F');
}

std::int32_t DigitValue(char digit) {
  return digit <= '9' ? digit - '0' : digit - 'A' + 10;
}

std::int32_t HexValue(std::string_view digits) {
  std::int32_t value = 0;
  for (const char digit : digits) value = value * 16 + DigitValue(digit);
  return value;
}

std::string Hex(std::uint32_t value, int width) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*X", width, value);
  return text;
}

std::string Quoted(std::string_view bytes) {
  return '"' + Printable(bytes) + '"';
}

/// What is wrong with the shape of the frame, before any field is read; empty when nothing is.
std::string ShapeProblem(std::string_view frame) {
  if (frame.size() < kReadLength || frame.front() != 'F' || frame.back() != kFrameEnd) {
    return "not a request frame";
  }
  const std::string_view command = frame.substr(1, 2);
  if (command != "84" && command != "04") {
    return "command " + Quoted(command) + " is neither a read nor a write";
  }
  const std::size_t length = command == "84" ? kReadLength : kWriteLength;
  if (frame.size() != length) {
    return "has " + std::to_string(frame.size()) + " characters instead of " +
           std::to_string(length);
  }
  const std::string_view body = frame.substr(1, frame.size() - 4);
  const auto stray = std::find_if_not(body.begin(), body.end(), IsHexDigit);
  if (stray != body.end()) return Quoted(std::string_view(&*stray, 1)) + " is no hex digit";
  return {};
}

/// What is wrong with the fields of a well-shaped frame; empty when nothing is.
std::string FieldProblem(std::string_view frame, bool is_count_query) {
  if (frame.substr(5, 2) != "41") return "group " + Quoted(frame.substr(5, 2)) + " instead of 41";
  if (frame[7] != '0') return "index " + Quoted(frame.substr(7, 1)) + " instead of 0";
  if (frame[8] > '1') return "address digit " + Quoted(frame.substr(8, 1)) + " instead of 0 or 1";
  const std::string expected = BodyChecksum(frame.substr(1, frame.size() - 4));
  const std::string_view found = frame.substr(frame.size() - 3, 2);
  if (found != expected && !is_count_query) {
    return "checksum " + Quoted(found) + " instead of " + Quoted(expected);
  }
  return {};
}

std::int32_t SignedValue(std::int32_t wire_value) {
  return wire_value >= kValueSpan / 2 ? wire_value - kValueSpan : wire_value;
}

}  // namespace

std::string BodyChecksum(std::string_view body) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < body.size(); i += 2) {
    sum += static_cast<std::uint32_t>(HexValue(body.substr(i, 2)));
  }
  const std::string digits = Hex(sum, 1);
  return digits.size() > 2 ? digits.substr(digits.size() - 2) : digits;
}

Reading<UnitRequest> ReadRequest(std::string_view frame) {
  if (std::string problem = ShapeProblem(frame); !problem.empty()) return {{}, problem};
  UnitRequest request;
  request.is_read = frame.substr(1, 2) == "84";
  request.source = HexValue(frame.substr(3, 2));
  request.address = HexValue(frame.substr(8, 3));
  if (!request.is_read) request.value = SignedValue(HexValue(frame.substr(11, 6)));
  request.is_count_query = request.is_read && request.address == addresses::kSlotCount &&
                           frame.substr(frame.size() - 3, 2) == "??";
  if (std::string problem = FieldProblem(frame, request.is_count_query); !problem.empty()) {
    return {{}, problem};
  }
  return {request, {}};
}

Reading<SlotQuery> ReadSlotQuery(std::string_view packet) {
  if (packet.size() != kSlotQueryLength || packet[0] != 'S' ||
      packet.substr(1, 3) != std::string_view("\x07\xA2\x01", 3)) {
    return {{}, "not a slot query"};
  }
  const SlotQuery query{static_cast<unsigned char>(packet[4]),
                        static_cast<unsigned char>(packet[6])};
  if (packet[5] != 0 || packet[7] != 0 || packet[8] != '?' || query.page > 1) {
    return {{}, "slot query asks for no known page"};
  }
  return {query, {}};
}

std::string BuildReply(ReplyTo reply_to, int source, int address, std::int32_t value) {
  const auto wire_value = static_cast<std::uint32_t>(value) & 0xFFFFFF;
  const std::string body = (reply_to == ReplyTo::kReadRequest ? "C4" : "44") +
                           Hex(static_cast<std::uint32_t>(source) & 0xFF, 2) + "410" +
                           Hex(static_cast<std::uint32_t>(address) & 0x1FF, 3) + Hex(wire_value, 6);
  return 'F' + body + BodyChecksum(body) + kFrameEnd;
}

std::optional<UnitReply> ReadOwnReply(std::string_view frame) {
  if (frame.size() != kWriteLength || frame.front() != 'F' || frame.back() != kFrameEnd) {
    return std::nullopt;
  }
  const std::string_view body = frame.substr(1, frame.size() - 4);
  if (!std::all_of(body.begin(), body.end(), IsHexDigit)) return std::nullopt;
  return UnitReply{HexValue(frame.substr(3, 2)), HexValue(frame.substr(8, 3)),
                   SignedValue(HexValue(frame.substr(11, 6)))};
}

}  // namespace kalde2
