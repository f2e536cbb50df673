#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kalde2 {

enum class BoxIcon { kNone, kExclamation, kCritical };

/// Modal message boxes. All texts are UTF-8, as what the system says and files are named is.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;

  /// A box with a single OK button. An empty title stands for the application's own.
  virtual void Show(std::string_view prompt, BoxIcon icon, std::string_view title) = 0;

  /// A box without icon, with OK and Cancel. @return true on OK
  [[nodiscard]] virtual bool Confirm(std::string_view prompt, std::string_view title) = 0;
};

/// What a file dialog is opened with. It neither asks before overwriting nor insists that the file
/// exists. All texts are UTF-8.
struct FileDialogSetup {
  std::string_view title;
  std::string_view filter_label;       ///< for example "K2 (*.txt)"
  std::string_view filter_pattern;     ///< for example "*.txt"
  std::string_view default_extension;  ///< ".txt" with its dot, empty for none
};

/// The system's file dialogs, opened in the application's folder.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;

  /// Path of the chosen file in the file system's encoding; nullopt when the operator cancels.
  [[nodiscard]] virtual std::optional<std::string> AskOpenName(const FileDialogSetup& setup) = 0;
  [[nodiscard]] virtual std::optional<std::string> AskSaveName(const FileDialogSetup& setup) = 0;
};

}  // namespace kalde2
