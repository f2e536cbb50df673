#pragma once

#include <array>
#include <string>

namespace kalde2 {

/// Names of the inputs, by the name index that the unit reports for a source.
using InputNames = std::array<std::string, 256>;

/// Fills the table: 14 groups of 16 ("RGB 1" .. "OUT 16"), "None" up to 253, and two empty texts.
void LoadInputNames(InputNames& names);

}  // namespace kalde2
