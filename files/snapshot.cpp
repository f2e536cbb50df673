#include "files/snapshot.h"

#include <map>
#include <sstream>
#include <utility>

#include "files/mod_FileHandler.h"
#include "files/source_scope.h"

namespace kalde2 {
namespace {

/// Collects what is applied.
class Collector : public ReplySink {
 public:
  void ApplyReply(ReplyRecord& record) override {
    entries.push_back({record.Address, record.Source, record.Value});
  }

  std::vector<Snapshot::Entry> entries;
};

}  // namespace

Snapshot TakeSnapshot(UnitModel& unit, std::int32_t product_type) {
  const KeptSource kept(unit.values);
  std::stringstream text;
  WriteSettings(text, unit, product_type);
  Collector collector;
  (void)ReadSettings(text, collector);
  return {product_type, std::move(collector.entries)};
}

Snapshot SnapshotOfFile(const std::string& path) {
  Collector collector;
  const std::optional<std::int32_t> type = LoadSettings(path, collector);
  return {type, std::move(collector.entries)};
}

std::vector<Difference> Compare(const Snapshot& left, const Snapshot& right) {
  using Key = std::pair<Address, std::int16_t>;
  std::map<Key, std::pair<std::optional<std::int32_t>, std::optional<std::int32_t>>> values;
  for (const auto& [address, source, value] : left.entries) values[{address, source}].first = value;
  for (const auto& [address, source, value] : right.entries) {
    values[{address, source}].second = value;
  }
  std::vector<Difference> differences;
  for (const auto& [key, value] : values) {
    if (value.first != value.second) {
      differences.push_back({key.first, key.second, value.first, value.second});
    }
  }
  return differences;
}

}  // namespace kalde2
