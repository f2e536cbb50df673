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

/// Hands on what is loaded, and knows whether anything was.
class LoadedValues : public ReplySink {
 public:
  explicit LoadedValues(ReplySink& sink) : sink_(sink) {}

  void ApplyReply(ReplyRecord& record) override {
    any_ = true;
    sink_.ApplyReply(record);
  }

  [[nodiscard]] bool Any() const { return any_; }

 private:
  ReplySink& sink_;
  bool any_ = false;
};

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

SettingsFile::Loaded SettingsFile::LoadSettingsFile() {
  const auto name = dialogs_.AskOpenName(kOpenDialog);
  if (!name) return Loaded::kNothing;
  const std::string path = ChosenPath(*name);
  LoadedValues values(unit_);
  try {
    LoadSettings(path, values);
  } catch (const Fault& fault) {
    boxes_.Show('"' + ShownFileName(path) + "\": " + fault.what(), BoxIcon::kCritical, "");
    return values.Any() ? Loaded::kInPart : Loaded::kNothing;
  }
  boxes_.Show(kLoaded, BoxIcon::kNone, "");
  return values.Any() ? Loaded::kWhole : Loaded::kNothing;
}

}  // namespace kalde2
