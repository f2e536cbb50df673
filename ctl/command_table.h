#pragma once

#include <span>
#include <string_view>

#include "ctl/command.h"

namespace kalde2 {

/// All commands, in the order of the help.
[[nodiscard]] std::span<const CommandRow> Commands();

/// The row of a command, nullptr where there is none.
[[nodiscard]] const CommandRow* FindCommand(std::string_view name);

/// The options that every command takes, before its name or behind.
[[nodiscard]] std::span<const OptionRow> CommonOptions();

}  // namespace kalde2
