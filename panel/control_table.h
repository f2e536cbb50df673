#pragma once

#include <array>
#include <cstdint>

#include "link/addresses.h"

namespace kalde2 {

/// A slider of the main window. The address that it shows (its `Tag`) and the one that it writes
/// are two: the zoom and shrink sliders write the overall parameter and show the horizontal one.
struct SliderRow {
  const char* name;
  Address tag;
  Address address;
  int minimum;
  int maximum;
  int initial;
  const char* accessible_name;
};

// clang-format off
inline constexpr auto kSliders = std::to_array<SliderRow>({
    // name          tag  writes   min   max  initial  accessible name
    {"slide_zoom",   259, 134,     100, 1000, 100, "Zoom, percent"},
    {"slide_zoomv",  261, 261,     100, 1000, 100, "Vertical zoom, percent"},
    {"slide_ymin",   175, 175,       0,  255,   0, "Key Y minimum"},
    {"slide_ymax",   178, 178,       0,  255,   0, "Key Y maximum"},
    {"slide_softy",  289, 289,       0,  255,   0, "Key Y softness"},
    {"slide_umin",   176, 176,       0,  255,   0, "Key U minimum"},
    {"slide_umax",   179, 179,       0,  255,   0, "Key U maximum"},
    {"slide_softu",  291, 291,       0,  255,   0, "Key U softness"},
    {"slide_vmin",   177, 177,       0,  255,   0, "Key V minimum"},
    {"slide_vmax",   180, 180,       0,  255,   0, "Key V maximum"},
    {"slide_softv",  293, 293,       0,  255,   0, "Key V softness"},
    {"slide_shrink", 260, 135,      10,  100, 100, "Shrink, percent"},
    {"slide_shrinkv", 262, 262,     10,  100, 100, "Vertical shrink, percent"},
});

/// An arrow pad: `Tag` is the address of its horizontal axis, `TAG2` that of the vertical one.
struct PadRow {
  const char* name;
  Address tag;
  Address tag2;
  const char* title;
  const char* tooltip;
};

inline constexpr auto kPads = std::to_array<PadRow>({
    {"arr_zoompan",     159, 160, "PAN",  "Pan within a zoomed image"},
    {"arr_shrinkposn",  218, 219, "POSN", "Change the position of the window"},
});

/// A check box that writes 1 when checked and 0 otherwise; address 0 writes nothing.
struct CheckRow {
  const char* name;
  Address address;
  const char* caption;
  const char* tooltip;
};

inline constexpr auto kChecks = std::to_array<CheckRow>({
    {"chk_keyenable",    295, "Enable",         "Enable Keyer"},
    {"chk_swapforback",  324, "Swap Fore-Back", "Swap key from foreground to background"},
    {"chk_shrinkenable", 398, "Shrink Enable",  "Enable shrink"},
    {"chk_zoomenable",     0, "Zoom Enable",    "Enable zoom"},
});

/// A lock mode: its option button and the value of address 266.
struct LockModeRow {
  const char* name;
  const char* caption;
  std::int16_t value;
  const char* description;
};

inline constexpr auto kLockModes = std::to_array<LockModeRow>({
    {"opt_lockoff",     "Off",     0, "The output runs free"},
    {"opt_lockgenlock", "Genlock", 1, "The output is locked to the lock source"},
    {"opt_lockmix",     "Mix",     2, "The output is locked to the lock source and mixed with it"},
});

/// What the three option buttons count as while a change has to wait: one control.
inline constexpr const char* kLockModeControl = "opt_lock";

/// One key limit or softness of the black preset, in the order in which they are written.
struct PresetRow {
  const char* slider;
  Address address;
  std::int16_t value;
};

inline constexpr auto kBlackPreset = std::to_array<PresetRow>({
    {"slide_ymin",  175,   0},
    {"slide_ymax",  178,  32},
    {"slide_umin",  176, 120},
    {"slide_umax",  179, 134},
    {"slide_vmin",  177, 120},
    {"slide_vmax",  180, 134},
    {"slide_softy", 289,   0},
    {"slide_softu", 291,   0},
    {"slide_softv", 293,   0},
});

/// The sliders of the black preset in the order in which they are set, which is another.
inline constexpr auto kBlackSliders = std::to_array<const char*>({
    "slide_ymin", "slide_umin", "slide_vmin", "slide_ymax", "slide_umax", "slide_vmax",
    "slide_softy", "slide_softu", "slide_softv",
});
// clang-format on

}  // namespace kalde2
