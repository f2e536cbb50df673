#include "files/mod_FileHandler.h"

#include <charconv>
#include <string>
#include <string_view>

#include "files/skip_on_fault.h"
#include "files/source_scope.h"
#include "files/text_file.h"
#include "link/numbers.h"
#include "link/source_codes.h"

namespace kalde2 {
namespace {

constexpr std::string_view kVersionLine = "[1.0]";
constexpr std::string_view kDeviceSection = "[DEVICE]";
constexpr std::string_view kGeneralSection = "[GENERAL1A]";
constexpr std::string_view kSourceSection = "[SOURCE]";

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
constexpr std::string_view kGeneralLineForm =
    "expected an address (a whole number of 16 bits), a comma and a value (32 bits)";
constexpr std::string_view kSourceLineForm =
    "expected an address and a source code (whole numbers of 16 bits) and a value (32 bits), "
    "separated by commas";

/// The name that a dialog gave, without blanks around it and up to its first NUL.
std::string ChosenPath(std::string_view name) {
  const std::string_view trimmed = Trimmed(name);
  return std::string(trimmed.substr(0, trimmed.find('\0')));
}

/// A number with a blank in place of the plus sign.
std::string SignedText(std::int32_t value) {
  std::string text = std::to_string(value);
  return value < 0 ? text : ' ' + text;
}

/// The comma-separated fields of a line from the first on.
class Fields {
 public:
  explicit Fields(std::string_view line) : rest_(line) {}

  /// The next field as a whole number; blanks may stand around it.
  /// @throws Fault where there is none or it does not fit
  template <typename Integer>
  [[nodiscard]] Integer Next() {
    std::string_view text = Trimmed(NextText());
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    Integer number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) throw Fault("not a number of this width");
    return number;
  }

 private:
  /// Empty behind the last field, which is no number.
  std::string_view NextText() {
    const std::size_t comma = rest_.find(',');
    const std::string_view text = rest_.substr(0, comma);
    rest_.remove_prefix(comma == std::string_view::npos ? rest_.size() : comma + 1);
    return text;
  }

  std::string_view rest_;
};

enum class Section { kBeforeGeneral, kGeneral, kSource };

/// Takes the lines behind the first one. The record keeps its fields from line to line: the source
/// code is 0 until a source line has set it.
class SettingsParser {
 public:
  explicit SettingsParser(CommandLink& link) : link_(link) {}

  /// @param is_cut the line was longer than what is handed over: no line of a section is
  /// @throws Fault telling what was expected
  void Take(std::string_view line, bool is_cut) {
    is_cut_ = is_cut;
    switch (section_) {
      case Section::kBeforeGeneral:
        if (line == kGeneralSection) section_ = Section::kGeneral;
        return;
      case Section::kGeneral:
        if (line == kSourceSection) {
          section_ = Section::kSource;
        } else {
          TakeLine(line, kGeneralLineForm, [this](Fields& fields) {
            record_.Address = fields.Next<std::int16_t>();
            record_.Value = fields.Next<std::int32_t>();
          });
        }
        return;
      case Section::kSource:
        TakeLine(line, kSourceLineForm, [this](Fields& fields) {
          record_.Address = fields.Next<std::int16_t>();
          record_.Source = fields.Next<std::int16_t>();
          record_.Value = fields.Next<std::int32_t>();
        });
        return;
    }
  }

 private:
  template <typename Read>
  void TakeLine(std::string_view line, std::string_view form, Read read) {
    try {
      if (is_cut_) throw Fault("the line is too long");
      Fields fields(line);
      read(fields);
    } catch (const Fault&) {
      throw Fault(std::string(form));
    }
    record_.Valid = true;
    link_.ApplyReply(record_);
  }

  CommandLink& link_;
  Section section_ = Section::kBeforeGeneral;
  ReplyRecord record_;
  bool is_cut_ = false;
};

}  // namespace

SettingsFile::SettingsFile(const ParamCatalogue& catalogue, const Connectivity& connectivity,
                           ValueStore& values, CommandLink& link, MessageBoxes& boxes,
                           FileDialogs& dialogs)
    : catalogue_(catalogue),
      connectivity_(connectivity),
      values_(values),
      link_(link),
      boxes_(boxes),
      dialogs_(dialogs) {}

void SettingsFile::SaveSettingsFile(std::int32_t product_type) {
  const auto name = dialogs_.AskSaveName(kSaveDialog);
  if (!name) return;
  std::ofstream file = CreateAnew(ChosenPath(*name));
  WriteSettings(file, product_type);
  file.close();
  boxes_.Show(kSaved, BoxIcon::kNone, "");
}

void SettingsFile::WriteSettings(std::ostream& file, std::int32_t product_type) {
  file << kVersionLine << kLineEnd;
  file << kDeviceSection << kLineEnd;
  file << std::to_string(product_type) << kLineEnd;
  file << kGeneralSection << kLineEnd;
  WriteGeneralLines(file);
  file << kSourceSection << kLineEnd;
  WriteSourceLines(file);
}

void SettingsFile::WriteGeneralLines(std::ostream& file) const {
  for (int index = 0; index < kCatalogueSize; ++index) {
    if (!catalogue_.Record(index).Active) continue;
    file << std::to_string(index + kFirstAddress) << ',' << SignedText(values_.ParamValue(index))
         << kLineEnd;
  }
}

void SettingsFile::WriteSourceLines(std::ostream& file) {
  // Lives across lines: a value that does not fit is written as the line before it was.
  std::int16_t value = 0;
  for (int index = 0; index < kCatalogueSize; ++index) {
    const ParamRecord& record = catalogue_.Record(index);
    if (!record.PerSource || !record.Active) continue;
    for (const int source : ApplicableSources(record, connectivity_)) {
      const std::int16_t code = SourceIndexToCode(source);
      values_.SetParamValue(ValueStore::kCurrentSource, code);
      SkipOnFault([&] { value = NarrowToInt16(values_.GetParamValue(index)); });
      file << std::to_string(index + kFirstAddress) << ", " << std::to_string(code) << " ,"
           << std::to_string(value) << kLineEnd;
    }
  }
}

void SettingsFile::LoadSettingsFile() {
  const auto name = dialogs_.AskOpenName(kOpenDialog);
  if (!name) return;
  const std::string path = ChosenPath(*name);
  try {
    std::ifstream file = OpenForReading(path);
    if (!file.is_open()) throw Fault("the file cannot be opened");
    ApplySettings(file);
    if (file.bad()) throw Fault("the file cannot be read to its end");
  } catch (const Fault& fault) {
    boxes_.Show('"' + ShownFileName(path) + "\": " + fault.what(), BoxIcon::kCritical, "");
    return;
  }
  boxes_.Show(kLoaded, BoxIcon::kNone, "");
}

void SettingsFile::ApplySettings(std::istream& text) {
  LineReader lines(text);
  std::string line;
  if (!lines.Next(line) || line != kVersionLine) return;
  SettingsParser parser(link_);
  while (lines.Next(line)) {
    try {
      parser.Take(line, lines.WasCut());
    } catch (const Fault& fault) {
      throw Fault("line " + std::to_string(lines.LineNumber()) + ": " + fault.what());
    }
  }
}

}  // namespace kalde2
