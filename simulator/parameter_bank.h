#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/mod_active_dts.h"
#include "simulator/unit_addresses.h"

namespace kalde2 {

/// The values of a unit: one for each address, and one for each source code where the product
/// keeps the parameter per source. Values are in the panel's terms (address 131: list position).
class ParameterBank {
 public:
  /// Starts with the factory values.
  ParameterBank(const ParamCatalogue& catalogue, const std::vector<int>& fitted_sources);

  /// The address must lie in 130..413 and the source in 0..255 in all of the following.
  [[nodiscard]] std::int32_t Get(int address, int source) const;
  void Set(int address, int source, std::int32_t value);

  [[nodiscard]] bool IsPerSource(int address) const;

  /// Puts all values back to those of the factory.
  void Reset();

 private:
  [[nodiscard]] std::int32_t FactoryValue(int address) const;
  [[nodiscard]] std::size_t Column(int address, int source) const;

  static constexpr std::size_t kParameters = kLastParameter - kFirstParameter + 1;

  const ParamCatalogue& catalogue_;
  int first_source_;
  std::array<std::vector<std::int32_t>, kParameters> values_;  ///< one value or one per source
};

}  // namespace kalde2
