#pragma once

#include <QSocketNotifier>
#include <functional>
#include <string>

#include "adapters/pseudo_terminal.h"
#include "link/serial_port.h"

namespace kalde2 {

/// Stands between a panel on a pseudo-terminal and a unit on a port: passes on what comes from
/// either, unchanged and at once, from the event loop. What a panel leaves unread beyond the
/// terminal's own buffer, which holds more than that of a serial port, is lost as on a line.
class Relay final : private PortListener {
 public:
  struct Events {
    std::function<void()> bytes_lost;                          ///< the panel does not read
    std::function<void(const std::string& reason)> unit_lost;  ///< the line went away, once
  };

  /// @param panel, unit must outlive this object, which becomes the port's listener
  Relay(PseudoTerminal& panel, SerialPort& unit, Events events);
  ~Relay() override;
  Relay(const Relay&) = delete;
  Relay& operator=(const Relay&) = delete;

 private:
  void PassToUnit();
  void MSComm1_OnComm() override;
  void PortLost(const std::string& reason) override;

  PseudoTerminal& panel_;
  SerialPort& unit_;
  Events events_;
  QSocketNotifier from_panel_;
};

}  // namespace kalde2
