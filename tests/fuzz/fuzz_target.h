#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "link/fault.h"

namespace kalde2 {

/// Feeds one input to the code of the target. What must hold is stated with `Require`; an exception
/// that leaves this function is a finding too. Each target defines it once.
void FuzzOne(std::string_view input);

/// Ends the run with a finding where something that must hold does not.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// Whether an act ends in a fault.
template <typename Act>
bool IsFault(Act act) {
  try {
    act();
    return false;
  } catch (const Fault&) {
    return true;
  }
}

/// The pieces of a text between separators, so that inputs can be written by hand: "F44|1041\r|"
/// has three pieces, the last of them empty.
inline std::vector<std::string_view> Pieces(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  for (std::size_t end = 0; (end = text.find(separator)) != std::string_view::npos;) {
    pieces.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  pieces.push_back(text);
  return pieces;
}

}  // namespace kalde2
