#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/mod_active_dts.h"
#include "model/value_names.h"
#include "simulator/unit_frames.h"

namespace kalde2 {

/// Says what frames mean, in the words of the panel: names of parameters and of their values.
class UnitWords {
 public:
  /// @param catalogue entries of the product, must outlive this object
  UnitWords(const ParamCatalogue& catalogue, std::int32_t product_type,
            const std::vector<int>& fitted_sources);

  /// For example "sets Lock mode [266] to 2 (Lock+Mix)".
  [[nodiscard]] std::string OfRequest(const UnitRequest& request) const;

  /// For example "Lock mode [266] is 2 (Lock+Mix)", "refused" or "no whole frame".
  [[nodiscard]] std::string OfReply(std::string_view bytes) const;

 private:
  /// The record of a parameter that the product lists, nullptr for any other address.
  [[nodiscard]] const ParamRecord* ListedRecord(int address) const;
  [[nodiscard]] std::string Parameter(int address, int source) const;
  [[nodiscard]] std::string Value(int address, std::int32_t value) const;
  [[nodiscard]] std::string ValueLabel(int address, std::int32_t value) const;
  [[nodiscard]] std::string RangeRemark(int address, std::int32_t value) const;

  const ParamCatalogue& catalogue_;
  ValueNames value_names_;
};

}  // namespace kalde2
