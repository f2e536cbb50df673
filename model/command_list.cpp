#include "model/command_list.h"

#include <algorithm>

#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

constexpr std::int32_t kSimple = 0;
constexpr std::int32_t kAdvanced = 1;

/// Sources from here on are video, the ones below RGB and DVI.
constexpr std::int32_t kFirstVideoSource = 32;

}  // namespace

std::vector<CommandLine> CommandList::Lines() const {
  std::vector<CommandLine> lines;
  try {
    for (const CatalogueIndex index : unit_.catalogue.ActiveParams()) {
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

bool CommandList::IsCommandAvailable(CatalogueIndex index) const {
  const std::int32_t aspect = CurrentValue(IndexOf(address::kAspectAdjust));
  switch (AddressOf(index)) {
    case address::kZoom:
      return aspect != kAdvanced;
    case address::kShrink:
      return aspect != kAdvanced && CurrentValue(IndexOf(address::kShrinkEnable)) != 0;
    case address::kZoomH:
    case address::kZoomV:
    case address::kShrinkH:
    case address::kShrinkV:
      return aspect != kSimple;
    default:
      return true;
  }
}

bool CommandList::IsCommandApplicable(CatalogueIndex index) const {
  const ParamRecord& record = Record(index);
  if (!record.PerSource) return true;
  const std::int32_t source = SetupSource();
  if (!unit_.connectivity.IsFitted(source)) return false;
  if (!record.RgbOnly && !record.VideoOnly) return true;
  return source >= kFirstVideoSource ? record.VideoOnly : record.RgbOnly;
}

std::int32_t CommandList::SetupSource() const {
  const std::int32_t source = CurrentValue(IndexOf(address::kSetupSource));
  return source == 0 ? kFirstSourceCode : source;
}

std::string CommandList::LineText(CatalogueIndex index) const {
  const ParamRecord& record = Record(index);
  const std::int32_t value = CurrentValue(index);
  if (record.HasList) return record.Name + " : " + ListValueText(index, value);
  const std::string shown =
      index == kResolution ? resolutions_.ResolutionName(value) : std::to_string(value);
  return record.Name + "[" + std::to_string(record.MinValue) + "," +
         std::to_string(record.MaxValue) + "] : " + shown;
}

std::string CommandList::ListValueText(CatalogueIndex index, std::int32_t value) const {
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
    const std::string& text = unit_.value_names.Item(list, item);
    if (text.empty()) continue;
    LabelledNumber entry = SplitItem(text);
    if (entry.number == value) return std::move(entry.label);
  }
  const std::string& first = unit_.value_names.Item(list, 0);
  return first.empty() ? "ERROR1" : SplitItem(first).label;
}

std::string CommandList::PositionText(int list, std::int32_t value, const char* missing) const {
  const std::string& text = unit_.value_names.Item(list, value);
  return text.empty() ? missing : text;
}

std::vector<ValueItem> CommandList::Choices(CatalogueIndex index) const {
  const ParamRecord& record = Record(index);
  std::vector<ValueItem> choices;
  for (int item = 0; item < ValueNames::kItems; ++item) {
    const std::string& text = unit_.value_names.Item(record.ListId, item);
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

int CommandList::CurrentChoice(CatalogueIndex index) const {
  const std::int32_t value = CurrentValue(index);
  const std::vector<ValueItem> choices = Choices(index);
  if (!Record(index).UseItemData) {
    return value >= 0 && static_cast<std::size_t>(value) < choices.size() ? value : -1;
  }
  const auto found = std::ranges::find(choices, value, &ValueItem::data);
  return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

std::int32_t CommandList::SteppedValue(CatalogueIndex index, int step) const {
  const std::int64_t lowest = Record(index).MinValue;
  const std::int64_t highest = Record(index).MaxValue;
  // Wide, because a settings file can bring any 32-bit value.
  const std::int64_t value = std::int64_t{CurrentValue(index)} + step;
  return static_cast<std::int32_t>(step < 0 ? std::min(std::max(value, lowest), highest)
                                            : std::max(std::min(value, highest), lowest));
}

bool CommandList::ReadTyped(CatalogueIndex index, std::string_view text,
                            std::int32_t& value) const {
  const double number = NumericValue(text);
  if (number < Record(index).MinValue || number > Record(index).MaxValue) return false;
  value = RoundToInt32(number);
  return true;
}

std::int16_t CommandList::WriteSource(CatalogueIndex index) const {
  return Record(index).PerSource ? NarrowToInt16(SetupSource()) : kFirstSourceCode;
}

}  // namespace kalde2
