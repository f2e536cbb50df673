#pragma once

#include <cstdint>

#include "link/addresses.h"

namespace kalde2 {

/// What is written, to source 0x10, to have a unit do something.
struct UnitAction {
  Address address;
  std::int32_t value;
};

inline constexpr UnitAction kFadeIn{address::kFade, 1};
inline constexpr UnitAction kFadeOut{address::kFade, -1};
/// Keeps the settings over a power cut.
inline constexpr UnitAction kStore{address::kStore, 1};
/// Puts back the factory's settings, those that were stored included.
inline constexpr UnitAction kReset{address::kReset, 1};

}  // namespace kalde2
