#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <string>
#include <vector>

#include "ctl/command.h"

namespace kalde2 {

/// What a command line asks for.
struct Invocation {
  const CommandRow* command = nullptr;  ///< nullptr where only `text` is asked for
  std::vector<std::string> arguments;   ///< in UTF-8
  std::string text;                     ///< help or version
};

/// Reads the words of a command line, the program's name first. The options are in the parser then.
/// @throws CommandFault where they are not understood
[[nodiscard]] Invocation ReadCommandLine(const QStringList& words, QCommandLineParser& parser);

}  // namespace kalde2
