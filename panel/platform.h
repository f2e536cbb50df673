#pragma once

#include <functional>

#include "link/clock.h"
#include "link/serial_port.h"
#include "panel/dialogs.h"
#include "session/port_directory.h"
#include "session/settings_store.h"

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

}  // namespace kalde2
