#include "link/source_codes.h"

#include <algorithm>
#include <array>

namespace kalde2 {
namespace {

constexpr std::array<std::int16_t, 9> kSourceCodes = {16, 17, 18, 48, 49, 50, 64, 65, 66};

}  // namespace

std::int16_t SourceIndexToCode(int index) {
  const bool in_table = index >= 0 && index < static_cast<int>(kSourceCodes.size());
  return in_table ? kSourceCodes[static_cast<std::size_t>(index)] : std::int16_t{0};
}

int SourceCodeToIndex(int code) {
  const auto* const found = std::ranges::find(kSourceCodes, code);
  return found == kSourceCodes.end() ? 0 : static_cast<int>(found - kSourceCodes.begin());
}

}  // namespace kalde2
