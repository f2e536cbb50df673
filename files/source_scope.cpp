#include "files/source_scope.h"

namespace kalde2 {
namespace {

constexpr int kFirstVideoSource = 3;

bool AppliesTo(const ParamRecord& record, int source) {
  if (record.RgbOnly) return source < kFirstVideoSource;
  return !record.VideoOnly || source >= kFirstVideoSource;
}

}  // namespace

std::vector<int> ApplicableSources(const ParamRecord& record, const Connectivity& connectivity) {
  std::vector<int> sources;
  for (int source = 0; source < kSources; ++source) {
    if (connectivity.IsFitted(source) && AppliesTo(record, source)) sources.push_back(source);
  }
  return sources;
}

}  // namespace kalde2
