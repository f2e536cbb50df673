#pragma once

#include <chrono>
#include <stdexcept>
#include <string>

#include "bench/counting_port.h"
#include "panel/frm_vornik.h"
#include "tests/support/real_adapters.h"

namespace kalde2::bench {

/// A measurement in which the panel has something to complain about is none.
class NoBoxes final : public MessageBoxes {
 public:
  void Show(std::string_view prompt, BoxIcon, std::string_view) override { Stop(prompt); }
  [[nodiscard]] bool Confirm(std::string_view prompt, std::string_view) override { Stop(prompt); }

 private:
  [[noreturn]] static void Stop(std::string_view prompt) {
    throw std::runtime_error("the panel says: " + std::string(prompt));
  }
};

/// The panel on its real adapters, as the program composes it, with the line's characters counted.
class RealPanel {
 public:
  using Clock = std::chrono::steady_clock;

  RealPanel() {
    Window().show();
    Serve(std::chrono::milliseconds(200));
  }

  /// Opens port 1 and takes the panel through detection and connectivity.
  /// @param baud one of the rates that the panel offers
  void Open(int baud);
  void Close();

  /// Lets the panel work for a time; sleeps where it does.
  static void Serve(std::chrono::milliseconds time);

  [[nodiscard]] frm_vornik& Window() { return window_; }
  [[nodiscard]] VornikForm& Form() { return Window().Form(); }
  [[nodiscard]] CountingPort& Port() { return counted_; }

 private:
  RealAdapters real_;
  CountingPort counted_{real_.port};
  NoBoxes boxes_;
  frm_vornik window_{
      {counted_, real_.ports, real_.clock, real_.settings, boxes_, real_.dialogs, [] {}}};
};

}  // namespace kalde2::bench
