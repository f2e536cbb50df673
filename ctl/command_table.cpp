#include "ctl/command_table.h"

#include <algorithm>
#include <array>

#include "ctl/commands.h"

namespace kalde2 {
namespace {

constexpr auto kCommonOptions = std::to_array<OptionRow>({
    {"port", "PORT",
     "Port number as in the panel, or path of a device; the port that the panel used last unless "
     "given."},
    {"baud", "BAUD", "Baud rate; the rate that the panel used last unless given."},
    {"json", nullptr, "Print results as JSON."},
});

constexpr OptionRow kSource = {
    "source", "INPUT",
    "Input whose values are meant: its name, or its source code; the one that is set up unless "
    "given."};

constexpr auto kListOptions =
    std::to_array<OptionRow>({kSource, {"all", nullptr, "List those that do not apply now, too."}});
constexpr auto kValueOptions = std::to_array<OptionRow>({kSource});
constexpr auto kWriteOptions = std::to_array<OptionRow>({
    {"dry-run", nullptr, "Send nothing; print what would be sent."},
    {"changed", nullptr, "Read the unit first and send only what differs."},
    {"any-type", nullptr, "Take the file of another product type, too."},
});
constexpr auto kTraceOptions = std::to_array<OptionRow>({
    {"as", "NUMBER", "Port number that the panel opens. A number that is taken is not replaced."},
    {"record", "FILE", "Keep what goes over the line, times included, in this file."},
});
constexpr auto kResetOptions =
    std::to_array<OptionRow>({{"yes", nullptr, "Really reset the unit."}});

constexpr const char* kParameterWords =
    "PARAMETER is a name as \"list\" has it, in capitals or small letters, or a beginning that no "
    "other name has, or an address, decimal or in hex after 0x.";

// clang-format off
constexpr auto kCommands = std::to_array<CommandRow>({
    {"ports", "", "List the serial ports of this computer",
     0, 0, Words::kNone, Needs::kNothing, {},
     "Prints number, device, whether it is in use, and description.",
     R"({"ports": [{"number", "device", "in_use", "description"}]})",
     RunPorts},
    {"info", "", "Tell which unit is connected",
     0, 0, Words::kNone, Needs::kUnit, {},
     "Prints product type, model, what it offers and its inputs. An input that does not tell of "
     "itself is silent, and counts as not fitted.",
     R"({"device", "baud", "type", "model", "parameters", "offers": {"keyer", "lock", "fade", "overscan", "autoset"}, "inputs": [{"source", "name", "state": "fitted"|"silent"|"refused"}]})",
     RunInfo},
    {"list", "[WORD]", "List the parameters that apply now, with the unit's values",
     0, 1, Words::kParameters, Needs::kUnit, kListOptions,
     "Prints address, name, value and what it takes, of all parameters or of those with WORD in "
     "their names.",
     R"({"parameters": [{"address", "name", "source", "input", "applies", "value", "label", "minimum", "maximum", "choices": [{"value", "label"}]}]})",
     RunList},
    {"get", "PARAMETER...", "Print values, one a line",
     1, kAnyNumber, Words::kParameters, Needs::kUnit, kValueOptions,
     kParameterWords,
     R"({"parameters": [{"address", "name", "source", "input", "value", "label"}]})",
     RunGet},
    {"set", "PARAMETER=VALUE...", "Change values, and print what the unit then holds",
     1, kAnyNumber, Words::kAssignments, Needs::kUnit, kValueOptions,
     "VALUE is a number or the label of a choice. +N and -N are steps from the present value and end "
     "with the range; where a parameter has negative values they are numbers. PARAMETER+=N and "
     "PARAMETER-=N are always steps. Nothing is sent before all of it has been checked. "
     "PARAMETER is a name as \"list\" has it, in capitals or small letters, or a beginning that no "
     "other name has, or an address, decimal or in hex after 0x.",
     R"({"parameters": [{"address", "name", "source", "input", "sent", "value", "label"}]})",
     RunSet},
    {"read", "FILE", "Read all values of the unit and save them",
     1, 1, Words::kFiles, Needs::kUnit, {},
     "The file is the one that the panel saves after Clone > Read. Values that the unit refuses are "
     "named, stand in the file as 0, and end the command with status 5. A file is replaced only when "
     "all has been read.",
     R"({"file", "type", "values", "refused": [{"address", "name", "source", "input"}]})",
     RunRead},
    {"write", "FILE", "Send all values of a file to the unit",
     1, 1, Words::kFiles, Needs::kNothing, kWriteOptions,
     "Sends what the panel's Load and Clone > Write send, then reads it back and names each value that "
     "the unit did not take. What the file lacks is sent as 0; with --changed it is left as it is.",
     R"({"file", "dry_run", "sent": [{"address", "name", "source", "input", "value", "label"}], "not_taken": [{"address", "name", "source", "input", "sent": {"value", "label"}, "held": {"value", "label"}}]})",
     RunWrite},
    {"compare", "FILE [FILE]", "Tell what differs between the unit and a file, or two files",
     1, 2, Words::kFiles, Needs::kNothing, {},
     "Prints a line for each difference and writes nothing. Two files need no unit.",
     R"({"left": {"file", "type"}, "right": {"file", "type"}, "differences": [{"address", "name", "source", "input", "left": {"value", "label"}, "right": {"value", "label"}}]})",
     RunCompare},
    {"resolutions", "[FILE]", "Fetch the unit's resolutions",
     0, 1, Words::kFiles, Needs::kUnit, {},
     "Prints them, or writes the resolution data file of the panel.",
     R"({"file", "resolutions": [{"slot", "name", "flags", "width", "height", "horizontal_frequency", "total_width", "total_height", "horizontal_sync", "vertical_sync", "horizontal_position", "vertical_position", "polarities"}]})",
     RunResolutions},
    {"autoset", "", "Let the unit adjust itself to its RGB source",
     0, 0, Words::kNone, Needs::kUnit, {},
     "Waits for the end, and prints what the unit has found.",
     R"({"finished", "parameters": [{"address", "name", "source", "input", "value", "label"}]})",
     RunAutoset},
    {"fade", "in|out", "Fade the picture in or out",
     1, 1, Words::kChoice, Needs::kNothing, {}, "", R"({"done": true})",
     RunFade},
    {"store", "", "Let the unit keep its settings over a power cut",
     0, 0, Words::kNone, Needs::kUnit, {}, "", R"({"done": true})",
     RunStore},
    {"reset", "", "Reset the unit to its default condition",
     0, 0, Words::kNone, Needs::kNothing, kResetOptions,
     "Clears the unit's non-volatile memory.", R"({"done": true})",
     RunReset},
    {"watch", "", "Print what the unit says unasked, until Ctrl+C",
     0, 0, Words::kNone, Needs::kUnit, {},
     "With --json each line is a document.",
     R"({"time", "frame", "address", "name", "source", "input", "value", "label"})",
     RunWatch},
    {"trace", "", "Stand between a panel and the unit, and print what they say, until Ctrl+C",
     0, 0, Words::kNone, Needs::kNothing, kTraceOptions,
     "The panel opens port NUMBER instead of the unit's. All is passed on at once and unchanged. Prints "
     "the seconds since the start, -> for the panel or <- for the unit, the frame and what it means. "
     "With --json each line is a document; its time is in microseconds. \"kalde2-unit --replay FILE\" "
     "answers as the unit did.",
     R"({"time", "direction": "to unit"|"from unit", "frame", "meaning"})",
     RunTrace},
});
// clang-format on

static_assert(std::ranges::all_of(kCommands, [](const CommandRow& row) {
  return std::ranges::count(kCommands, row.name, &CommandRow::name) == 1 && row.least <= row.most;
}));

}  // namespace

std::span<const CommandRow> Commands() {
  return kCommands;
}

const CommandRow* FindCommand(std::string_view name) {
  const auto* const row = std::ranges::find(kCommands, name, &CommandRow::name);
  return row == kCommands.end() ? nullptr : row;
}

std::span<const OptionRow> CommonOptions() {
  return kCommonOptions;
}

}  // namespace kalde2
