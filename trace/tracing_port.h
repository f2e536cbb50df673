#pragma once

#include <chrono>
#include <functional>

#include "link/serial_port.h"
#include "trace/trace_file.h"

namespace kalde2 {

/// A port that tells what goes through another one, which does all the work. Time counts from the
/// making of the object.
class TracingPort final : public SerialPort, private PortListener {
 public:
  using Sink = std::function<void(const TraceEvent&)>;

  /// @param port must outlive this object, which becomes its listener
  /// @param sink told of bytes that have been sent or have been read, at once
  TracingPort(SerialPort& port, Sink sink);
  ~TracingPort() override;
  TracingPort(const TracingPort&) = delete;
  TracingPort& operator=(const TracingPort&) = delete;

  [[nodiscard]] bool PortOpen() const override { return port_.PortOpen(); }
  [[nodiscard]] std::optional<std::string> Open(const PortSetup& setup) override {
    return port_.Open(setup);
  }
  void Close() override { port_.Close(); }
  void Output(std::string_view text) override;
  [[nodiscard]] std::string Input() override;
  void SetHandshaking(Handshaking handshaking) override { port_.SetHandshaking(handshaking); }

 private:
  using Clock = std::chrono::steady_clock;

  void MSComm1_OnComm() override;
  void PortLost(const std::string& reason) override;
  void Tell(Clock::time_point time, Direction direction, std::string_view bytes) const;

  SerialPort& port_;
  Sink sink_;
  Clock::time_point start_ = Clock::now();
};

}  // namespace kalde2
