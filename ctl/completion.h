#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kalde2 {

/// The first word of a command line with which a shell asks; `Completions` answers the others, one
/// a line.
inline constexpr std::string_view kCompletionRequest = "--complete";

/// What a shell may put for the last of the words of a command line, which is unfinished or empty:
/// commands, options, the names of all products' parameters. Capitals and small letters count as
/// the same. Nothing where anything may stand there, or a file.
/// @param words behind the program's name
[[nodiscard]] std::vector<std::string> Completions(const std::vector<std::string>& words);

}  // namespace kalde2
