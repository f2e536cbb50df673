#include "trace/tracing_port.h"

#include <utility>

namespace kalde2 {

TracingPort::TracingPort(SerialPort& port, Sink sink) : port_(port), sink_(std::move(sink)) {
  port_.SetListener(this);
}

TracingPort::~TracingPort() {
  port_.SetListener(nullptr);
}

void TracingPort::Output(std::string_view text) {
  const Clock::time_point now = Clock::now();
  port_.Output(text);
  Tell(now, Direction::kToUnit, text);
}

std::string TracingPort::Input() {
  std::string text = port_.Input();
  Tell(Clock::now(), Direction::kFromUnit, text);
  return text;
}

void TracingPort::MSComm1_OnComm() {
  if (Listener() != nullptr) Listener()->MSComm1_OnComm();
}

void TracingPort::PortLost(const std::string& reason) {
  if (Listener() != nullptr) Listener()->PortLost(reason);
}

void TracingPort::Tell(Clock::time_point time, Direction direction, std::string_view bytes) const {
  using std::chrono::microseconds;
  if (bytes.empty()) return;
  sink_({std::chrono::duration_cast<microseconds>(time - start_), direction, std::string(bytes)});
}

}  // namespace kalde2
