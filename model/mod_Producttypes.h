#pragma once

#include <cstdint>
#include <string_view>

#include "model/connectivity.h"
#include "model/mod_active_dts.h"

namespace kalde2 {

/// One row of the model table.
struct ProductModel {
  std::int32_t type;            ///< product type number that the unit reports at address 0xC4
  std::string_view model_code;  ///< what the panel shows, for example "K2-6350"
  bool feature_controls;        ///< flag A: the unit has keyer, lock and fade
  bool no_overscan;             ///< flag B: no overscan and underscan; no effect without flag A
};

/// The row of a product type, or nullptr where the table has none (68 has entries but no row).
[[nodiscard]] const ProductModel* FindModel(std::int32_t type);

/// The gate of detection. It is a list of its own beside the model table on purpose: 62 has a row
/// in the table and is refused here.
[[nodiscard]] bool IsSupportedProduct(std::int32_t type);

/// The builders of the three product families: each adds the parameters of the product, in its
/// order, where the type is one of the family's, and nothing otherwise.
void BuildCompactCatalogue(ParamCatalogue& catalogue, std::int32_t type);
void Build5000Catalogue(ParamCatalogue& catalogue, std::int32_t type);
void Build6000Catalogue(ParamCatalogue& catalogue, std::int32_t type);

/// Begins a build and runs the three builders; at most one adds anything.
void AddProductEntries(ParamCatalogue& catalogue, std::int32_t type);

/// Builds the catalogue of the detected product, then reads the connectivity of its unit.
void LoadProductCatalogue(ParamCatalogue& catalogue, ConnectivityReader& connectivity,
                          std::int32_t type);

}  // namespace kalde2
