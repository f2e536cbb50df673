#pragma once

#include <QObject>
#include <QSerialPort>
#include <memory>

#include "adapters/serial_line.h"
#include "link/serial_port.h"
#include "session/port_directory.h"

namespace kalde2 {

/// The serial port over QSerialPort. Characters are read when the event loop says that they have
/// come, or when they are asked for; nothing polls. Beside what SerialPort tells:
///  - Open() fails with a text for: settings that are none, a number that stands for no port, a
///    port in use, one that a program of another user has locked and died, one that the user may
///    not use, one that does not take the settings, and whatever else the system says.
///  - Close() throws away what is not sent yet.
///  - Input() never waits, and what it has read raises no receive event.
///  - A line that goes away closes the port and tells the listener from the event loop, once.
///    Unlinking the device's file alone takes no line away.
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
  void Fetch();
  void OnReadyRead();
  void OnError(QSerialPort::SerialPortError error);
  void NoteLoss();
  void Lose(unsigned opening);
  LineState RequireLine();

  const PortDirectory& directory_;
  QSerialPort port_;
  QString device_;                       ///< as the operator knows it
  std::unique_ptr<QObject> loss_watch_;  ///< lives as long as the line is open
  unsigned opening_ = 0;                 ///< counts openings: a loss concerns its own opening only
  bool is_lost_ = false;                 ///< the line is gone, the closing on its way
  bool is_fetching_ = false;             ///< what arrives is read already
};

}  // namespace kalde2
