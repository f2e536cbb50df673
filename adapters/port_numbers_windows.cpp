#include "adapters/port_numbers.h"

namespace kalde2 {

// The system numbers its ports itself: COM<n>, spelled "\\.\COM<n>".
NumberedPorts NumberedBySystem(const QStringList& devices) {
  NumberedPorts ports;
  for (const QString& device : devices) {
    const QString name = device.section('\\', -1);
    bool is_number = false;
    const int number = name.mid(3).toInt(&is_number);
    if (is_number && name.startsWith("COM")) ports[number] = name;
  }
  return ports;
}

QString DefaultPortsFolder() {
  return {};
}

QStringList DeviceFolders() {
  return {};
}

}  // namespace kalde2
