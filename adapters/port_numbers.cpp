#include "adapters/port_numbers.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace kalde2 {
namespace {

/// A device that comes makes several changes (node, rights, links): all of them are one.
constexpr std::chrono::milliseconds kSettlingTime{100};

constexpr std::array kRankedPrefixes = {"ttyS", "ttyUSB", "ttyACM"};

QString NameOf(const QString& device) {
  return device.section('/', -1);
}

/// A name of a kind is its prefix and a number, so that "ttySAC0" is no "ttyS".
std::size_t Rank(const QString& device) {
  const QString name = NameOf(device);
  const auto is_kind = [&](const char* prefix) {
    const QLatin1String kind(prefix);
    return name.startsWith(kind) && name.size() > kind.size() && name[kind.size()].isDigit();
  };
  return static_cast<std::size_t>(std::ranges::find_if(kRankedPrefixes, is_kind) -
                                  kRankedPrefixes.begin());
}

/// Position after the digits that begin at `position`.
qsizetype EndOfDigits(const QString& text, qsizetype position) {
  while (position < text.size() && text[position].isDigit()) ++position;
  return position;
}

/// Order of two texts in which runs of digits count as numbers.
bool NaturallyLess(const QString& left, const QString& right) {
  qsizetype i = 0;
  qsizetype j = 0;
  while (i < left.size() && j < right.size()) {
    const qsizetype left_end = EndOfDigits(left, i);
    const qsizetype right_end = EndOfDigits(right, j);
    if (left_end > i && right_end > j) {
      const qulonglong left_number = left.mid(i, left_end - i).toULongLong();
      const qulonglong right_number = right.mid(j, right_end - j).toULongLong();
      if (left_number != right_number) return left_number < right_number;
      i = left_end;
      j = right_end;
    } else {
      if (left[i] != right[j]) return left[i] < right[j];
      ++i;
      ++j;
    }
  }
  return std::pair(left.size() - i, left) < std::pair(right.size() - j, right);
}

QStringList DevicesPresent() {
  QStringList devices;
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    devices << port.systemLocation();
  }
  return devices;
}

QString NearestExisting(QString folder) {
  while (!QFileInfo(folder).isDir() && !QDir(folder).isRoot()) {
    folder = QFileInfo(folder).absolutePath();
  }
  return folder;
}

}  // namespace

QStringList OrderedDevices(QStringList devices) {
  std::ranges::sort(devices, [](const QString& left, const QString& right) {
    const std::size_t left_rank = Rank(left);
    const std::size_t right_rank = Rank(right);
    return left_rank != right_rank ? left_rank < right_rank : NaturallyLess(left, right);
  });
  devices.removeDuplicates();
  return devices;
}

NumberedPorts WithLinks(NumberedPorts ports, const QString& folder) {
  // To QDir devices are system files, and so are links whose device is gone.
  constexpr auto kLinks = QDir::Files | QDir::System;
  for (const QFileInfo& link : QDir(folder).entryInfoList(kLinks)) {
    bool is_number = false;
    const int number = link.fileName().toInt(&is_number);
    if (!is_number || !link.isSymLink()) continue;
    const QString device = link.canonicalFilePath();
    if (device.isEmpty()) {
      ports.remove(number);
    } else {
      ports[number] = device;
    }
  }
  return ports;
}

NumberedPorts PortsPresent(const QString& links) {
  const NumberedPorts ports = NumberedBySystem(DevicesPresent());
  return links.isEmpty() ? ports : WithLinks(ports, links);
}

QString DeviceOfPort(int number, const QString& links) {
  const QFileInfo link(links + '/' + QString::number(number));
  const bool is_linked = !links.isEmpty() && link.isSymLink();
  return is_linked ? link.canonicalFilePath() : PortsPresent(links).value(number);
}

QtPortDirectory::QtPortDirectory(const QString& links, QObject* parent)
    : QObject(parent), links_(links) {
  announcement_.setSingleShot(true);
  announcement_.setInterval(kSettlingTime);
  connect(&announcement_, &QTimer::timeout, this, [this] { TellChange(); });
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, this,
          &QtPortDirectory::OnFolderChanged);
  if (const QStringList folders = DeviceFolders(); !folders.isEmpty()) watcher_.addPaths(folders);
  WatchLinks();
}

std::string QtPortDirectory::DeviceFor(int number) const {
  return Ports().value(number).toStdString();
}

std::vector<NumberedPort> QtPortDirectory::PresentPorts() const {
  std::vector<NumberedPort> present;
  const NumberedPorts ports = Ports();
  for (auto port = ports.cbegin(); port != ports.cend(); ++port) {
    present.push_back({port.key(), port.value().toStdString()});
  }
  return present;
}

NumberedPorts QtPortDirectory::Ports() const {
  const NumberedPorts ports = NumberedBySystem(Devices());
  return links_.isEmpty() ? ports : WithLinks(ports, links_);
}

const QStringList& QtPortDirectory::Devices() const {
  const bool tells_changes = !DeviceFolders().isEmpty();
  if (!devices_.has_value() || !tells_changes) devices_ = DevicesPresent();
  return *devices_;
}

void QtPortDirectory::OnFolderChanged(const QString& folder) {
  if (folder != watched_) devices_.reset();
  const bool is_stand_in = folder == watched_ && folder != links_;
  const bool has_moved = WatchLinks();
  if (is_stand_in && !has_moved) return;
  if (!announcement_.isActive()) announcement_.start();
}

/// Watches the folder of the links, or what of its path exists, for the rest to appear.
/// @return whether that is another folder than before
bool QtPortDirectory::WatchLinks() {
  if (links_.isEmpty()) return false;
  const QString before = watched_;
  // What appears between looking and watching raises no event, so look again.
  for (QString folder = NearestExisting(links_); !watcher_.directories().contains(folder);
       folder = NearestExisting(links_)) {
    if (!watched_.isEmpty()) watcher_.removePath(watched_);
    watched_ = folder;
    if (!watcher_.addPath(folder)) break;
  }
  return watched_ != before;
}

}  // namespace kalde2
