#pragma once

#include <functional>

#include "link/mod_comms.h"
#include "model/progress.h"
#include "model/transfer_report.h"
#include "model/unit_model.h"

namespace kalde2 {

/// Copies all parameters of the connected product between the unit and what is held of it, one
/// request at a time: the active parameters in catalogue order, a per-source parameter once for
/// each fitted source that it applies to. A request that the unit refuses or leaves unanswered is
/// skipped. When the port is closed meanwhile, the transfer ends there.
class CloneTransfer {
 public:
  /// @param link the unit's, or one that stands before it and takes what is answered to `unit`
  CloneTransfer(UnitModel& unit, Exchanger& link, Progress& progress)
      : unit_(unit), link_(link), progress_(progress) {}

  /// Reads every parameter. The replies store and show themselves as any reply does.
  TransferReport CloneRead();

  /// Writes every stored value. The element of the selected source is set to each source in turn,
  /// so "Setup Source" itself is written as whatever source came last before it; afterwards the
  /// selected source is the one from before.
  TransferReport CloneWrite();

 private:
  using RequestFor =
      std::function<ParameterRequest(CatalogueIndex index, std::int16_t source_code)>;

  TransferReport ForEachParameter(std::string_view caption, const RequestFor& request_for);
  void Transfer(const RequestFor& request_for, TransferReport& report);

  UnitModel& unit_;
  Exchanger& link_;
  Progress& progress_;
};

}  // namespace kalde2
