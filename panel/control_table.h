#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "link/addresses.h"

// The controls of the main window that have one or two parameters each, one row a control. Adding
// one is a row here and its place in VornikForm; inside its group, rows are in tab order.

namespace kalde2 {

/// A row of a table by its control's name; a name that the table does not have is no program.
template <const auto& table>
struct RowId {
  std::size_t index;

  // Implicit on purpose: the name stands for the row.
  consteval RowId(const char* name) : index(0) {  // NOLINT(google-explicit-constructor)
    while (table.at(index).name != std::string_view(name)) ++index;
  }

  [[nodiscard]] constexpr const auto& Row() const { return table[index]; }
  bool operator==(const RowId&) const = default;
};

/// The groups of the window that rows belong to.
enum class Group : std::uint8_t { kNone, kPicture, kKeyer, kShrink };

/// A slider. The address that it shows (its `Tag`), whose range it has, and the one that it writes
/// are two: the zoom and shrink sliders write the overall parameter and show the horizontal one.
/// The overall shrink has a wider range, which is not this slider's.
struct SliderRow {
  const char* name;
  Group group;
  Address tag;
  Address address;
  std::int16_t initial;
  const char* accessible_name;  ///< begins with the captions that are seen
  const char* description;
};

// clang-format off
inline constexpr auto kSliders = std::to_array<SliderRow>({
    // name           group            tag                writes            initial  accessible name, description
    {"slide_zoom",    Group::kPicture, address::kZoomH,   address::kZoom,   100, "Zoom (%)",     "Zoom, percent"},
    {"slide_zoomv",   Group::kPicture, address::kZoomV,   address::kZoomV,  100, "Zoom V (%)",   "Vertical zoom, percent"},
    {"slide_ymin",    Group::kKeyer,   175,               175,                0, "Y Min",        "Key Y minimum"},
    {"slide_ymax",    Group::kKeyer,   178,               178,                0, "Y Max",        "Key Y maximum"},
    {"slide_softy",   Group::kKeyer,   289,               289,                0, "Y Softness",   "Key Y softness"},
    {"slide_umin",    Group::kKeyer,   176,               176,                0, "U Min",        "Key U minimum"},
    {"slide_umax",    Group::kKeyer,   179,               179,                0, "U Max",        "Key U maximum"},
    {"slide_softu",   Group::kKeyer,   291,               291,                0, "U Softness",   "Key U softness"},
    {"slide_vmin",    Group::kKeyer,   177,               177,                0, "V Min",        "Key V minimum"},
    {"slide_vmax",    Group::kKeyer,   180,               180,                0, "V Max",        "Key V maximum"},
    {"slide_softv",   Group::kKeyer,   293,               293,                0, "V Softness",   "Key V softness"},
    {"slide_shrink",  Group::kShrink,  address::kShrinkH, address::kShrink, 100, "Shrink (%)",   "Shrink, percent"},
    {"slide_shrinkv", Group::kShrink,  address::kShrinkV, address::kShrinkV, 100, "Shrink V (%)", "Vertical shrink, percent"},
});

/// An arrow pad: `Tag` is the address of its horizontal axis, `TAG2` that of the vertical one.
struct PadRow {
  const char* name;
  Group group;
  Address tag;
  Address tag2;
  const char* title;
  const char* tooltip;
};

inline constexpr auto kPads = std::to_array<PadRow>({
    {"arr_zoompan",    Group::kPicture, 159, 160, "PAN",  "Pan within a zoomed image"},
    {"arr_shrinkposn", Group::kShrink,  218, 219, "POSN", "Change the position of the window"},
});

/// A check box that writes 1 when checked and 0 otherwise; address 0 writes nothing.
struct CheckRow {
  const char* name;
  Group group;
  Address address;
  const char* caption;
  const char* tooltip;
  const char* accessible_name;
  Group enables;  ///< the group whose sliders are enabled with the mark
  bool marked;    ///< at the start
};

inline constexpr auto kChecks = std::to_array<CheckRow>({
    {"chk_keyenable",    Group::kKeyer,   295,                    "Enable",         "Enable Keyer",
     "Enable Keyer",   Group::kNone,    false},
    {"chk_swapforback",  Group::kKeyer,   324,                    "Swap Fore-Back", "Swap key from foreground to background",
     "Swap Fore-Back", Group::kNone,    false},
    {"chk_shrinkenable", Group::kShrink,  address::kShrinkEnable, "Shrink Enable",  "Enable shrink",
     "Shrink Enable",  Group::kShrink,  false},
    // The zoom sliders are enabled with the panel; the mark says so from the start.
    {"chk_zoomenable",   Group::kPicture, 0,                      "Zoom Enable",    "Enable zoom",
     "Zoom Enable",    Group::kPicture, true},
});

using SliderId = RowId<kSliders>;
using PadId = RowId<kPads>;
using CheckId = RowId<kChecks>;

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
  SliderId slider;
  std::int16_t value;
};

inline constexpr auto kBlackPreset = std::to_array<PresetRow>({
    {"slide_ymin",    0},
    {"slide_ymax",   32},
    {"slide_umin",  120},
    {"slide_umax",  134},
    {"slide_vmin",  120},
    {"slide_vmax",  134},
    {"slide_softy",   0},
    {"slide_softu",   0},
    {"slide_softv",   0},
});

/// The sliders of the black preset in the order in which they are set, which is another.
inline constexpr auto kBlackSliders = std::to_array<SliderId>({
    "slide_ymin", "slide_umin", "slide_vmin", "slide_ymax", "slide_umax", "slide_vmax",
    "slide_softy", "slide_softu", "slide_softv",
});
// clang-format on

/// @param slider of the black preset
constexpr std::int16_t BlackValueOf(SliderId slider) {
  return std::ranges::find(kBlackPreset, slider, &PresetRow::slider)->value;
}

static_assert(std::ranges::is_permutation(kBlackPreset, kBlackSliders, {}, &PresetRow::slider));

}  // namespace kalde2
