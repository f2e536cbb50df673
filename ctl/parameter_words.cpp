#include "ctl/parameter_words.h"

#include <algorithm>
#include <charconv>

#include "ctl/exit_status.h"
#include "files/builtin_resolutions.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

std::string InSmallLetters(std::string_view text) {
  std::string small(Trimmed(text));
  for (char& c : small) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return small;
}

std::string Joined(const std::vector<std::string>& words, std::string_view between) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += between;
    text += word;
  }
  return text;
}

std::vector<std::string> Labels(const std::vector<ValueItem>& choices) {
  std::vector<std::string> labels;
  for (const ValueItem& choice : choices) labels.push_back(choice.label);
  return labels;
}

[[noreturn]] void Refuse(const Parameter& parameter, std::string_view value) {
  throw CommandFault(ExitStatus::kUsage, parameter.name + " takes " + parameter.Takes() +
                                             ", not \"" + std::string(value) + '"');
}

bool HasSign(std::string_view text) {
  return text.starts_with('+') || text.starts_with('-');
}

}  // namespace

std::size_t FindName(std::string_view kind, std::string_view wanted,
                     const std::vector<std::string>& names) {
  const std::string beginning = InSmallLetters(wanted);
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string name = InSmallLetters(names[i]);
    if (name == beginning) return i;
    if (!beginning.empty() && name.starts_with(beginning)) found.push_back(i);
  }
  if (found.size() == 1) return found.front();
  const std::string what = std::string(kind) + " \"" + std::string(wanted) + '"';
  if (found.empty()) throw CommandFault(ExitStatus::kUsage, "there is no " + what);
  std::vector<std::string> candidates;
  for (const std::size_t place : found) candidates.push_back(names[place]);
  throw CommandFault(ExitStatus::kUsage, what + " may be " + Joined(candidates, " or "));
}

std::optional<std::int32_t> ReadWholeNumber(std::string_view text) {
  const bool is_negative = text.starts_with('-');
  if (HasSign(text)) text.remove_prefix(1);
  const bool is_hex = text.starts_with("0x") || text.starts_with("0X");
  if (is_hex) text.remove_prefix(2);
  if (text.empty() || HasSign(text)) return std::nullopt;
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, is_hex ? 16 : 10);
  if (error != std::errc() || stop != end) return std::nullopt;
  return is_negative ? -number : number;
}

Assignment SplitAssignment(std::string_view text) {
  const std::size_t sign = text.find('=');
  if (sign == std::string_view::npos || sign == 0) {
    throw CommandFault(ExitStatus::kUsage, '"' + std::string(text) + "\" is not PARAMETER=VALUE");
  }
  Assignment assignment;
  std::string_view parameter = text.substr(0, sign);
  if (parameter.ends_with('+')) assignment.kind = Assignment::Kind::kUp;
  if (parameter.ends_with('-')) assignment.kind = Assignment::Kind::kDown;
  if (assignment.kind != Assignment::Kind::kPlain) parameter.remove_suffix(1);
  assignment.parameter = parameter;
  assignment.value = Trimmed(text.substr(sign + 1));
  return assignment;
}

std::string Parameter::Label(std::int32_t value) const {
  const auto found = std::ranges::find(choices, value, &ValueItem::data);
  return found == choices.end() ? std::string() : found->label;
}

std::string Parameter::Shown(std::int32_t value) const {
  const std::string label = Label(value);
  return label.empty() ? std::to_string(value) : label;
}

std::string Parameter::Takes() const {
  const std::string range = std::to_string(minimum) + " to " + std::to_string(maximum);
  if (choices.empty()) return is_number ? range : "a choice that only the unit knows";
  // The names of the resolutions would fill the screen.
  if (is_number) return range + ", or the name of a resolution";
  return Joined(Labels(choices), ", ");
}

