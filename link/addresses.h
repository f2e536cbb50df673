#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "link/fault.h"

namespace kalde2 {

/// The number by which frames, files and tables know a parameter of the unit.
using Address = std::int16_t;

/// Addresses that the panel has to do with by name.
namespace address {
inline constexpr Address kMainInput = 130;
inline constexpr Address kResolution = 131;
inline constexpr Address kZoom = 134;
inline constexpr Address kShrink = 135;
inline constexpr Address kInputPixelPhase = 145;
inline constexpr Address kLeftShift = 182;
inline constexpr Address kTopShift = 183;
inline constexpr Address kProductType = 0xC4;
inline constexpr Address kStore = 200;
inline constexpr Address kRightShift = 222;
inline constexpr Address kBottomShift = 223;
inline constexpr Address kReset = 241;
inline constexpr Address kAutoset = 254;
inline constexpr Address kAspectAdjust = 258;
inline constexpr Address kZoomH = 259;
inline constexpr Address kShrinkH = 260;
inline constexpr Address kZoomV = 261;
inline constexpr Address kShrinkV = 262;
inline constexpr Address kLockMode = 266;
inline constexpr Address kSetupSource = 278;
inline constexpr Address kLockSource = 329;
inline constexpr Address kShrinkEnable = 398;
inline constexpr Address kFade = 403;
inline constexpr Address kSourceCode = 404;
inline constexpr Address kNameIndex = 405;
}  // namespace address

/// Address of the first entry of the parameter catalogue.
inline constexpr Address kFirstAddress = 130;

/// Entries of the parameter catalogue: addresses 130..413.
inline constexpr int kCatalogueSize = 284;

/// Place of a parameter in the catalogue and in the value store, 0..283 where it has one.
struct CatalogueIndex {
  std::int16_t number = 0;

  auto operator<=>(const CatalogueIndex&) const = default;
};

/// @throws Fault where the result leaves 16 bits; it need not lie in the catalogue
[[nodiscard]] constexpr CatalogueIndex IndexOf(int address) {
  const int number = address - kFirstAddress;
  if (!std::in_range<std::int16_t>(number)) throw Fault("an address without an index");
  return {static_cast<std::int16_t>(number)};
}

/// @param index of the catalogue
[[nodiscard]] constexpr Address AddressOf(CatalogueIndex index) {
  return static_cast<Address>(index.number + kFirstAddress);
}

/// All indexes of the catalogue, ascending.
inline constexpr auto kCatalogueIndexes = [] {
  std::array<CatalogueIndex, kCatalogueSize> indexes{};
  for (std::size_t i = 0; i < indexes.size(); ++i) indexes[i].number = static_cast<std::int16_t>(i);
  return indexes;
}();

}  // namespace kalde2
