#include "simulator/parameter_bank.h"

#include <algorithm>

namespace kalde2 {
namespace {

struct FactorySetting {
  int address;
  std::int32_t value;
};

// What differs from "0, or the nearest value in the range".
constexpr std::array kFactorySettings = std::to_array<FactorySetting>({
    {131, 27},               // "1024 x 768 60Hz"
    {134, 100},              // zoom and shrink of both axes, in per cent
    {135, 100}, {145, 16},   // middle of the pixel
    {146, 1},                // low flicker reduction
    {159, 50},               // pans centred
    {160, 50},  {161, 3},    // smoothing by itself
    {163, 2},                // blue on source loss
    {173, 60},               // output centred
    {174, 60},  {176, 120},  // keyer at black
    {177, 120}, {178, 32},  {179, 134}, {180, 134}, {184, 1},  // de-interlace by itself
    {185, 90},                         // saturation, brightness and contrast in the middle
    {187, 90},  {188, 90},  {193, 8},  // RGB type by itself
    {197, 100}, {198, 100}, {199, 100}, {218, 50},  // window centred
    {219, 50},  {259, 100}, {260, 100}, {261, 100}, {262, 100}, {271, 100},
    {316, 128},                                                            // black background
    {317, 128}, {392, 8},   {395, 64},  {396, 64},  {397, 8},   {403, 1},  // faded in
    {408, 50},  {409, 2},   {413, 50},
});

}  // namespace

ParameterBank::ParameterBank(const ParamCatalogue& catalogue,
                             const std::vector<int>& fitted_sources)
    : catalogue_(catalogue),
      first_source_(fitted_sources.empty() ? kFirstSourceCode : fitted_sources.front()) {
  Reset();
}

bool ParameterBank::IsPerSource(int address) const {
  return catalogue_.Record(IndexOf(address)).PerSource;
}

std::size_t ParameterBank::Column(int address, int source) const {
  return static_cast<std::size_t>(IsPerSource(address) ? source : 0);
}

std::int32_t ParameterBank::Get(int address, int source) const {
  return values_.at(static_cast<std::size_t>(address - kFirstParameter))
      .at(Column(address, source));
}

void ParameterBank::Set(int address, int source, std::int32_t value) {
  values_.at(static_cast<std::size_t>(address - kFirstParameter)).at(Column(address, source)) =
      value;
}

void ParameterBank::Reset() {
  for (int address = kFirstParameter; address <= kLastParameter; ++address) {
    const std::size_t columns = IsPerSource(address) ? kSourceCodes : 1;
    values_[static_cast<std::size_t>(address - kFirstParameter)].assign(columns,
                                                                        FactoryValue(address));
  }
}

std::int32_t ParameterBank::FactoryValue(int address) const {
  if (address == addresses::kMainInput || address == addresses::kSetupSource ||
      address == addresses::kLockSource) {
    return first_source_;
  }
  const auto setting =
      std::find_if(kFactorySettings.begin(), kFactorySettings.end(),
                   [&](const FactorySetting& candidate) { return candidate.address == address; });
  const std::int32_t value = setting == kFactorySettings.end() ? 0 : setting->value;
  const ParamRecord& record = catalogue_.Record(IndexOf(address));
  if (!record.Active || record.HasList) return value;
  return std::clamp<std::int32_t>(value, record.MinValue, record.MaxValue);
}

}  // namespace kalde2
