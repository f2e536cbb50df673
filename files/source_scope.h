#pragma once

#include <vector>

#include "link/value_store.h"
#include "model/connectivity.h"
#include "model/mod_active_dts.h"

namespace kalde2 {

/// The fitted sources that a per-source parameter applies to, as ascending source indexes: of the
/// RGB inputs only indexes below 3, of the video inputs only indexes from 3 on.
[[nodiscard]] std::vector<int> ApplicableSources(const ParamRecord& record,
                                                 const Connectivity& connectivity);

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

}  // namespace kalde2
