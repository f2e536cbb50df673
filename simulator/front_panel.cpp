#include "simulator/front_panel.h"

#include <algorithm>
#include <iterator>

#include "simulator/unit_addresses.h"

namespace kalde2 {
namespace {

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

std::optional<int> AddressOf(std::string_view word) {
  return NumberIn(word, kFirstParameter, kLastParameter);
}

std::optional<int> SourceOf(std::string_view word) {
  return NumberIn(word, 0, kSourceCodes - 1);
}

std::optional<int> ValueOf(std::string_view word) {
  return NumberIn(word, -0x800000, 0x7FFFFF);
}

FrontPanelResult Say(std::string text) {
  return {std::move(text), {}, LineOrder::kNone, 0};
}

}  // namespace

struct FrontPanel::Command {
  std::string_view name;
  std::string_view parameters;
  std::size_t least;  ///< words with the name
  std::size_t most;
  std::string_view description;
  FrontPanelResult (FrontPanel::*run)(const Words& words);
};

const FrontPanel::Command FrontPanel::kCommands[] = {
    {"set", "ADDRESS VALUE [SOURCE]", 3, 4, "change a value and say so on the line",
     &FrontPanel::Set},
    {"get", "ADDRESS [SOURCE]", 2, 3, "show a value", &FrontPanel::Get},
    {"source", "SOURCE", 2, 2, "change the source that is set up", &FrontPanel::Source},
    {"fault", "[NAME[=NUMBERS]|none]", 1, 2, "add a fault, clear all, or list them",
     &FrontPanel::Fault},
    {"baud", "RATE|any", 2, 2, "run the line at another rate", &FrontPanel::Baud},
    {"hang-up", "", 1, 1, "pull the plug", &FrontPanel::HangUp},
    {"replug", "", 1, 1, "plug in again, on a new device", &FrontPanel::Replug},
    {"help", "", 1, 1, "this list", &FrontPanel::Help},
    {"quit", "", 1, 1, "end the unit", &FrontPanel::Quit},
};

FrontPanelResult FrontPanel::Execute(std::string_view line) {
  const Words words = SplitWords(line);
  if (words.empty()) return {};
  const auto command =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&](const Command& candidate) { return candidate.name == words[0]; });
  if (command == std::end(kCommands)) {
    return Say("no command \"" + std::string(words[0]) + "\"; try help");
  }
  if (words.size() < command->least || words.size() > command->most) {
    return Say("use: " + std::string(command->name) + ' ' + std::string(command->parameters));
  }
  return (this->*command->run)(words);
}

FrontPanelResult FrontPanel::Set(const Words& words) {
  const std::optional<int> address = AddressOf(words[1]);
  const std::optional<int> value = ValueOf(words[2]);
  if (!address || !value) return Say("set needs an address of 130..413 and a 24-bit value");
  const int current =
      unit_.Catalogue().IsPerSource(IndexOf(*address)) ? unit_.CurrentSource() : kFirstSourceCode;
  const std::optional<int> source = words.size() > 3 ? SourceOf(words[3]) : current;
  if (!source) return Say("a source is 0..255");
  return {{}, unit_.ChangeAtFrontPanel(*address, *source, *value), LineOrder::kNone, 0};
}

FrontPanelResult FrontPanel::Get(const Words& words) {
  const std::optional<int> address = AddressOf(words[1]);
  if (!address) return Say("get needs an address of 130..413");
  const std::optional<int> source = words.size() > 2 ? SourceOf(words[2]) : unit_.CurrentSource();
  if (!source) return Say("a source is 0..255");
  return Say(std::to_string(unit_.Value(*address, *source)));
}

FrontPanelResult FrontPanel::Source(const Words& words) {
  const std::optional<int> source = SourceOf(words[1]);
  if (!source) return Say("a source is 0..255");
  return {{},
          unit_.ChangeAtFrontPanel(addresses::kSetupSource, kFirstSourceCode, *source),
          LineOrder::kNone,
          0};
}

FrontPanelResult FrontPanel::Fault(const Words& words) {
  if (words.size() > 1) {
    if (const auto problem = unit_.Faults().Add(words[1])) return Say(*problem);
  }
  return Say("faults: " + unit_.Faults().Describe());
}

FrontPanelResult FrontPanel::Baud(const Words& words) {
  constexpr int kFastest = 4000000;
  const std::optional<int> baud = words[1] == "any" ? 0 : NumberIn(words[1], 1, kFastest);
  if (!baud) return Say("a rate is a number of bits a second, or any");
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
  constexpr std::size_t kUsageWidth = 31;
  std::string text = "commands:\n";
  for (const Command& command : kCommands) {
    std::string usage = std::string(command.name) + ' ' + std::string(command.parameters);
    usage.resize(std::max(kUsageWidth, usage.size() + 1), ' ');
    text += "  " + usage + std::string(command.description) + '\n';
  }
  return Say(text + "faults:\n" + FaultHelp());
}

}  // namespace kalde2
