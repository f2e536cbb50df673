#pragma once

#include "link/addresses.h"

namespace kalde2 {

/// What the value store has to know of the catalogue: which parameters the unit keeps per source.
class ParameterScope {
 public:
  virtual ~ParameterScope() = default;

  /// True when the unit keeps one value of the parameter for each input source.
  /// @throws Fault for an index that the catalogue does not have
  [[nodiscard]] virtual bool IsPerSource(CatalogueIndex index) const = 0;
};

}  // namespace kalde2
