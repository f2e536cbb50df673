#pragma once

#include "link/mod_comms.h"
#include "link/value_store.h"
#include "model/connectivity.h"
#include "model/input_names.h"
#include "model/mod_active_dts.h"
#include "model/reply_display.h"
#include "model/value_names.h"

namespace kalde2 {

/// What is known of the unit: its parameters, their values and names, its inputs. What it replies
/// and what a settings file holds come in through `ApplyReply`, and are shown.
class UnitModel : public ReplySink {
 public:
  UnitModel(ReplyDisplay& display, RefreshTimer& refresh) : display_(display), refresh_(refresh) {}

  void ApplyReply(ReplyRecord& record) override;

  ParamCatalogue catalogue;
  ValueStore values{catalogue};
  InputNames input_names;
  Connectivity connectivity;
  ValueNames value_names;

 private:
  void Store(const ReplyRecord& record);
  void Show(const ReplyRecord& record);

  ReplyDisplay& display_;
  RefreshTimer& refresh_;
};

}  // namespace kalde2
