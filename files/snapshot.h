#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "link/addresses.h"
#include "link/mod_comms.h"
#include "model/unit_model.h"

namespace kalde2 {

/// The values of a unit at one moment, as a settings file tells them, and the product that they are
/// of. What a unit itself holds is read into a model first, by a clone read.
struct Snapshot {
  struct Entry {
    Address address;
    std::int16_t source;  ///< source code; 0 in a general line, and of a source without a code
    std::int32_t value;

    bool operator==(const Entry&) const = default;
  };

  std::optional<std::int32_t> product_type;  ///< where it is known
  std::vector<Entry> entries;                ///< in the order of the file; the last one counts
};

/// What is held of the unit. Nothing of it is changed.
[[nodiscard]] Snapshot TakeSnapshot(UnitModel& unit, std::int32_t product_type);

/// What a settings file holds.
/// @throws Fault as `LoadSettings`
[[nodiscard]] Snapshot SnapshotOfFile(const std::string& path);

/// One difference between two snapshots. A value that a side does not have is missing there.
struct Difference {
  Address address;
  std::int16_t source;
  std::optional<std::int32_t> left;
  std::optional<std::int32_t> right;

  bool operator==(const Difference&) const = default;
};

/// The differences, ascending by address and source.
[[nodiscard]] std::vector<Difference> Compare(const Snapshot& left, const Snapshot& right);

}  // namespace kalde2
