#include "ctl/line_words.h"

#include <gtest/gtest.h>

namespace kalde2 {
namespace {

TEST(LineWords, NameParametersOnceTheLineHasToldTheProduct) {
  using enum Direction;
  const struct {
    Direction direction;
    std::string bytes;
    std::string words;
  } kLine[] = {
      {kToUnit, "F841041010AE0\r", "reads (not listed) [266]"},
      {kToUnit, "F84104100C499\r", "reads Product type [196]"},
      {kFromUnit, "FC4104100C4000023FC\r", "Product type [196] is 35"},
      {kToUnit, "F041041010A00000262\r", "sets Lock mode [266] to 2 (Lock+Mix)"},
      {kFromUnit, "F0000\r", "refused"},
      {kFromUnit, "F441041010A000002A2\r", "Lock mode [266] is 2 (Lock+Mix)"},
      {kToUnit, {"S\x07\xA2\x01\x05\0\x01\0?", 9}, "asks for page 1 of resolution slot 5"},
      {kFromUnit, "S\x02\x11\x13", "resolution slot data"},
      {kToUnit, "F841041010AE1\r", "checksum \"E1\" instead of \"E0\""},
      {kToUnit, "S\x02\x11\x13", "not a slot query"},
  };
  LineWords words;
  for (const auto& [direction, bytes, expected] : kLine) {
    EXPECT_EQ(words.Of(direction, {bytes, true}), expected);
  }
  EXPECT_EQ(words.Of(kFromUnit, {"FC4", false}), "no whole frame");
}

}  // namespace
}  // namespace kalde2
