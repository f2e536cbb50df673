#include "link/source_codes.h"

#include <algorithm>
#include <array>

namespace kalde2 {
namespace {

constexpr std::array<std::int16_t, 9> kSourceCodes = {16, 17, 18, 48, 49, 50, 64, 65, 66};

// The position is the slot.
constexpr std::array<int, 16> kSlotAddresses = {138, 182, 183, 184, 185, 186, 187, 188,
                                                193, 197, 198, 199, 208, 222, 223, 163};

/// Position of a value in a table, 0 where it is not there.
template <typename T, std::size_t N>
int PositionOrZero(const std::array<T, N>& table, int value) {
  const auto found = std::ranges::find(table, value);
  return found == table.end() ? 0 : static_cast<int>(found - table.begin());
}

}  // namespace

std::int16_t SourceIndexToCode(int index) {
  const bool in_table = index >= 0 && index < static_cast<int>(kSourceCodes.size());
  return in_table ? kSourceCodes[static_cast<std::size_t>(index)] : std::int16_t{0};
}

int SourceCodeToIndex(int code) {
  return PositionOrZero(kSourceCodes, code);
}

int PerSourceSlot(int address) {
  return PositionOrZero(kSlotAddresses, address);
}

}  // namespace kalde2
