#pragma once

#include <QCommandLineParser>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/console.h"
#include "ctl/exit_status.h"
#include "ctl/unit_access.h"
#include "link/clock.h"
#include "link/serial_port.h"

namespace kalde2 {

/// What a command works with.
struct CommandContext {
  std::vector<std::string> arguments;  ///< behind the command's name, in UTF-8
  const QCommandLineParser& options;
  bool json;  ///< results are one JSON document
  PortChoice choice;
  SerialPort& port;  ///< closed; opened through `unit`, or by a command that does without a unit
  Clock& clock;
  UnitAccess& unit;
  Console& console;

  [[nodiscard]] bool IsSet(const char* option) const {
    return options.isSet(QLatin1String(option));
  }
  [[nodiscard]] std::string Value(const char* option) const {
    return options.value(QLatin1String(option)).toStdString();
  }
};

/// An option of a command, or of all of them.
struct OptionRow {
  const char* name;
  const char* value_name;  ///< nullptr where it takes no value
  const char* help;        ///< one sentence
};

/// What is opened before a command's handler runs.
enum class Needs : std::uint8_t {
  kNothing,  ///< or what the handler opens itself
  kUnit,
};

/// What the words behind a command are, for the completion.
enum class Words : std::uint8_t { kNone, kParameters, kAssignments, kFiles, kChoice };

/// A command: one row of the table that parsing, help, man page and completion are made of.
struct CommandRow {
  std::string_view name;
  const char* arguments;  ///< as the synopsis has them: "PARAMETER..."
  const char* help;       ///< one sentence
  int least;              ///< arguments
  int most;
  Words words;
  Needs needs;
  std::span<const OptionRow> options;
  const char* details;  ///< further lines of the command's help
  const char* json;     ///< the form of the document that --json prints
  ExitStatus (*run)(CommandContext& context);
};

/// No bound of the number of arguments.
inline constexpr int kAnyNumber = 1000;

}  // namespace kalde2
