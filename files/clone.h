#pragma once

#include <cstdint>
#include <functional>

#include "link/mod_comms.h"
#include "link/value_store.h"
#include "model/connectivity.h"
#include "model/mod_active_dts.h"
#include "model/progress_view.h"

namespace kalde2 {

/// Copies all parameters of the connected product between the unit and the value store, one request
/// at a time behind the progress window: in ascending catalogue order, a per-source parameter once
/// for each fitted source that it applies to. A request that the unit refuses or leaves unanswered
/// is skipped without a message. When the port is closed meanwhile, the transfer ends there.
class CloneTransfer {
 public:
  CloneTransfer(const ParamCatalogue& catalogue, const Connectivity& connectivity,
                ValueStore& values, CommandLink& link, ProgressView& progress);

  /// Reads every parameter. The replies store and show themselves as any reply does.
  void CloneRead();

  /// Writes every stored value. The element of the selected source is set to each source in turn,
  /// so "Setup Source" itself is written as whatever source came last before it; afterwards the
  /// selected source is the one from before.
  void CloneWrite();

 private:
  using Exchange = std::function<void(int index, std::int16_t source_code)>;

  void ForEachParameter(const Exchange& exchange);

  const ParamCatalogue& catalogue_;
  const Connectivity& connectivity_;
  ValueStore& values_;
  CommandLink& link_;
  ProgressView& progress_;
};

}  // namespace kalde2
