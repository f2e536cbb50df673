#include "simulator/front_panel.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <span>

#include "simulator/unit_addresses.h"

namespace kalde2 {
namespace {

/// Names have several words.
constexpr std::size_t kAnyCount = std::numeric_limits<std::size_t>::max();

std::vector<std::string_view> SplitWords(std::string_view line) {
  constexpr std::string_view kBlanks = " \t\r";
  std::vector<std::string_view> words;
  while (true) {
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    if (line.empty()) return words;
    words.push_back(line.substr(0, line.find_first_of(kBlanks)));
    line.remove_prefix(words.back().size());
  }
}

std::optional<int> NumberIn(std::string_view word, int least, int most) {
  const std::optional<int> number = ReadNumber(word);
  return number && *number >= least && *number <= most ? number : std::nullopt;
}

std::optional<int> SourceOf(std::string_view word) {
  return NumberIn(word, 0, kSourceCodes - 1);
}

std::optional<int> ValueOf(std::string_view word) {
  return NumberIn(word, -0x800000, 0x7FFFFF);
}

std::string Joined(std::span<const std::string_view> words) {
  std::string text;
  for (const std::string_view word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

void PadTo(std::string& text, std::size_t width) {
  text.resize(std::max(width, text.size() + 1), ' ');
}

FrontPanelResult Say(std::string text) {
  return {std::move(text), {}, LineOrder::kNone, 0};
}

}  // namespace

struct FrontPanel::Command {
  std::string_view name;
  std::string_view other_name;  ///< empty where there is none
  std::string_view parameters;
  std::size_t least;  ///< words with the name
  std::size_t most;
  std::string_view description;
  FrontPanelResult (FrontPanel::*run)(const Words& words);

  [[nodiscard]] std::string Usage() const {
    return parameters.empty() ? std::string(name)
                              : std::string(name) + ' ' + std::string(parameters);
  }
};

const FrontPanel::Command FrontPanel::kCommands[] = {
    {"list", "", "[TEXT]", 1, kAnyCount, "show all parameters, or those with TEXT in their names",
     &FrontPanel::List},
    {"set", "", "PARAMETER VALUE [SOURCE]", 3, kAnyCount, "change a value and say so on the line",
     &FrontPanel::Set},
    {"get", "", "PARAMETER [SOURCE]", 2, kAnyCount, "show a value", &FrontPanel::Get},
    {"source", "", "SOURCE", 2, 2, "change the source that is set up", &FrontPanel::Source},
    {"fault", "", "[NAME[=NUMBERS]|none]", 1, kAnyCount, "add a fault, clear all, or list them",
     &FrontPanel::Fault},
    {"baud", "", "RATE|any", 2, 2, "run the line at another rate", &FrontPanel::Baud},
    {"hang-up", "", "", 1, 1, "pull the plug", &FrontPanel::HangUp},
    {"replug", "", "", 1, 1, "plug in again, on a new device", &FrontPanel::Replug},
    {"help", "?", "", 1, 1, "this list", &FrontPanel::Help},
    {"quit", "exit", "", 1, 1, "end the unit", &FrontPanel::Quit},
};

FrontPanelResult FrontPanel::Execute(std::string_view line) {
  const Words words = SplitWords(line);
  if (words.empty()) return {};
  const auto* const command = std::ranges::find_if(kCommands, [&](const Command& candidate) {
    return candidate.name == words[0] || candidate.other_name == words[0];
  });
  if (command == std::end(kCommands)) {
    return Say("no command \"" + std::string(words[0]) + "\"; try help");
  }
  if (words.size() < command->least || words.size() > command->most) {
    return Say("use: " + command->Usage());
  }
  return (this->*command->run)(words);
}

std::optional<FrontPanel::Parameter> FrontPanel::ParameterIn(const Words& words) const {
  for (std::size_t end = words.size(); end > 1; --end) {
    const std::string text = Joined(std::span(words).subspan(1, end - 1));
    if (const std::optional<int> address = unit_.FindAddress(text)) {
      return Parameter{*address, {words.begin() + static_cast<std::ptrdiff_t>(end), words.end()}};
    }
  }
  return std::nullopt;
}

/// The numbers behind a name that is wrong are no part of it.
FrontPanelResult FrontPanel::SayNoParameter(const Words& words) {
  std::span name = std::span(words).subspan(1);
  while (name.size() > 1 && ReadNumber(name.back())) name = name.first(name.size() - 1);
  return Say("there is no parameter \"" + Joined(name) +
             "\"; use an address of 130..413 or a name, list shows them all");
}

FrontPanelResult FrontPanel::SayNoSource() const {
  std::string fitted;
  for (const int source : unit_.FittedSources()) {
    fitted += (fitted.empty() ? "" : ", ") + unit_.Words().Value(addresses::kSetupSource, source);
  }
  return Say("a source is 0..255; fitted: " + (fitted.empty() ? "none" : fitted));
}

FrontPanelResult FrontPanel::List(const Words& words) {
  const std::string wanted = InLowerCase(Joined(std::span(words).subspan(1)));
  std::string text;
  for (const int address : unit_.Words().NamedAddresses()) {
    if (InLowerCase(unit_.Words().Name(address)).find(wanted) == std::string::npos) continue;
    if (!text.empty()) text += '\n';
    text += ListLine(address);
  }
  return Say(text.empty() ? "no parameter has \"" + wanted + "\" in its name" : text);
}

/// "  182  Left shift              0  [-120..120]  of source 16".
std::string FrontPanel::ListLine(int address) const {
  constexpr std::size_t kNameEnd = 32;
  const int source = unit_.CurrentSource();
  std::string line =
      "  " + std::to_string(address) + "  " + std::string(unit_.Words().Name(address));
  PadTo(line, kNameEnd);
  line += unit_.Words().Value(address, unit_.Value(address, source));
  const std::string range = unit_.Words().Range(address);
  if (!range.empty()) line += "  [" + range + ']';
  if (IsPerSource(address)) line += "  of source " + std::to_string(source);
  return line;
}

bool FrontPanel::IsPerSource(int address) const {
  return unit_.Catalogue().IsPerSource(IndexOf(address));
}

FrontPanelResult FrontPanel::Set(const Words& words) {
  const std::optional<Parameter> parameter = ParameterIn(words);
  if (!parameter) return SayNoParameter(words);
  const auto& [address, rest] = *parameter;
  if (rest.empty() || rest.size() > 2) return Say("use: set PARAMETER VALUE [SOURCE]");
  const std::optional<int> value = ValueOf(rest[0]);
  if (const auto* special = FindSpecial(address); special != nullptr && special->is_read_only) {
    return Say(std::string(special->name) + " can only be read");
  }
  if (!value) return Say("a value is -8388608..8388607, not \"" + std::string(rest[0]) + '"');
  const int current = IsPerSource(address) ? unit_.CurrentSource() : kFirstSourceCode;
  const std::optional<int> source = rest.size() > 1 ? SourceOf(rest[1]) : current;
  if (!source) return SayNoSource();
  return {{}, unit_.ChangeAtFrontPanel(address, *source, *value), LineOrder::kNone, 0};
}

FrontPanelResult FrontPanel::Get(const Words& words) {
  const std::optional<Parameter> parameter = ParameterIn(words);
  if (!parameter) return SayNoParameter(words);
  const auto& [address, rest] = *parameter;
  if (rest.size() > 1) return Say("use: get PARAMETER [SOURCE]");
  const std::optional<int> source = rest.empty() ? unit_.CurrentSource() : SourceOf(rest[0]);
  if (!source) return SayNoSource();
  return Say(std::to_string(unit_.Value(address, *source)));
}

FrontPanelResult FrontPanel::Source(const Words& words) {
  const std::optional<int> source = SourceOf(words[1]);
  if (!source) return SayNoSource();
  return {{},
          unit_.ChangeAtFrontPanel(addresses::kSetupSource, kFirstSourceCode, *source),
          LineOrder::kNone,
          0};
}

FrontPanelResult FrontPanel::Fault(const Words& words) {
  if (words.size() > 1) {
    const std::string fault = Joined(std::span(words).subspan(1));
    if (const auto problem = unit_.AddFault(fault)) return Say(*problem);
  }
  return Say("faults: " + unit_.Faults().Describe());
}

FrontPanelResult FrontPanel::Baud(const Words& words) {
  constexpr int kFastest = 4000000;
  const std::optional<int> baud = words[1] == "any" ? 0 : NumberIn(words[1], 1, kFastest);
  if (!baud) return Say("a rate is 1..4000000 bits a second, or any");
  return {"line runs at " + std::string(words[1]), {}, LineOrder::kSetBaud, *baud};
}

FrontPanelResult FrontPanel::HangUp(const Words&) {
  return {{}, {}, LineOrder::kHangUp, 0};
}

FrontPanelResult FrontPanel::Replug(const Words&) {
  return {{}, {}, LineOrder::kReplug, 0};
}

FrontPanelResult FrontPanel::Quit(const Words&) {
  return {{}, {}, LineOrder::kQuit, 0};
}

FrontPanelResult FrontPanel::Help(const Words&) {
  constexpr std::size_t kUsageEnd = 33;
  std::string text = "commands:\n";
  for (const Command& command : kCommands) {
    std::string line = "  " + command.Usage();
    if (!command.other_name.empty()) line += ", " + std::string(command.other_name);
    PadTo(line, kUsageEnd);
    text += line + std::string(command.description) + '\n';
  }
  text += "PARAMETER and ADDRESS are an address or a name, as list shows them.\n";
  return Say(text + "faults:\n" + FaultHelp());
}

}  // namespace kalde2