WantedValue ReadValue(const Parameter& parameter, const Assignment& assignment) {
  using Kind = Assignment::Kind;
  const std::string& text = assignment.value;
  const std::optional<std::int32_t> number = ReadWholeNumber(text);
  if (assignment.kind != Kind::kPlain) {
    if (!number || !parameter.is_number) Refuse(parameter, text);
    return {true, assignment.kind == Kind::kUp ? *number : -*number};
  }
  const auto is_label = [&](const ValueItem& choice) {
    return InSmallLetters(choice.label) == InSmallLetters(text);
  };
  const auto label = std::ranges::find_if(parameter.choices, is_label);
  if (label != parameter.choices.end()) return {false, label->data};
  if (number) {
    if (parameter.is_number && HasSign(text) && parameter.minimum >= 0) return {true, *number};
    const bool is_in_range =
        parameter.is_number && *number >= parameter.minimum && *number <= parameter.maximum;
    const bool is_choice = !text.starts_with('+') &&
                           std::ranges::count(parameter.choices, *number, &ValueItem::data) > 0;
    if (!is_in_range && !is_choice) Refuse(parameter, text);
    return {false, *number};
  }
  if (parameter.choices.empty() || text.empty()) Refuse(parameter, text);
  const auto begins = [&](const ValueItem& choice) {
    return InSmallLetters(choice.label).starts_with(InSmallLetters(text));
  };
  if (std::ranges::none_of(parameter.choices, begins)) Refuse(parameter, text);
  return {false, parameter.choices[FindName(parameter.name, text, Labels(parameter.choices))].data};
}

std::int32_t Stepped(const Parameter& parameter, std::int32_t present, std::int32_t step) {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(std::int64_t{present} + step, parameter.minimum, parameter.maximum));
}

std::vector<ValueItem> FittedInputs(const UnitModel& unit) {
  std::vector<ValueItem> inputs;
  for (std::size_t source = 0; source < kSources; ++source) {
    if (!unit.connectivity.SourceFitted[source]) continue;
    const auto name = static_cast<std::size_t>(unit.connectivity.SourceInfo[source].NameIndex);
    inputs.push_back({name < unit.input_names.size() ? unit.input_names[name] : std::string(),
                      static_cast<std::int32_t>(source)});
  }
  return inputs;
}

std::string InputName(const UnitModel& unit, int source) {
  const std::vector<ValueItem> inputs = FittedInputs(unit);
  const auto found = std::ranges::find(inputs, source, &ValueItem::data);
  return found == inputs.end() ? std::string() : found->label;
}

ParameterWords::ParameterWords(UnitModel& unit) : unit_(unit), list_(unit, resolutions_) {
  resolutions_.Reset(kBuiltinResolutions.size() - 1);
  for (std::size_t i = 0; i < resolutions_.Size(); ++i) {
    resolutions_.Record(i).Name = kBuiltinResolutions[i];
  }
}

CatalogueIndex ParameterWords::Find(std::string_view word) const {
  std::vector<std::string> names;
  const std::optional<std::int32_t> address = ReadWholeNumber(word);
  for (const CatalogueIndex index : All()) {
    if (address && AddressOf(index) == *address) return index;
    names.push_back(list_.Record(index).Name);
  }
  try {
    return All()[FindName("parameter", word, names)];
  } catch (const CommandFault& fault) {
    throw CommandFault(fault.Status(),
                       std::string(fault.what()) + "; \"kalde2ctl list --all\" names them all");
  }
}

Parameter ParameterWords::Describe(CatalogueIndex index) const {
  const ParamRecord& record = list_.Record(index);
  Parameter parameter{.index = index,
                      .name = record.Name,
                      .is_per_source = record.PerSource,
                      .is_number = !record.HasList,
                      .minimum = record.MinValue,
                      .maximum = record.MaxValue,
                      .choices = {}};
  if (index == CommandList::kResolution) {
    // The range is that of the line, which counts them from 1; everybody else does from 0.
    --parameter.minimum;
    --parameter.maximum;
    for (const ResolutionRecord& resolution : resolutions_.Records()) {
      parameter.choices.push_back({resolution.Name, 0});
    }
  } else if (record.HasList) {
    parameter.choices = list_.Choices(index);
  }
  for (std::size_t i = 0; i < parameter.choices.size(); ++i) {
    ValueItem& choice = parameter.choices[i];
    choice.label = Trimmed(choice.label);
    if (!record.HasList || !record.UseItemData) choice.data = static_cast<std::int32_t>(i);
  }
  return parameter;
}

}  // namespace kalde2
