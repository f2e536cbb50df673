#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/mod_active_dts.h"
#include "model/value_names.h"
#include "simulator/unit_frames.h"

namespace kalde2 {

/// The text with ASCII capitals made small: users need not heed the case of names.
[[nodiscard]] std::string InLowerCase(std::string_view text);

/// The words of the panel: names of parameters and of their values, and what frames mean in them.
class UnitWords {
 public:
  /// @param catalogue entries of the product, must outlive this object
  UnitWords(const ParamCatalogue& catalogue, std::int32_t product_type,
            const std::vector<int>& fitted_sources);

  /// For example "sets Lock mode [266] to 2 (Lock+Mix)".
  [[nodiscard]] std::string OfRequest(const UnitRequest& request) const;

  /// For example "asks for page 0 of resolution slot 3".
  [[nodiscard]] static std::string OfSlotQuery(const SlotQuery& query);

  /// For example "Lock mode [266] is 2 (Lock+Mix)", "refused" or "no whole frame".
  [[nodiscard]] std::string OfReply(std::string_view bytes) const;

  /// Addresses that have a name: in the order of the panel's command list, then the others.
  [[nodiscard]] std::vector<int> NamedAddresses() const;

  /// For example "Lock mode"; "(not listed)" for an address without a name.
  [[nodiscard]] std::string_view Name(int address) const;

  /// For example "2 (Lock+Mix)", or "2" where the value has no name.
  [[nodiscard]] std::string Value(int address, std::int32_t value) const;

  /// The values that a parameter takes, for example "-120..120"; empty where they are names, and
  /// for an address that the product does not list.
  [[nodiscard]] std::string Range(int address) const;

  /// The address with a name, whatever the case of its letters.
  [[nodiscard]] std::optional<int> FindName(std::string_view name) const;

 private:
  /// The record of a parameter that the product lists, nullptr for any other address.
  [[nodiscard]] const ParamRecord* ListedRecord(int address) const;
  [[nodiscard]] std::string Parameter(int address, int source) const;
  [[nodiscard]] std::string ValueLabel(int address, std::int32_t value) const;
  [[nodiscard]] std::string RangeRemark(int address, std::int32_t value) const;

  const ParamCatalogue& catalogue_;
  ValueNames value_names_;
};

}  // namespace kalde2
