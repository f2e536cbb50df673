#pragma once

#include <functional>

#include "files/clone.h"
#include "files/dialogs.h"
#include "files/mod_FileHandler.h"
#include "files/mod_resolutions.h"
#include "link/clock.h"
#include "link/mod_comms.h"
#include "link/receive_ring.h"
#include "link/value_store.h"
#include "model/autoset.h"
#include "model/command_list.h"
#include "model/connectivity.h"
#include "model/mod_active_dts.h"
#include "model/value_names.h"
#include "panel/operator_queue.h"
#include "panel/port_directory.h"
#include "panel/settings_store.h"

namespace kalde2 {

/// What the panel needs of the platform.
struct Platform {
  SerialPort& port;
  PortDirectory& ports;
  Clock& clock;
  SettingsStore& settings;
  MessageBoxes& boxes;
  FileDialogs& dialogs;
  std::function<void()> end_program;  ///< ends the process at once
};

/// What the panel knows of the unit.
struct UnitModel {
  ParamCatalogue catalogue;
  ValueStore values{catalogue};
  InputNames input_names;
  Connectivity connectivity;
  ValueNames value_names;
  ResolutionTable resolutions;
};

}  // namespace kalde2
