#include <QStandardPaths>

#include "adapters/port_numbers.h"

namespace kalde2 {

NumberedPorts NumberedBySystem(const QStringList& devices) {
  NumberedPorts ports;
  for (const QString& device : OrderedDevices(devices)) {
    ports[static_cast<int>(ports.size()) + 1] = device;
  }
  return ports;
}

QString DefaultPortsFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/KALDE2/ports";
}

QStringList DeviceFolders() {
  return {"/dev"};
}

}  // namespace kalde2
