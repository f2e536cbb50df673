#include "panel/settings_file.h"

#include <string>
#include <string_view>

#include "files/mod_FileHandler.h"
#include "files/text_file.h"
#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

// The two filter labels differ on purpose.
constexpr FileDialogSetup kOpenDialog = {.title = "Open",
                                         .filter_label = "K2 (*.txt)",
                                         .filter_pattern = "*.txt",
                                         .default_extension = ""};
constexpr FileDialogSetup kSaveDialog = {.title = "Save K2 file",
                                         .filter_label = "K2 file (*.txt)",
                                         .filter_pattern = "*.txt",
                                         .default_extension = ".txt"};

constexpr std::string_view kSaved = "Settings saved to file";
constexpr std::string_view kLoaded = "Loaded values from file";

/// The name that a dialog gave, without blanks around it and up to its first NUL.
std::string ChosenPath(std::string_view name) {
  const std::string_view trimmed = Trimmed(name);
  return std::string(trimmed.substr(0, trimmed.find('\0')));
}

}  // namespace

void SettingsFile::SaveSettingsFile(std::int32_t product_type) {
  const auto name = dialogs_.AskSaveName(kSaveDialog);
  if (!name) return;
  SaveSettings(ChosenPath(*name), unit_, product_type);
  boxes_.Show(kSaved, BoxIcon::kNone, "");
}

void SettingsFile::LoadSettingsFile() {
  const auto name = dialogs_.AskOpenName(kOpenDialog);
  if (!name) return;
  const std::string path = ChosenPath(*name);
  try {
    LoadSettings(path, unit_);
  } catch (const Fault& fault) {
    boxes_.Show('"' + ShownFileName(path) + "\": " + fault.what(), BoxIcon::kCritical, "");
    return;
  }
  boxes_.Show(kLoaded, BoxIcon::kNone, "");
}

}  // namespace kalde2
