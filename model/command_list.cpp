#include "model/command_list.h"

#include <algorithm>

#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

constexpr int kZoom = 134;
constexpr int kShrink = 135;
constexpr int kAspectAdjust = 258;
constexpr int kFirstAxisScale = 259;
constexpr int kLastAxisScale = 262;
constexpr int kSetupSource = 278;
constexpr int kShrinkEnable = 398;

constexpr std::int32_t kSimple = 0;
constexpr std::int32_t kAdvanced = 1;

/// Sources from here on are video, the ones below RGB and DVI.
constexpr std::int32_t kFirstVideoSource = 32;

constexpr int IndexOf(int address) {
  return address - kFirstAddress;
}

}  // namespace

CommandList::CommandList(const ParamCatalogue& catalogue, const ValueNames& names,
                         const Connectivity& connectivity, ValueStore& values,
                         const ResolutionNames& resolutions)
    : catalogue_(catalogue),
      names_(names),
      connectivity_(connectivity),
      values_(values),
      resolutions_(resolutions) {}

std::vector<CommandLine> CommandList::Lines() const {
  std::vector<CommandLine> lines;
  try {
    for (const std::int16_t index : catalogue_.ActiveParams()) {
      if (Record(index).Name.empty()) continue;
      std::string text = LineText(index);
      if (IsCommandAvailable(index) && IsCommandApplicable(index)) {
        lines.push_back({std::move(text), index});
      }
    }
  } catch (const Fault&) {
    // The lines so far stay.
  }
  return lines;
}

bool CommandList::IsCommandAvailable(int index) const {
  const int address = index + kFirstAddress;
  const std::int32_t aspect = CurrentValue(IndexOf(kAspectAdjust));
  if (address == kShrink && CurrentValue(IndexOf(kShrinkEnable)) == 0) return false;
  if (address >= kFirstAxisScale && address <= kLastAxisScale) return aspect != kSimple;
  if (address == kZoom || address == kShrink) return aspect != kAdvanced;
  return true;
}

bool CommandList::IsCommandApplicable(int index) const {
  const ParamRecord& record = Record(index);
  if (!record.PerSource) return true;
  const std::int32_t source = SetupSource();
  if (!connectivity_.IsFitted(source)) return false;
  if (!record.RgbOnly && !record.VideoOnly) return true;
  return source >= kFirstVideoSource ? record.VideoOnly : record.RgbOnly;
}

std::int32_t CommandList::SetupSource() const {
  const std::int32_t source = CurrentValue(IndexOf(kSetupSource));
  return source == 0 ? kFirstSourceCode : source;
}

std::string CommandList::LineText(int index) const {
  const ParamRecord& record = Record(index);
  const std::int32_t value = CurrentValue(index);
  if (record.HasList) return record.Name + " : " + ListValueText(index, value);
  const std::string shown =
      index == kResolution ? resolutions_.ResolutionName(value) : std::to_string(value);
  return record.Name + "[" + std::to_string(record.MinValue) + "," +
         std::to_string(record.MaxValue) + "] : " + shown;
}

std::string CommandList::ListValueText(int index, std::int32_t value) const {
  const ParamRecord& record = Record(index);
  if (record.UseItemData) {
    return record.PerSource ? "T,T" : ItemDataText(record.ListId, value);
  }
  if (!record.PerSource) return PositionText(record.ListId, value, "ERROR2");
  return IsCommandApplicable(index) ? PositionText(record.ListId, value, "ERROR") : "N/A";
}

/// Label of the first item with the number, of item 0 where no item has it.
std::string CommandList::ItemDataText(int list, std::int32_t value) const {
  for (int item = 0; item < ValueNames::kItems; ++item) {
    const std::string& text = names_.Item(list, item);
    if (text.empty()) continue;
    LabelledNumber entry = SplitItem(text);
    if (entry.number == value) return std::move(entry.label);
  }
  const std::string& first = names_.Item(list, 0);
  return first.empty() ? "ERROR1" : SplitItem(first).label;
}

std::string CommandList::PositionText(int list, std::int32_t value, const char* missing) const {
  const std::string& text = names_.Item(list, value);
  return text.empty() ? missing : text;
}

std::vector<ValueItem> CommandList::Choices(int index) const {
  const ParamRecord& record = Record(index);
  std::vector<ValueItem> choices;
  for (int item = 0; item < ValueNames::kItems; ++item) {
    const std::string& text = names_.Item(record.ListId, item);
    if (text.empty()) continue;
    if (record.UseItemData) {
      LabelledNumber entry = SplitItem(text);
      choices.push_back({std::move(entry.label), entry.number});
    } else {
      choices.push_back({text});
    }
  }
  return choices;
}

int CommandList::CurrentChoice(int index) const {
  const std::int32_t value = CurrentValue(index);
  const std::vector<ValueItem> choices = Choices(index);
  if (!Record(index).UseItemData) {
    return value >= 0 && static_cast<std::size_t>(value) < choices.size() ? value : -1;
  }
  const auto found = std::ranges::find(choices, value, &ValueItem::data);
  return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

std::int32_t CommandList::SteppedValue(int index, int step) const {
  const std::int64_t lowest = Record(index).MinValue;
  const std::int64_t highest = Record(index).MaxValue;
  // Wide, because a settings file can bring any 32-bit value.
  const std::int64_t value = std::int64_t{CurrentValue(index)} + step;
  return static_cast<std::int32_t>(step < 0 ? std::min(std::max(value, lowest), highest)
                                            : std::max(std::min(value, highest), lowest));
}

bool CommandList::ReadTyped(int index, std::string_view text, std::int32_t& value) const {
  const double number = NumericValue(text);
  if (number < Record(index).MinValue || number > Record(index).MaxValue) return false;
  value = RoundToInt32(number);
  return true;
}

std::int16_t CommandList::WriteSource(int index) const {
  return Record(index).PerSource ? NarrowToInt16(SetupSource()) : kFirstSourceCode;
}

}  // namespace kalde2
