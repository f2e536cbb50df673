#pragma once

#include <array>
#include <cstdint>

#include "link/addresses.h"
#include "link/parameter_scope.h"

namespace kalde2 {

/// The panel's copy of the unit's parameter values. Every index outside its table is a Fault.
class ValueStore {
 public:
  static constexpr int kParamValues = 414;    ///< elements 0..413 of `ParamValues`
  static constexpr int kSourceSlots = 21;     ///< slots 0..20 of `SourceValues`
  static constexpr int kSourceColumns = 256;  ///< sources 0..255 of `SourceValues`

  /// Element of `ParamValues` that holds the code of the selected source; 0 counts as 0x10.
  static constexpr int kCurrentSource = IndexOf(address::kSetupSource).number;

  explicit ValueStore(const ParameterScope& scope) : scope_(scope) {}

  /// Present value of a parameter. A per-source one is read for the selected source; where none is
  /// selected yet, 0x10 is selected first.
  [[nodiscard]] std::int32_t GetParamValue(CatalogueIndex index);

  /// Stores a value. The overall zoom and shrink are stored for the horizontal ones, too. A
  /// per-source value goes to the column that element 278 holds as it stands: not the selected
  /// source of element 148 and not mapped from a code. That asymmetry with `GetParamValue` is
  /// intended.
  void StoreParamValue(CatalogueIndex index, std::int32_t value);

  /// Direct access to `ParamValues`, element 0..413.
  [[nodiscard]] std::int32_t ParamValue(int element) const;
  void SetParamValue(int element, std::int32_t value);

  /// Direct access to `SourceValues`, slot 0..20 and source 0..255; 0 where nothing was stored.
  [[nodiscard]] std::int32_t SourceValue(int slot, int source) const;
  void SetSourceValue(int slot, int source, std::int32_t value);

 private:
  const ParameterScope& scope_;
  std::array<std::int32_t, kParamValues> param_values_{};
  std::array<std::array<std::int32_t, kSourceColumns>, kSourceSlots> source_values_{};
};

}  // namespace kalde2
