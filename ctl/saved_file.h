#pragma once

#include <string>
#include <string_view>

namespace kalde2 {

/// Puts a text in place of a file, or makes it: all of it or, on any error, nothing. What is no
/// plain file (a device, a pipe) is written to as it is.
/// @param path in UTF-8
/// @throws CommandFault
void SaveWhole(const std::string& path, std::string_view text);

}  // namespace kalde2
