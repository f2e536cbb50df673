#pragma once

namespace kalde2 {

/// Most decimals that a control shows.
inline constexpr int kMostDecimals = 6;

/// Ten to the power of `decimals`, 0..kMostDecimals.
[[nodiscard]] constexpr int PowerOfTen(int decimals) {
  int power = 1;
  while (decimals-- > 0) power *= 10;
  return power;
}

}  // namespace kalde2
