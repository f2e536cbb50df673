#include "link/numbers.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>

#include "link/fault.h"

namespace kalde2 {
namespace {

bool IsHexDigit(char c) {
  return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}
bool IsDigit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

std::size_t CountWhile(std::string_view text, bool (*accept)(char)) {
  std::size_t n = 0;
  while (n < text.size() && accept(text[n])) ++n;
  return n;
}

/// Hexadecimal digits after "&H"; digits beyond the eight that fit 32 bits end the number.
double HexPrefix(std::string_view digits) {
  constexpr std::size_t kMaxDigits = 8;
  return HexValue(digits.substr(0, std::min(CountWhile(digits, IsHexDigit), kMaxDigits)));
}

template <typename Integer>
Integer Round(double value) {
  const double rounded = std::nearbyint(value);
  constexpr double kLowest = std::numeric_limits<Integer>::min();
  constexpr double kHighest = std::numeric_limits<Integer>::max();
  if (!(rounded >= kLowest && rounded <= kHighest)) throw Fault("number out of range");
  return static_cast<Integer>(rounded);
}

}  // namespace

double NumericValue(std::string_view text) {
  text.remove_prefix(CountWhile(text, [](char c) { return c == ' '; }));
  if (text.size() >= 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
    return HexPrefix(text.substr(2));
  }
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // from_chars also reads "inf", "nan" and a second sign, which are no numbers here.
  if (text.empty() || !(IsDigit(text[0]) || text[0] == '.')) return 0;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) value = std::numeric_limits<double>::infinity();
  return negative ? -value : value;
}

std::int16_t LeadingInt16(std::string_view text) {
  text.remove_prefix(CountWhile(text, [](char c) { return c == ' '; }));
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  std::int16_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) throw Fault("number out of range");
  return value;
}

std::uint32_t HexValue(std::string_view text) {
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
  return error == std::errc() && stop == end ? value : 0;
}

std::string ToHex(std::uint32_t value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  do {
    text.insert(text.begin(), kDigits[value % 16]);
    value /= 16;
  } while (value != 0);
  return text;
}

std::string_view LastCharacters(std::string_view text, std::size_t count) {
  return text.substr(text.size() - std::min(count, text.size()));
}

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::int16_t RoundToInt16(double value) {
  return Round<std::int16_t>(value);
}
std::int32_t RoundToInt32(double value) {
  return Round<std::int32_t>(value);
}

std::int16_t NarrowToInt16(std::int64_t value) {
  if (value < std::numeric_limits<std::int16_t>::min() ||
      value > std::numeric_limits<std::int16_t>::max()) {
    throw Fault("number " + std::to_string(value) + " does not fit 16 bits");
  }
  return static_cast<std::int16_t>(value);
}

}  // namespace kalde2
