#pragma once

#include <cstdint>

#include "model/unit_model.h"
#include "panel/dialogs.h"

namespace kalde2 {

/// The settings file as the operator meets it: which file, and how it went.
class SettingsFile {
 public:
  SettingsFile(UnitModel& unit, MessageBoxes& boxes, FileDialogs& dialogs)
      : unit_(unit), boxes_(boxes), dialogs_(dialogs) {}

  /// Asks for a file name and saves. Errors are ignored step by step and the success is reported
  /// all the same.
  void SaveSettingsFile(std::int32_t product_type);

  /// What came of a load.
  enum class Loaded : std::uint8_t { kNothing, kInPart, kWhole };

  /// Asks for a file name and loads. A file that cannot be opened or has a malformed line ends the
  /// load with a message; what was applied before stays.
  Loaded LoadSettingsFile();

 private:
  UnitModel& unit_;
  MessageBoxes& boxes_;
  FileDialogs& dialogs_;
};

}  // namespace kalde2
