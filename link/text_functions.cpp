#include "link/text_functions.h"

#include <cmath>

#include "link/fault.h"
#include "link/frame_codec.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

constexpr std::uint32_t kLargestWord = 0xFFFF;

std::int16_t HexWord(std::string_view hex) {
  const std::uint32_t value = HexValue(hex);
  if (value > kLargestWord) throw Fault("hex number does not fit 16 bits");
  return static_cast<std::int16_t>(value);
}

}  // namespace

std::string TwoHexDigits(std::int16_t value) {
  return std::string(LastCharacters("0" + ToHex(static_cast<std::uint16_t>(value)), 2));
}

std::string TextToTwoHexCodes(std::string_view text) {
  return TextToHex(LastCharacters("0" + std::string(Trimmed(text)), 2));
}

std::string HexToBinary(std::string_view hex) {
  int value = HexWord(hex);
  std::string digits;
  do {
    const int quotient = static_cast<int>(std::floor(value / 2.0));
    digits.insert(0, value - 2 * quotient != 0 ? "1" : "0");
    value = quotient;
  } while (value >= 2);
  if (value != 0) digits.insert(0, std::to_string(value));
  return std::string(LastCharacters("00000000" + digits, 8));
}

}  // namespace kalde2
