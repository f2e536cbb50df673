#pragma once

#include <QFileSystemWatcher>
#include <QMap>
#include <QStringList>
#include <QTimer>
#include <optional>

#include "session/port_directory.h"

namespace kalde2 {

/// Device path by port number, ascending.
using NumberedPorts = QMap<int, QString>;

/// Devices in the order in which they are numbered: built-in ports ("ttyS"), USB adapters
/// ("ttyUSB", then "ttyACM"), all others; within each by name, with the numbers in names compared
/// as numbers ("ttyUSB9" before "ttyUSB10"). Each device comes once.
[[nodiscard]] QStringList OrderedDevices(QStringList devices);

/// The ports that the system itself numbers, given the devices present.
[[nodiscard]] NumberedPorts NumberedBySystem(const QStringList& devices);

/// The same with the symbolic links of a folder put first: a link named by a number stands for its
/// device, or where that is gone for none.
[[nodiscard]] NumberedPorts WithLinks(NumberedPorts ports, const QString& folder);

/// Folder in which symbolic links number ports: "<configuration>/KALDE2/ports". Empty where there
/// is no such thing.
[[nodiscard]] QString DefaultPortsFolder();

/// Folders in which devices come and go.
[[nodiscard]] QStringList DeviceFolders();

/// The ports of this computer at this moment. Lists the devices, which takes tens of milliseconds.
/// @param links folder of the links
[[nodiscard]] NumberedPorts PortsPresent(const QString& links = DefaultPortsFolder());

/// Device of one port number at this moment; empty where it stands for none. That of a link is told
/// without listing the devices.
[[nodiscard]] QString DeviceOfPort(int number, const QString& links = DefaultPortsFolder());

/// The ports of this computer. Links are read at every question; devices, whose listing takes tens
/// of milliseconds, once and again after a change. Watching for changes sleeps in the kernel.
class QtPortDirectory final : public QObject, public PortDirectory {
  Q_OBJECT

 public:
  explicit QtPortDirectory(QObject* parent = nullptr)
      : QtPortDirectory(DefaultPortsFolder(), parent) {}

  /// @param links folder of the links; need not exist (yet)
  explicit QtPortDirectory(const QString& links, QObject* parent = nullptr);

  [[nodiscard]] std::string DeviceFor(int number) const override;
  [[nodiscard]] std::vector<NumberedPort> PresentPorts() const override;

 private:
  [[nodiscard]] NumberedPorts Ports() const;
  [[nodiscard]] const QStringList& Devices() const;
  void OnFolderChanged(const QString& folder);
  bool WatchLinks();

  QString links_;
  QString watched_;  ///< the folder of the links, or while it is missing the nearest one above it
  mutable std::optional<QStringList> devices_;  ///< as listed last, nullopt when that is outdated
  QFileSystemWatcher watcher_;
  QTimer announcement_;
};

}  // namespace kalde2
