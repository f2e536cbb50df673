#pragma once

#include <cstdint>

namespace kalde2 {

/// Input source code on the wire for a source index: 0..8 give 16, 17, 18, 48, 49, 50, 64, 65, 66,
/// any other index 0.
[[nodiscard]] std::int16_t SourceIndexToCode(int index);

/// Source index 0..8 for a source code; any code that is not in the table gives 0.
[[nodiscard]] int SourceCodeToIndex(int code);

}  // namespace kalde2
