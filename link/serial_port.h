#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kalde2 {

/// Flow control of the line, under the numbers that the panel's port settings use.
enum class Handshaking : std::int16_t {
  kRts = 2,         ///< RTS/CTS
  kRtsXonXoff = 3,  ///< RTS/CTS together with XON/XOFF
};

/// Everything that is set on a port before it is opened.
struct PortSetup {
  std::string settings;  ///< "57600,N,8,1": baud rate, parity, data bits, stop bits
  Handshaking handshaking = Handshaking::kRtsXonXoff;
  bool dtr_enable = true;
  std::int16_t comm_port = 1;  ///< port number as the operator knows it
};

/// Who wants to know what happens on the port while no call waits for it.
class PortListener {
 public:
  virtual ~PortListener() = default;

  /// The receive event: characters may be waiting.
  virtual void MSComm1_OnComm() = 0;

  /// The line went away. The port is closed already; this comes once, never from within a call.
  /// @param reason for the operator, UTF-8
  virtual void PortLost(const std::string& reason) = 0;
};

/// The serial port `MSComm1`. What cannot be sent or received because the port is closed or fails
/// is a Fault; that opening fails is an outcome.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  [[nodiscard]] virtual bool PortOpen() const = 0;

  /// Opens the port. @return nothing on success, else the description of the error, UTF-8
  [[nodiscard]] virtual std::optional<std::string> Open(const PortSetup& setup) = 0;

  /// Closes the port; a closed port stays closed.
  virtual void Close() = 0;

  /// Writes a whole text in one call. @throws Fault
  virtual void Output(std::string_view text) = 0;

  /// Reads and removes all characters waiting; empty when there are none. @throws Fault
  [[nodiscard]] virtual std::string Input() = 0;

  /// Changes the flow control of the open port; a closed port is left alone.
  virtual void SetHandshaking(Handshaking handshaking) = 0;

  /// The one listener, nullptr for none; it must outlive the port or be taken away before.
  void SetListener(PortListener* listener) { listener_ = listener; }

 protected:
  [[nodiscard]] PortListener* Listener() const { return listener_; }

 private:
  PortListener* listener_ = nullptr;
};

}  // namespace kalde2
