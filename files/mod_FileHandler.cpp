#include "files/mod_FileHandler.h"

#include <charconv>
#include <string>
#include <string_view>
#include <utility>

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

constexpr std::string_view kGeneralLineForm =
    "expected an address (a whole number of 16 bits), a comma and a value (32 bits)";
constexpr std::string_view kSourceLineForm =
    "expected an address and a source code (whole numbers of 16 bits) and a value (32 bits), "
    "separated by commas";

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
  explicit SettingsParser(ReplySink& sink) : sink_(sink) {}

  /// @param is_cut the line was longer than what is handed over: no line of a section is
  /// @throws Fault telling what was expected
  void Take(std::string_view line, bool is_cut) {
    is_cut_ = is_cut;
    switch (section_) {
      case Section::kBeforeGeneral:
        if (line == kGeneralSection) section_ = Section::kGeneral;
        if (std::exchange(names_device_, line == kDeviceSection)) NoteProductType(line);
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

  [[nodiscard]] std::optional<std::int32_t> ProductType() const { return product_type_; }

 private:
  void NoteProductType(std::string_view line) {
    // A line that is no number names no product, and is no fault.
    SkipOnFault([&] { product_type_ = Fields(line).Next<std::int32_t>(); });
  }

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
    sink_.ApplyReply(record_);
  }

  ReplySink& sink_;
  Section section_ = Section::kBeforeGeneral;
  ReplyRecord record_;
  std::optional<std::int32_t> product_type_;
  bool names_device_ = false;  ///< the line before was the header of the device
  bool is_cut_ = false;
};

void WriteGeneralLines(std::ostream& file, const UnitModel& unit) {
  for (const CatalogueIndex index : kCatalogueIndexes) {
    if (!unit.catalogue.Record(index).Active) continue;
    file << std::to_string(AddressOf(index)) << ','
         << SignedText(unit.values.ParamValue(index.number)) << kLineEnd;
  }
}

void WriteSourceLines(std::ostream& file, UnitModel& unit) {
  // Lives across lines: a value that does not fit is written as the line before it was.
  std::int16_t value = 0;
  for (const CatalogueIndex index : kCatalogueIndexes) {
    const ParamRecord& record = unit.catalogue.Record(index);
    if (!record.PerSource || !record.Active) continue;
    for (const int source : ApplicableSources(record, unit.connectivity)) {
      const std::int16_t code = SourceIndexToCode(source);
      unit.values.SetParamValue(ValueStore::kCurrentSource, code);
      SkipOnFault([&] { value = NarrowToInt16(unit.values.GetParamValue(index)); });
      file << std::to_string(AddressOf(index)) << ", " << std::to_string(code) << " ,"
           << std::to_string(value) << kLineEnd;
    }
  }
}

}  // namespace

void WriteSettings(std::ostream& file, UnitModel& unit, std::int32_t product_type) {
  file << kVersionLine << kLineEnd;
  file << kDeviceSection << kLineEnd;
  file << std::to_string(product_type) << kLineEnd;
  file << kGeneralSection << kLineEnd;
  WriteGeneralLines(file, unit);
  file << kSourceSection << kLineEnd;
  WriteSourceLines(file, unit);
}

void SaveSettings(const std::string& path, UnitModel& unit, std::int32_t product_type) {
  std::ofstream file = CreateAnew(path);
  WriteSettings(file, unit, product_type);
}

std::optional<std::int32_t> ReadSettings(std::istream& text, ReplySink& sink) {
  LineReader lines(text);
  std::string line;
  if (!lines.Next(line) || line != kVersionLine) return std::nullopt;
  SettingsParser parser(sink);
  while (lines.Next(line)) {
    try {
      parser.Take(line, lines.WasCut());
    } catch (const Fault& fault) {
      throw Fault("line " + std::to_string(lines.LineNumber()) + ": " + fault.what());
    }
  }
  return parser.ProductType();
}

std::optional<std::int32_t> LoadSettings(const std::string& path, ReplySink& sink) {
  std::ifstream file = OpenForReading(path);
  if (!file.is_open()) throw Fault("the file cannot be opened");
  const std::optional<std::int32_t> product_type = ReadSettings(file, sink);
  if (file.bad()) throw Fault("the file cannot be read to its end");
  return product_type;
}

}  // namespace kalde2
