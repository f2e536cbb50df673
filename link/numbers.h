#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kalde2 {

/// The number at the start of a text: leading blanks, a sign, digits, a decimal point and an
/// exponent, or "&H" and hexadecimal digits; reading stops at the first character that is not part
/// of a number. A text that does not begin with a number, an empty one included, gives 0.
[[nodiscard]] double NumericValue(std::string_view text);

/// The whole number at the start of a text: leading blanks, a sign, digits; reading stops at the
/// first other character. A text that does not begin with one gives 0.
/// @throws Fault where the number does not fit 16 bits
[[nodiscard]] std::int16_t LeadingInt16(std::string_view text);

/// The number of a clear hexadecimal text, without prefix, at most eight digits. Any other
/// character in it, or no character at all, gives 0.
[[nodiscard]] std::uint32_t HexValue(std::string_view text);

/// Upper-case hexadecimal form without padding.
[[nodiscard]] std::string ToHex(std::uint32_t value);

/// The last `count` characters of a text, or all of it where it is shorter.
[[nodiscard]] std::string_view LastCharacters(std::string_view text, std::size_t count);

/// The text without leading and trailing blanks.
[[nodiscard]] std::string_view Trimmed(std::string_view text);

/// Rounds to the nearest whole number, a half to the even one.
/// @throws Fault where the result does not fit 16 (32) bits.
[[nodiscard]] std::int16_t RoundToInt16(double value);
[[nodiscard]] std::int32_t RoundToInt32(double value);

/// @throws Fault where the value does not fit 16 bits.
[[nodiscard]] std::int16_t NarrowToInt16(std::int64_t value);

}  // namespace kalde2
