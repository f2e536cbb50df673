#pragma once

#include <chrono>
#include <cstddef>
#include <utility>

#include "link/serial_port.h"

namespace kalde2::bench {

/// Another port, with its traffic noted.
class CountingPort final : public SerialPort, private PortListener {
 public:
  explicit CountingPort(SerialPort& port) : port_(port) { port_.SetListener(this); }
  ~CountingPort() override { port_.SetListener(nullptr); }
  CountingPort(const CountingPort&) = delete;
  CountingPort& operator=(const CountingPort&) = delete;

  /// What went over the line since the last call, up to the first pause of a second.
  struct Traffic {
    using Clock = std::chrono::steady_clock;

    std::size_t characters = 0;  ///< both ways
    Clock::time_point first;     ///< when the first was sent
    Clock::time_point last;      ///< when the last was received
  };
  [[nodiscard]] Traffic TakeTraffic() {
    has_paused_ = false;
    return std::exchange(traffic_, {});
  }

  [[nodiscard]] bool PortOpen() const override { return port_.PortOpen(); }
  [[nodiscard]] std::optional<std::string> Open(const PortSetup& setup) override {
    return port_.Open(setup);
  }
  void Close() override { port_.Close(); }
  void Output(std::string_view text) override {
    NoteSent(text.size());
    port_.Output(text);
  }
  [[nodiscard]] std::string Input() override {
    std::string text = port_.Input();
    if (!text.empty() && !has_paused_) {
      traffic_.characters += text.size();
      traffic_.last = Traffic::Clock::now();
    }
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

  void NoteSent(std::size_t characters) {
    constexpr std::chrono::seconds kPause(1);
    const auto now = Traffic::Clock::now();
    if (traffic_.characters == 0) traffic_.first = traffic_.last = now;
    has_paused_ = has_paused_ || now - traffic_.last > kPause;
    if (!has_paused_) traffic_.characters += characters;
  }

  SerialPort& port_;
  Traffic traffic_;
  bool has_paused_ = false;
};

}  // namespace kalde2::bench
