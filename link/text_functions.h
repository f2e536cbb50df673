#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kalde2 {

/// The last two characters of "0" and the value in hex: two digits for 0..255.
[[nodiscard]] std::string TwoHexDigits(std::int16_t value);

/// The last two characters of "0" and the trimmed text, each written as its two-digit hex code:
/// "5" gives "3035", "AB" gives "4142".
[[nodiscard]] std::string TextToTwoHexCodes(std::string_view text);

/// The lowest eight binary digits of a 16-bit number given as hex text: "0A" gives "00001010".
/// Text that is not hexadecimal counts as 0. 8000 to FFFF are negative numbers, for which the
/// halving below ends at once; their odd result is kept.
/// @throws Fault for a number that does not fit 16 bits
[[nodiscard]] std::string HexToBinary(std::string_view hex);

}  // namespace kalde2
