#pragma once

#include <QByteArray>
#include <QStringList>

#include <QProcess>
#include <chrono>
#include <optional>

namespace kalde2::bench {

/// kalde2-unit as a process of its own on port 1. Ends with the scope, and with it the link.
class UnitProcess {
 public:
  /// Starts the unit and waits until it is ready. @throws std::runtime_error
  explicit UnitProcess(const QStringList& options);
  ~UnitProcess();
  UnitProcess(const UnitProcess&) = delete;
  UnitProcess& operator=(const UnitProcess&) = delete;

  /// A line typed at the unit's front panel.
  void Command(const QByteArray& line);

  /// The device that the panel opens.
  [[nodiscard]] const std::string& Device() const { return device_; }

  /// Time of day, in milliseconds, of the last request that has the text in it, as the unit has
  /// noted it; nothing where there is none. What the unit has printed so far is looked through.
  [[nodiscard]] std::optional<int> LastRequest(const QByteArray& text);

 private:
  QProcess process_;
  std::string device_;
  QByteArray output_;
};

}  // namespace kalde2::bench
