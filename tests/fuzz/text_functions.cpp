/// Texts and numbers: hex forms, binary digits, the number at the start of a text.

#include "link/text_functions.h"

#include <cmath>

#include "files/mod_resolutions.h"
#include "link/frame_codec.h"
#include "link/numbers.h"
#include "tests/fuzz/fuzz_target.h"

namespace kalde2 {

void FuzzOne(std::string_view input) {
  Require(HexToText(TextToHex(input)) == input, "a text survives its hex form");
  Require(HexToText(input).size() == input.size() / 2, "two digits are one character");
  Require(HexToWire(input).size() == (input.size() + 1) / 2, "a lone digit is one character");
  Require(TextToTwoHexCodes(input).size() <= 4, "two characters are four digits");
  Require(!IsFault([&] { (void)FrameChecksum(input); }) || input.size() > 2 * 2 * 128,
          "only a long frame's sum leaves 16 bits");

  const auto is_byte = [](std::string_view digits) {
    return digits.size() == 8 && digits.find_first_not_of("01") == std::string_view::npos;
  };
  Require(is_byte(ByteToBits(input)), "a byte has 8 bits");
  std::string binary;
  const bool is_wide = IsFault([&] { binary = HexToBinary(input); });
  Require(is_wide == (HexValue(input) > 0xFFFF), "only a number beyond 16 bits is refused");
  Require(is_wide || HexValue(input) > 0x7FFF || is_byte(binary), "a positive number has 8 digits");

  const double number = NumericValue(input);
  Require(!std::isnan(number), "a number is one");
  Require(NumericValue("  " + std::string(input)) == number, "leading blanks do not count");
  double rounded = 0;
  const bool is_refused = IsFault([&] { rounded = RoundToInt16(number); });
  Require(is_refused ? std::abs(number) >= 32767.5 : std::abs(rounded - number) <= 0.5,
          "rounding goes to the nearest, and only a number beyond 16 bits is refused");
}

}  // namespace kalde2
