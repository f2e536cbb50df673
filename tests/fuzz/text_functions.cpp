/// Texts and numbers: hex forms, binary digits, the number at the start of a text.

#include "link/text_functions.h"

#include <cmath>

#include "files/mod_resolutions.h"
#include "link/fault.h"
#include "link/frame_codec.h"
#include "link/numbers.h"
#include "tests/fuzz/fuzz_target.h"

namespace kalde2 {
namespace {

bool IsBinary(std::string_view digits) {
  return digits.find_first_not_of("01") == std::string_view::npos;
}

void RequireBinary(std::string_view hex) {
  constexpr std::size_t kDigits = 8;
  Require(ByteToBits(hex).size() == kDigits && IsBinary(ByteToBits(hex)), "a byte has 8 bits");
  try {
    const std::string binary = HexToBinary(hex);
    const bool is_negative = HexValue(hex) > 0x7FFF;
    Require(binary.size() == kDigits, "a number has 8 digits");
    Require(is_negative || binary == ByteToBits(hex) || HexValue(hex) == 0,
            "both ways to the binary digits agree");
  } catch (const Fault&) {
    Require(HexValue(hex) > 0xFFFF, "only a number beyond 16 bits is refused");
  }
}

void RequireNumber(std::string_view text) {
  const double number = NumericValue(text);
  Require(!std::isnan(number), "a number is one");
  Require(NumericValue("  " + std::string(text)) == number, "leading blanks do not count");
  try {
    Require(std::abs(RoundToInt16(number) - number) <= 0.5, "rounding goes to the nearest");
  } catch (const Fault&) {
    Require(std::abs(number) >= 32767.5, "only a number beyond 16 bits is refused");
  }
}

}  // namespace

void FuzzOne(std::string_view input) {
  Require(HexToText(TextToHex(input)) == input, "a text survives its hex form");
  Require(HexToText(input).size() == input.size() / 2, "two digits are one character");
  Require(HexToWire(input).size() == (input.size() + 1) / 2, "a lone digit is one character");
  Require(TextToTwoHexCodes(input).size() <= 4, "two characters are four digits");
  RequireBinary(input);
  RequireNumber(input);
  try {
    (void)FrameChecksum(input);
  } catch (const Fault&) {
    Require(input.size() > 2 * 2 * 128, "only a long frame's sum leaves 16 bits");
  }
}

}  // namespace kalde2
