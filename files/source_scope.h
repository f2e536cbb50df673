#pragma once

#include <vector>

#include "model/connectivity.h"
#include "model/mod_active_dts.h"

namespace kalde2 {

/// The fitted sources that a per-source parameter applies to, as ascending source indexes: of the
/// RGB inputs only indexes below 3, of the video inputs only indexes from 3 on.
[[nodiscard]] std::vector<int> ApplicableSources(const ParamRecord& record,
                                                 const Connectivity& connectivity);

}  // namespace kalde2
