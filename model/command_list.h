#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/unit_model.h"

namespace kalde2 {

/// Names of the output resolutions by their number in the resolution table.
class ResolutionNames {
 public:
  virtual ~ResolutionNames() = default;

  /// @throws Fault for a number that the table does not have
  [[nodiscard]] virtual std::string ResolutionName(std::int32_t number) const = 0;
};

/// One line of the command list.
struct CommandLine {
  std::string text;      ///< "Zoom Pan H[0,100] : 50", "Lock mode : Off"
  CatalogueIndex index;  ///< the line's item data
};

/// One entry of the value editor of a list parameter.
struct ValueItem {
  std::string label;
  std::int32_t data = 0;  ///< item data where the parameter uses it, else 0
};

/// The generic editor's view of the parameters: which lines there are, what they say, and which
/// values they can take. Holds no state of its own.
class CommandList {
 public:
  /// "Resolution", a number that is edited through the resolution list.
  static constexpr CatalogueIndex kResolution = IndexOf(address::kResolution);

  CommandList(UnitModel& unit, const ResolutionNames& resolutions)
      : unit_(unit), resolutions_(resolutions) {}

  /// All lines, in the product's order. A fault in one ends the list there.
  [[nodiscard]] std::vector<CommandLine> Lines() const;

  /// False for a parameter that the values of "Shrink Enable" or "Aspect adjust" make meaningless.
  [[nodiscard]] bool IsCommandAvailable(CatalogueIndex index) const;

  /// False for a per-source parameter that does not apply to the current setup source.
  [[nodiscard]] bool IsCommandApplicable(CatalogueIndex index) const;

  /// The choices of a list parameter: the non-empty items of its list.
  [[nodiscard]] std::vector<ValueItem> Choices(CatalogueIndex index) const;

  /// Position in `Choices` that shows the present value; -1 where none does.
  [[nodiscard]] int CurrentChoice(CatalogueIndex index) const;

  [[nodiscard]] std::int32_t CurrentValue(CatalogueIndex index) const {
    return unit_.values.GetParamValue(index);
  }

  /// The present value plus `step`, brought back into the parameter's range; stepping down looks
  /// at the lower limit first.
  [[nodiscard]] std::int32_t SteppedValue(CatalogueIndex index, int step) const;

  /// Reads a typed number. @return true and the value, rounded, when it is in range
  [[nodiscard]] bool ReadTyped(CatalogueIndex index, std::string_view text,
                               std::int32_t& value) const;

  /// Source field of a write: the current setup source (0 read as 0x10) for a per-source
  /// parameter, 0x10 for any other.
  [[nodiscard]] std::int16_t WriteSource(CatalogueIndex index) const;

  [[nodiscard]] const ParamRecord& Record(CatalogueIndex index) const {
    return unit_.catalogue.Record(index);
  }

 private:
  [[nodiscard]] std::int32_t SetupSource() const;
  [[nodiscard]] std::string LineText(CatalogueIndex index) const;
  [[nodiscard]] std::string ListValueText(CatalogueIndex index, std::int32_t value) const;
  [[nodiscard]] std::string ItemDataText(int list, std::int32_t value) const;
  [[nodiscard]] std::string PositionText(int list, std::int32_t value, const char* missing) const;

  UnitModel& unit_;
  const ResolutionNames& resolutions_;
};

}  // namespace kalde2
