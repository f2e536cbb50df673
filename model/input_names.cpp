#include "model/input_names.h"

#include <string_view>

namespace kalde2 {
namespace {

constexpr std::size_t kGroupSize = 16;

constexpr std::array<std::string_view, 14> kGroups = {"RGB",   "YUV",    "DVI-D", "CV",     "YC",
                                                      "SDI",   "DVI-I",  "S2-PC", "S2-DVI", "S2-CV",
                                                      "S2-YC", "S2-SDI", "TC",    "OUT"};

constexpr std::size_t kFirstNone = kGroups.size() * kGroupSize;
constexpr std::size_t kFirstEmpty = 254;
constexpr std::size_t kSecondYuv = 17;

}  // namespace

void LoadInputNames(InputNames& names) {
  names.fill("");
  for (std::size_t i = 0; i < kFirstNone; ++i) {
    names[i] = std::string(kGroups[i / kGroupSize]) + " " + std::to_string(i % kGroupSize + 1);
  }
  names[kSecondYuv] = "YUV2";  // without the blank, as the unit's own labels have it
  for (std::size_t i = kFirstNone; i < kFirstEmpty; ++i) names[i] = "None";
}

}  // namespace kalde2
