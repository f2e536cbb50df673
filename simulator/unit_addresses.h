#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

/// The addresses that the unit itself has to know; all others are values like any other.
namespace kalde2 {

/// Addresses that a unit keeps values at.
inline constexpr int kFirstParameter = 130;
inline constexpr int kLastParameter = 413;

/// Source codes that a request can name.
inline constexpr int kSourceCodes = 256;

namespace addresses {

inline constexpr int kMainInput = 130;
inline constexpr int kResolution = 131;
inline constexpr int kInputPixelPhase = 145;
inline constexpr int kZoomPanH = 159;
inline constexpr int kLeftShift = 182;
inline constexpr int kTopShift = 183;
inline constexpr int kProductType = 0xC4;
inline constexpr int kStore = 200;
inline constexpr int kSlotCount = 0xD8;
inline constexpr int kRightShift = 222;
inline constexpr int kBottomShift = 223;
inline constexpr int kReset = 241;
inline constexpr int kAutoset = 254;
inline constexpr int kSetupSource = 278;
inline constexpr int kLockSource = 329;
inline constexpr int kSourceCode = 404;
inline constexpr int kNameIndex = 405;

}  // namespace addresses

/// An address with a meaning of its own beside the catalogue.
struct SpecialAddress {
  int address;
  std::string_view name;
  bool is_read_only;
};

inline constexpr std::array kSpecialAddresses = std::to_array<SpecialAddress>({
    {addresses::kProductType, "Product type", true},
    {addresses::kStore, "Store", false},
    {addresses::kSlotCount, "Resolution slots", true},
    {addresses::kReset, "Reset", false},
    {addresses::kAutoset, "Autoset", false},
    {addresses::kSourceCode, "Source code", true},
    {addresses::kNameIndex, "Input name", true},
});

/// The special address, nullptr for one that is none.
[[nodiscard]] constexpr const SpecialAddress* FindSpecial(int number) {
  const auto found = std::ranges::find(kSpecialAddresses, number, &SpecialAddress::address);
  return found == kSpecialAddresses.end() ? nullptr : &*found;
}

[[nodiscard]] constexpr bool IsParameter(int number) {
  return number >= kFirstParameter && number <= kLastParameter;
}

/// On the line a resolution is one more than its position in the list.
[[nodiscard]] constexpr std::int32_t WireOffset(int number) {
  return number == addresses::kResolution ? 1 : 0;
}

/// The input names count the RGB inputs from 0, their source numbers from 16.
[[nodiscard]] constexpr std::int32_t NameIndexOfSource(int source) {
  return source >= 16 && source <= 31 ? source - 16 : source;
}

}  // namespace kalde2
