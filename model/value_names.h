#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "model/connectivity.h"
#include "model/input_names.h"

namespace kalde2 {

/// The texts of list-valued parameters: 30 lists of 16 items, an unused item being empty. Items of
/// lists whose parameters use item data read "label,number" ("RGB1,&H10"); an index outside the
/// table is a Fault.
class ValueNames {
 public:
  static constexpr int kLists = 30;
  static constexpr int kItems = 16;

  [[nodiscard]] const std::string& Item(int list, int item) const;
  void SetItem(int list, int item, std::string_view text);

 private:
  std::array<std::array<std::string, kItems>, kLists> items_;
};

/// Lists that are filled for the connected unit.
inline constexpr int kLockSourceList = 5;
inline constexpr int kMainInputList = 7;
inline constexpr int kSetupSourceList = 20;

/// A "label,number" item taken apart.
struct LabelledNumber {
  std::string label;
  std::int32_t number;  ///< "&H" introduces hexadecimal
};

/// @throws Fault for a text without a comma
[[nodiscard]] LabelledNumber SplitItem(std::string_view item);

/// True for a list that is filled from the inputs that a unit of the product has.
[[nodiscard]] bool IsOfFittedInputs(int list, std::int32_t product_type);

/// Fills the fixed lists, then lists 20, 5 and 7 for the product and its fitted sources. No list is
/// cleared first: items beyond the new count keep the texts of an earlier product, as intended.
/// @throws Fault at the 17th fitted source; what was written before it stays
void LoadValueNames(ValueNames& names, std::int32_t product_type, const InputNames& inputs,
                    const Connectivity& connectivity);

}  // namespace kalde2
