#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "link/addresses.h"
#include "link/mod_datatypes.h"
#include "link/parameter_scope.h"

namespace kalde2 {

/// What the panel knows of one parameter of the connected product.
struct ParamRecord {
  Bool16 RgbOnly;             ///< per-source parameter of RGB inputs only
  Bool16 VideoOnly;           ///< per-source parameter of video (composite, YC) inputs only
  Bool16 Active;              ///< the connected product has this parameter
  Bool16 PerSource;           ///< the unit keeps one value for each input source
  std::string Name;           ///< display name, in the command list and in files
  std::int16_t MinValue = 0;  ///< lowest value, 0 for list parameters
  std::int16_t MaxValue = 0;  ///< highest value, 0 for list parameters
  Bool16 HasList;             ///< the value is chosen from a list of names
  std::int32_t ListId = 0;    ///< number of that list, meaningful only with HasList
  Bool16 UseItemData;         ///< the item's number, not its position, is sent to the unit
};

/// The parameters of the connected product: 284 records by catalogue index (address - 130), and the
/// order in which the product lists its own. Rebuilt at each detection of a unit.
class ParamCatalogue : public ParameterScope {
 public:
  /// Starts a build: no entry is active or per source and `ActiveParams` is empty. The other fields
  /// keep what an earlier build left; they mean something for active entries only.
  void BeginBuild();

  /// Adds one parameter at the end of `ActiveParams`.
  /// @param list number of the value list, 0 for a numeric parameter
  /// @throws Fault for an address outside 130..413; the index stands in `ActiveParams` then
  void AddParameter(Address address, std::string_view name, std::int32_t list, std::int16_t minimum,
                    std::int16_t maximum, Bool16 use_item_data);

  /// @throws Fault for an index outside 0..283
  [[nodiscard]] const ParamRecord& Record(CatalogueIndex index) const;

  /// Catalogue indexes of the product's parameters in the order of the command list. Empty before
  /// the first detection and for a product without parameters.
  [[nodiscard]] const std::vector<CatalogueIndex>& ActiveParams() const { return active_params_; }

  [[nodiscard]] bool IsPerSource(CatalogueIndex index) const override {
    return Record(index).PerSource;
  }

 private:
  std::array<ParamRecord, kCatalogueSize> records_;
  std::vector<CatalogueIndex> active_params_;
};

}  // namespace kalde2
