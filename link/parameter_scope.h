#pragma once

namespace kalde2 {

/// What the value store has to know of the catalogue: which parameters the unit keeps per source.
class ParameterScope {
 public:
  virtual ~ParameterScope() = default;

  /// True when the unit keeps one value of the parameter for each input source.
  /// @param index catalogue index 0..283 @throws Fault outside that range
  [[nodiscard]] virtual bool IsPerSource(int index) const = 0;
};

}  // namespace kalde2
