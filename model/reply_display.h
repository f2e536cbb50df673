#pragma once

#include <cstdint>

namespace kalde2 {

/// What a decoded reply does to the main window. Showing a value sends nothing to the unit. A
/// control that cannot take a value is a Fault.
class ReplyDisplay {
 public:
  virtual ~ReplyDisplay() = default;

  /// Address 258: the check mark of `mnu_function_aspect` and the visibility of the separate
  /// vertical zoom and shrink.
  virtual void ShowAspectAdjust(bool advanced) = 0;

  /// Address 266: the option button of the lock mode; none for a value other than 0..2.
  virtual void ShowLockMode(std::int32_t value) = 0;

  /// Every other address: each control whose `Tag` (or `TAG2`) holds the address.
  virtual void ShowValue(std::int16_t address, std::int32_t value) = 0;
};

/// The one-shot timer `tmr_updatelstCommands` that rebuilds the command list.
class RefreshTimer {
 public:
  virtual ~RefreshTimer() = default;

  /// Starts it; a running one is not started anew.
  virtual void Enable() = 0;
  virtual void Disable() = 0;
};

}  // namespace kalde2
