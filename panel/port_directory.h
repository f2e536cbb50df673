#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace kalde2 {

/// Which device a port number stands for. On Windows that is COM<n>. Elsewhere a symbolic link
/// `ports/<n>` in the folder `KALDE2` of the user's configuration wins; without one it is the n-th
/// serial port present.
class PortDirectory : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Device path of a port number; empty where it stands for none now.
  [[nodiscard]] virtual QString DeviceFor(int number) const = 0;

  /// One text for each port that a number stands for now, ascending: "1: /dev/ttyUSB0".
  [[nodiscard]] virtual QStringList PresentPorts() const = 0;

 signals:
  /// Links or devices came or went.
  void Changed();
};

}  // namespace kalde2
