#pragma once

#include <QObject>
#include <QSerialPort>

#include "link/serial_port.h"
#include "panel/port_directory.h"

namespace kalde2 {

/// The serial port over QSerialPort. Characters are read when the event loop says that they have
/// come; nothing polls. Beside what SerialPort tells:
///  - Open() fails with a text for: settings that are none, a number that stands for no port, a
///  port
///    in use, one that the user may not use, one that does not take the settings, and whatever else
///    the system says.
///  - Close() throws away what is not sent yet.
///  - A line that goes away closes the port and tells the listener from the event loop, once.
class QtSerialPort final : public QObject, public SerialPort {
  Q_OBJECT

 public:
  /// @param directory tells the device of a port number; must outlive the port
  explicit QtSerialPort(const PortDirectory& directory, QObject* parent = nullptr);
  ~QtSerialPort() override;

  [[nodiscard]] bool PortOpen() const override { return port_.isOpen() && !is_lost_; }
  [[nodiscard]] std::optional<std::string> Open(const PortSetup& setup) override;
  void Close() override;
  void Output(std::string_view text) override;
  [[nodiscard]] std::string Input() override;
  void SetHandshaking(Handshaking handshaking) override;

 private:
  [[nodiscard]] QString OpenDevice(const QString& device, const PortSetup& setup);
  [[nodiscard]] QString WhyNotOpened(const QString& device) const;
  void OnReadyRead();
  void OnError(QSerialPort::SerialPortError error);
  void Lose(unsigned opening, const QString& reason);
  void RequireLine() const;

  const PortDirectory& directory_;
  QSerialPort port_;
  unsigned opening_ = 0;  ///< counts openings: a loss concerns its own opening only
  bool is_lost_ = false;  ///< the line is gone, the closing on its way
};

}  // namespace kalde2
