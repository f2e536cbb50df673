#include "link/frame_codec.h"

#include <algorithm>

#include "link/addresses.h"
#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

constexpr std::string_view kReadCommand = "84";
constexpr std::string_view kWriteCommand = "04";
constexpr std::string_view kErrorMark = "F0000";
constexpr std::size_t kShortestNormalReply = 8;

// Values above this are taken as negative 24-bit numbers. The odd threshold is the unit's.
constexpr std::int32_t kHighestPositiveValue = 4097;
constexpr std::int32_t kValueModulus = 0x1000000;
constexpr std::size_t kValueDigits = 6;

std::string Hex16(std::int16_t value) {
  return ToHex(static_cast<std::uint16_t>(value));
}

char CharacterOf(std::string_view pair) {
  return static_cast<char>(HexValue(pair));
}

/// Index digit, high digit and low digits of an address. Addresses of 512 and more get a wrong
/// high digit and those below 16 a single low digit; no such address is in use.
std::string AddressField(std::int16_t index, std::int16_t address) {
  const std::string hex = Hex16(address);
  const bool low = address <= 255;
  return std::to_string(index) + (low ? "0" : "1") + (low ? hex.substr(0, 2) : hex.substr(1, 2));
}

/// Six hex digits; wider values lose their upper digits.
std::string ValueField(const ParameterRequest& request) {
  std::int64_t value = request.value;
  if (value < 0) value += kValueModulus;
  // The unit counts resolutions from 1, the panel from 0.
  if (request.address == address::kResolution) value += 1;
  const std::string padded = "00000" + ToHex(static_cast<std::uint32_t>(value));
  return std::string(LastCharacters(padded, kValueDigits));
}

/// `count` characters from a position counted from 1; what lies beyond the end is missing.
/// @throws Fault for a position before the first character
std::string_view Slice(std::string_view text, std::ptrdiff_t position, std::size_t count) {
  if (position < 1) throw Fault("reply too short");
  const auto start = static_cast<std::size_t>(position - 1);
  return start < text.size() ? text.substr(start, count) : std::string_view{};
}

std::int16_t HexField(std::string_view text, std::ptrdiff_t position, std::size_t count) {
  return static_cast<std::int16_t>(HexValue(Slice(text, position, count)));
}

std::int16_t DecodeAddress(std::string_view reply) {
  const std::int16_t high = HexField(reply, 9, 1);
  const std::int16_t low = HexField(reply, 10, 2);
  // Right for a high digit of 1, and kept as it is for the ones above that no unit sends.
  return static_cast<std::int16_t>(high > 0 ? high + 255 + low : low);
}

std::int32_t DecodeValue(std::string_view reply, std::int16_t address) {
  const std::ptrdiff_t position = static_cast<std::ptrdiff_t>(reply.size()) - 8;
  auto value = static_cast<std::int32_t>(HexValue(Slice(reply, position, kValueDigits)));
  if (address == address::kResolution) value -= 1;
  return value > kHighestPositiveValue ? value - kValueModulus : value;
}

}  // namespace

std::string TextToHex(std::string_view text) {
  std::string hex;
  hex.reserve(text.size() * 2);
  for (const char c : text) {
    const std::string digits = ToHex(static_cast<unsigned char>(c));
    if (digits.size() < 2) hex += '0';
    hex += digits;
  }
  return hex;
}

std::string HexToText(std::string_view hex) {
  std::string text;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) text += CharacterOf(hex.substr(i, 2));
  return text;
}

std::string HexToWire(std::string_view hex) {
  std::string text;
  for (std::size_t i = 0; i < hex.size(); i += 2) text += CharacterOf(hex.substr(i, 2));
  return text;
}

std::string FrameChecksum(std::string_view hex) {
  const std::string frame = HexToWire(hex);
  std::int64_t sum = 0;
  for (std::size_t i = 1; i < frame.size(); i += 2) {
    sum = NarrowToInt16(sum + HexValue(std::string_view(frame).substr(i, 2)));
  }
  return TextToHex(LastCharacters(ToHex(static_cast<std::uint32_t>(sum)), 2));
}

std::string BuildRequest(const ParameterRequest& request) {
  std::string hex = TextToHex("F");
  hex += TextToHex(request.is_read ? kReadCommand : kWriteCommand);
  hex += TextToHex(LastCharacters("0" + Hex16(request.source), 2));
  hex += TextToHex(Hex16(request.group));
  hex += TextToHex(AddressField(request.index, request.address));
  if (!request.is_read) hex += TextToHex(ValueField(request));
  hex += FrameChecksum(hex);
  hex += TextToHex("\r");
  return hex;
}

bool IsErrorReply(std::string_view reply) {
  return reply.size() < kShortestNormalReply && reply.find(kErrorMark) != std::string_view::npos;
}

void DecodeReply(std::string_view reply, ReplyRecord& record) {
  record.Address = DecodeAddress(reply);
  record.Index = HexField(reply, 8, 1);
  record.Source = HexField(reply, 4, 2);
  record.Group = HexField(reply, 6, 2);
  record.Value = DecodeValue(reply, record.Address);
}

std::string_view CountedPacket(std::string_view collected) {
  constexpr std::size_t kShortest = 3;
  collected.remove_prefix(std::min(collected.find(kPacketStart), collected.size()));
  if (collected.size() < kShortest) return {};
  const std::size_t size = static_cast<unsigned char>(collected[1]) + std::size_t{2};
  const bool is_complete = size >= kShortest && collected.size() >= size;
  return is_complete ? collected.substr(0, size) : std::string_view{};
}

}  // namespace kalde2
