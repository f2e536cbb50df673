#pragma once

#include <cstddef>
#include <utility>

#include "link/serial_port.h"

namespace kalde2::bench {

/// Another port, with its characters counted in both directions.
class CountingPort final : public SerialPort, private PortListener {
 public:
  explicit CountingPort(SerialPort& port) : port_(port) { port_.SetListener(this); }
  ~CountingPort() override { port_.SetListener(nullptr); }
  CountingPort(const CountingPort&) = delete;
  CountingPort& operator=(const CountingPort&) = delete;

  /// Characters sent and received since the last call.
  [[nodiscard]] std::size_t TakeCount() { return std::exchange(characters_, 0); }

  [[nodiscard]] bool PortOpen() const override { return port_.PortOpen(); }
  [[nodiscard]] std::optional<std::string> Open(const PortSetup& setup) override {
    return port_.Open(setup);
  }
  void Close() override { port_.Close(); }
  void Output(std::string_view text) override {
    characters_ += text.size();
    port_.Output(text);
  }
  [[nodiscard]] std::string Input() override {
    std::string text = port_.Input();
    characters_ += text.size();
    return text;
  }
  void SetHandshaking(Handshaking handshaking) override { port_.SetHandshaking(handshaking); }

 private:
  void MSComm1_OnComm() override {
    if (Listener() != nullptr) Listener()->MSComm1_OnComm();
  }
  void PortLost(const std::string& reason) override {
    if (Listener() != nullptr) Listener()->PortLost(reason);
  }

  SerialPort& port_;
  std::size_t characters_ = 0;
};

}  // namespace kalde2::bench
