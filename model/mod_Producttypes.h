#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "model/connectivity.h"
#include "model/mod_active_dts.h"

namespace kalde2 {

/// Items "label,number" of the input lists of a product whose inputs are always the same. An empty
/// one leaves its list as it is.
struct FixedInputs {
  std::span<const std::string_view> lock_source;
  std::span<const std::string_view> main_input;
};

/// The builder that knows a product's parameters.
enum class Family : std::uint8_t { kNone, kCompact, k5000, k6000 };

/// What distinguishes the products' parameters, one bit each.
using Features = std::uint32_t;

/// All that the panel knows of one product.
struct Product {
  std::int32_t type;            ///< product type number that the unit reports at address 0xC4
  std::string_view model_code;  ///< what the panel shows, for example "K2-6350"
  bool feature_controls;        ///< flag A: the unit has keyer, lock and fade
  bool no_overscan;             ///< flag B: no overscan and underscan; no effect without flag A
  bool autoset;                 ///< the panel offers autoset: with flag A, and for one without
  const FixedInputs* inputs;    ///< nullptr where they are read from the unit
  Family family;
  Features features;
};

/// The row of a product type, nullptr where the table has none.
[[nodiscard]] const Product* FindProduct(std::int32_t type);

/// The row of a product type that passes the gate of detection, which always has a model code;
/// nullptr for a type that is refused. The gate is a list of its own beside the table: 62 has a row
/// and is refused.
[[nodiscard]] const Product* FindSupportedProduct(std::int32_t type);

/// The names of all products' parameters, each once.
[[nodiscard]] std::vector<std::string_view> ParameterNames();

/// Limits of a parameter's values.
struct ValueRange {
  std::int16_t minimum;
  std::int16_t maximum;
};

/// The limits of a parameter of the unit, 0 and 0 for one that is a list or none; every product
/// that has the parameter has these.
[[nodiscard]] ValueRange RangeOf(Address address);

/// The builders of the three product families: each adds the parameters of the product, in its
/// order, where the type is one of the family's, and nothing otherwise.
void BuildCompactCatalogue(ParamCatalogue& catalogue, std::int32_t type);
void Build5000Catalogue(ParamCatalogue& catalogue, std::int32_t type);
void Build6000Catalogue(ParamCatalogue& catalogue, std::int32_t type);

/// Begins a build and runs the three builders; at most one adds anything.
void AddProductEntries(ParamCatalogue& catalogue, std::int32_t type);

/// Builds the catalogue of the detected product, then reads the connectivity of its unit.
TransferReport LoadProductCatalogue(ParamCatalogue& catalogue, ConnectivityReader& connectivity,
                                    std::int32_t type);

}  // namespace kalde2
