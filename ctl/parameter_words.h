#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/mod_resolutions.h"
#include "model/command_list.h"
#include "model/unit_model.h"

namespace kalde2 {

/// The one of several names that a user means: the whole of it or a beginning that no other has, in
/// capitals or small letters; blanks around it do not count.
/// @param kind what they are names of, for the message: "parameter"
/// @return its place among `names`
/// @throws CommandFault where none fits, and where several do, telling which
[[nodiscard]] std::size_t FindName(std::string_view kind, std::string_view wanted,
                                   const std::vector<std::string>& names);

/// A whole number, decimal or in hex after 0x, perhaps with a sign, and nothing else.
[[nodiscard]] std::optional<std::int32_t> ReadWholeNumber(std::string_view text);

/// PARAMETER=VALUE, or PARAMETER+=VALUE and PARAMETER-=VALUE for a step.
struct Assignment {
  enum class Kind : std::uint8_t { kPlain, kUp, kDown };
  std::string parameter;
  Kind kind = Kind::kPlain;
  std::string value;
};

/// @throws CommandFault for a text without "="
[[nodiscard]] Assignment SplitAssignment(std::string_view text);

/// A parameter as the command line has it.
struct Parameter {
  CatalogueIndex index;
  std::string name;
  bool is_per_source = false;
  bool is_number = false;  ///< takes the numbers from `minimum` to `maximum`
  std::int32_t minimum = 0;
  std::int32_t maximum = 0;
  std::vector<ValueItem> choices;  ///< what else it takes: label, and the number that is sent

  [[nodiscard]] kalde2::Address Address() const { return AddressOf(index); }

  /// Label of a value, empty where it has none.
  [[nodiscard]] std::string Label(std::int32_t value) const;

  /// Label of a value, or the number where it has none.
  [[nodiscard]] std::string Shown(std::int32_t value) const;

  /// What it takes, in words: "100 to 1000", "Off, Lock, Lock+Mix".
  [[nodiscard]] std::string Takes() const;
};

/// A value that is asked for.
struct WantedValue {
  bool is_step = false;  ///< a distance from the present value
  std::int32_t number = 0;
};

/// Reads what a parameter is to be set to. A choice is named as names are, or by its number. With a
/// sign it is a step, unless the parameter has negative values itself, or choices.
/// @throws CommandFault where the parameter does not take it, telling what it takes
[[nodiscard]] WantedValue ReadValue(const Parameter& parameter, const Assignment& assignment);

/// Where a step from a present value leads: no further than the range does.
[[nodiscard]] std::int32_t Stepped(const Parameter& parameter, std::int32_t present,
                                   std::int32_t step);

/// The fitted inputs of a unit: name and source number, ascending.
[[nodiscard]] std::vector<ValueItem> FittedInputs(const UnitModel& unit);

/// Name of a fitted input, empty where there is none of this source number.
[[nodiscard]] std::string InputName(const UnitModel& unit, int source);

/// The words of one unit: its parameters and their values.
class ParameterWords {
 public:
  explicit ParameterWords(UnitModel& unit);

  /// The parameter that a user means: its name, or its address.
  /// @throws CommandFault where the product has no such parameter
  [[nodiscard]] CatalogueIndex Find(std::string_view word) const;

  [[nodiscard]] Parameter Describe(CatalogueIndex index) const;

  /// What applies now.
  [[nodiscard]] const CommandList& List() const { return list_; }

  /// The product's parameters in the order of the command list.
  [[nodiscard]] const std::vector<CatalogueIndex>& All() const {
    return unit_.catalogue.ActiveParams();
  }

 private:
  UnitModel& unit_;
  ResolutionTable resolutions_;
  CommandList list_;
};

}  // namespace kalde2
