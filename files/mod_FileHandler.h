#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

#include "files/dialogs.h"
#include "link/mod_comms.h"
#include "link/value_store.h"
#include "model/connectivity.h"
#include "model/mod_active_dts.h"

namespace kalde2 {

/// The settings file: the panel's own snapshot of its values. Saving reads nothing from the unit
/// and loading sends nothing to it. Text, one byte a character, each line ended by CR LF:
///
///     [1.0]
///     [DEVICE]
///     22                  product type
///     [GENERAL1A]
///     130, 0              address, value of each parameter; a blank stands for the plus sign
///     131,-3
///     [SOURCE]
///     138, 16 ,5          address, source code, value of each per-source parameter and source
///     138, 17 ,-2
class SettingsFile {
 public:
  SettingsFile(const ParamCatalogue& catalogue, const Connectivity& connectivity,
               ValueStore& values, CommandLink& link, MessageBoxes& boxes, FileDialogs& dialogs);

  /// Asks for a file name and saves. Errors are ignored step by step and the success is reported
  /// all the same. Leaves the code of the last source written as the selected source.
  void SaveSettingsFile(std::int32_t product_type);

  /// Asks for a file name and loads. A file that cannot be opened or has a malformed line ends the
  /// load with a message; what was applied before stays.
  void LoadSettingsFile();

  /// Applies each line as if the unit had replied it, before the next is read. A text that does not
  /// begin with the line "[1.0]" is not read on. Line ends: see `LineReader`.
  /// @throws Fault at a malformed line, telling its number and what was expected
  void ApplySettings(std::istream& text);

 private:
  void WriteSettings(std::ostream& file, std::int32_t product_type);
  void WriteGeneralLines(std::ostream& file) const;
  void WriteSourceLines(std::ostream& file);

  const ParamCatalogue& catalogue_;
  const Connectivity& connectivity_;
  ValueStore& values_;
  CommandLink& link_;
  MessageBoxes& boxes_;
  FileDialogs& dialogs_;
};

}  // namespace kalde2
