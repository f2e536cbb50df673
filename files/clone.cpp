#include "files/clone.h"

#include <vector>

#include "files/shown_progress.h"
#include "files/source_scope.h"
#include "link/source_codes.h"

namespace kalde2 {
namespace {

constexpr std::int16_t AddressOf(int index) {
  return static_cast<std::int16_t>(index + kFirstAddress);
}

/// Puts the selected source back at the end of a scope.
class KeptSource {
 public:
  explicit KeptSource(ValueStore& values)
      : values_(values), code_(values.ParamValue(ValueStore::kCurrentSource)) {}
  ~KeptSource() { values_.SetParamValue(ValueStore::kCurrentSource, code_); }
  KeptSource(const KeptSource&) = delete;
  KeptSource& operator=(const KeptSource&) = delete;

 private:
  ValueStore& values_;
  std::int32_t code_;
};

/// Source codes to ask for a parameter. A source index that has no code of its own gives 0.
std::vector<std::int16_t> SourceCodes(const ParamRecord& record, const Connectivity& connectivity) {
  if (!record.PerSource) return {kFirstSourceCode};
  std::vector<std::int16_t> codes;
  for (const int source : ApplicableSources(record, connectivity)) {
    codes.push_back(SourceIndexToCode(source));
  }
  return codes;
}

}  // namespace

CloneTransfer::CloneTransfer(const ParamCatalogue& catalogue, const Connectivity& connectivity,
                             ValueStore& values, CommandLink& link, ProgressView& progress)
    : catalogue_(catalogue),
      connectivity_(connectivity),
      values_(values),
      link_(link),
      progress_(progress) {}

void CloneTransfer::CloneRead() {
  const ShownProgress shown(progress_, "Reading Parameters");
  ForEachParameter([this](int index, std::int16_t source_code) {
    link_.SendParameter(kRead, source_code, 0, AddressOf(index));
  });
}

void CloneTransfer::CloneWrite() {
  const ShownProgress shown(progress_, "Writing Parameters");
  const KeptSource kept(values_);
  ForEachParameter([this](int index, std::int16_t source_code) {
    // Selects the column that the value is taken from.
    if (catalogue_.IsPerSource(index)) {
      values_.SetParamValue(ValueStore::kCurrentSource, source_code);
    }
    link_.SendParameter(kWrite, source_code, values_.GetParamValue(index), AddressOf(index));
  });
}

void CloneTransfer::ForEachParameter(const Exchange& exchange) {
  progress_.SetRange(0, kCatalogueSize - 1);
  for (int index = 0; index < kCatalogueSize; ++index) {
    progress_.SetValue(index);
    const ParamRecord& record = catalogue_.Record(index);
    if (!record.Active) continue;
    for (const std::int16_t source_code : SourceCodes(record, connectivity_)) {
      exchange(index, source_code);
      if (!link_.PortOpen()) return;
    }
  }
}

}  // namespace kalde2
