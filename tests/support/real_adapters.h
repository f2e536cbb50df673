#pragma once

#include "adapters/port_numbers.h"
#include "adapters/qt_clock.h"
#include "adapters/qt_dialogs.h"
#include "adapters/qt_serial_port.h"
#include "adapters/qt_settings_store.h"

namespace kalde2 {

/// What main() composes the panel on.
struct RealAdapters {
  QtPortDirectory ports;
  QtSerialPort port{ports};
  QtClock clock;
  QtSettingsStore settings;
  QtMessageBoxes boxes;
  QtFileDialogs dialogs;
};

}  // namespace kalde2
