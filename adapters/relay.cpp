#include "adapters/relay.h"

#include <utility>

#include "link/fault.h"

namespace kalde2 {

Relay::Relay(PseudoTerminal& panel, SerialPort& unit, Events events)
    : panel_(panel),
      unit_(unit),
      events_(std::move(events)),
      from_panel_(panel.Descriptor(), QSocketNotifier::Read) {
  unit_.SetListener(this);
  QObject::connect(&from_panel_, &QSocketNotifier::activated, [this] { PassToUnit(); });
}

Relay::~Relay() {
  unit_.SetListener(nullptr);
}

void Relay::PassToUnit() {
  const std::string bytes = panel_.Read();
  if (bytes.empty()) return;
  try {
    unit_.Output(bytes);
  } catch (const Fault&) {
    // The line is gone, and PortLost is on its way.
  }
}

void Relay::MSComm1_OnComm() {
  try {
    const std::string bytes = unit_.Input();
    if (panel_.Write(bytes) < bytes.size()) events_.bytes_lost();
  } catch (const Fault&) {
    // As above.
  }
}

void Relay::PortLost(const std::string& reason) {
  from_panel_.setEnabled(false);
  events_.unit_lost(reason);
}

}  // namespace kalde2
