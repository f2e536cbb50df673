#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "link/addresses.h"

namespace kalde2 {

/// The inputs that a per-source parameter applies to.
enum class InputKind : std::uint8_t { kAll, kRgb, kVideo };

/// A parameter of which a unit keeps one value for each input source.
struct PerSourceRow {
  Address address;
  std::int8_t slot;  ///< its row of the per-source values
  InputKind inputs;
  bool under_reply_source;  ///< a reply's value goes to the source that the reply names; else it
                            ///< takes the way of `ValueStore::StoreParamValue`
};

// clang-format off
inline constexpr auto kPerSource = std::to_array<PerSourceRow>({
    // address  slot  inputs             under the reply's source
    {138,        0,   InputKind::kVideo, true},
    {182,        1,   InputKind::kAll,   true},
    {183,        2,   InputKind::kAll,   true},
    {184,        3,   InputKind::kAll,   true},
    {185,        4,   InputKind::kVideo, true},
    {186,        5,   InputKind::kVideo, true},
    {187,        6,   InputKind::kVideo, true},
    {188,        7,   InputKind::kVideo, true},
    {193,        8,   InputKind::kRgb,   true},
    {197,        9,   InputKind::kRgb,   true},
    {198,       10,   InputKind::kRgb,   true},
    {199,       11,   InputKind::kRgb,   true},
    {208,       12,   InputKind::kAll,   true},   // no product has it; intended
    {222,       13,   InputKind::kAll,   true},
    {223,       14,   InputKind::kAll,   true},
    {163,       15,   InputKind::kAll,   false},  // the only one to go the other way; intended
});
// clang-format on

/// The row of an address, nullptr for a parameter that is not kept per source.
[[nodiscard]] constexpr const PerSourceRow* FindPerSource(int address) {
  const auto* const row = std::ranges::find(kPerSource, address, &PerSourceRow::address);
  return row == kPerSource.end() ? nullptr : row;
}

/// Slot of a per-source parameter. Any other address gives 0, the slot of address 138; that
/// collision is intended.
[[nodiscard]] constexpr int PerSourceSlot(int address) {
  const PerSourceRow* const row = FindPerSource(address);
  return row == nullptr ? 0 : row->slot;
}

static_assert(std::ranges::all_of(kPerSource, [](const PerSourceRow& row) {
  // Each address and each slot stands in one row.
  return std::ranges::count(kPerSource, row.address, &PerSourceRow::address) == 1 &&
         std::ranges::count(kPerSource, row.slot, &PerSourceRow::slot) == 1 && row.slot >= 0 &&
         row.address >= kFirstAddress && row.address < kFirstAddress + kCatalogueSize;
}));

}  // namespace kalde2
