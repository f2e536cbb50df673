#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QCoreApplication>
#include <QTest>
#include <QTimerEvent>
#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "simulator/unit.h"
#include "tests/support/fake_dialogs.h"
#include "tests/support/fake_link.h"
#include "tests/support/window_fixture.h"

namespace kalde2 {

/// Time that passes only in waits; each wait also serves what Qt has pending.
class QtFakeClock : public FakeClock {
 public:
  int deepest_wait = 0;  ///< how many waits have stood inside one another at most

  void ServeEvents(std::chrono::milliseconds at_most) override {
    deepest_wait = std::max(deepest_wait, ++waits_);
    QCoreApplication::processEvents();
    FakeClock::ServeEvents(at_most);
    QCoreApplication::processEvents();
    --waits_;
  }

 private:
  int waits_ = 0;
};

/// A directory of one port.
class FakePorts : public PortDirectory {
 public:
  [[nodiscard]] std::string DeviceFor(int /*number*/) const override { return "/dev/fake1"; }
  [[nodiscard]] std::vector<NumberedPort> PresentPorts() const override {
    return {{1, "/dev/fake1"}};
  }
};

/// A store in memory; what is absent differs from what is empty.
class FakeSettings : public SettingsStore {
 public:
  std::map<std::pair<std::string, std::string>, std::string> values;

  [[nodiscard]] std::string GetSetting(const std::string& section, const std::string& key,
                                       const std::string& fallback) const override {
    const auto found = values.find({section, key});
    return found == values.end() ? fallback : found->second;
  }
  void SaveSetting(const std::string& section, const std::string& key,
                   const std::string& value) override {
    values[{section, key}] = value;
  }
};

/// The whole panel over fakes, with a simulated unit in the same process as the other end. What the
/// unit answers later than at once comes by the fake clock.
class PanelFixture : public WindowFixture {
 public:
  /// Composes the panel as main() does and shows its window; settings made before count.
  void Start() {
    port.open = false;
    panel = std::make_unique<frm_vornik>(
        Platform{port, ports, clock, settings, boxes, dialogs, [this] { ++ends; }});
    Window().show();
    QCoreApplication::processEvents();
  }

  /// Connects a simulated unit to the port.
  void ConnectUnit(UnitOptions options = {}) {
    unit = std::make_unique<SimulatedUnit>(std::move(options));
    port.on_write = [this](std::string_view frame) { return AnswerOfUnit(frame); };
  }

  /// Starts the panel with a unit of this type and opens the port.
  void StartAndOpen(int type = 35, std::vector<int> sources = {16, 17, 48, 64, 80}) {
    ConnectUnit({.product_type = type, .fitted_sources = std::move(sources)});
    Start();
    Press("Cmd_openclose");
  }

  [[nodiscard]] frm_vornik& Window() const override { return *panel; }

  /// Gives a control the focus, and the window, from which the progress window has taken it.
  void Focus(QWidget& control) {
    Window().activateWindow();
    QCoreApplication::processEvents();
    control.setFocus();
  }

  /// Lets a running timer of the window tick now. @return false where it does not run
  bool Tick(const char* name) {
    auto* const timer = Find<QTimer>(name);
    if (!timer->isActive()) return false;
    QTimerEvent tick(timer->timerId());
    return QCoreApplication::sendEvent(timer, &tick);
  }

  /// Sends a frame of the unit unasked, through the receive event, and lets the timer cut it out.
  void Unasked(std::string_view frame) {
    port.Arrive(frame);
    Tick("TmrProcessMessage");
  }

  /// Starts the panel with a unit and lets the first refresh of the command list pass.
  void OpenSettled(int type = 35) {
    StartAndOpen(type);
    Tick("tmr_updatelstCommands");
    (void)Written();
  }

  /// The request that writes a value, as it goes to the unit.
  [[nodiscard]] static std::string WriteOf(int address, int value, int source = 16) {
    constexpr int kFirst24Bits = 0xFFFFFF;
    char body[32];
    std::snprintf(body, sizeof body, "04%02X410%03X%06X", static_cast<unsigned>(source),
                  static_cast<unsigned>(address), static_cast<unsigned>(value & kFirst24Bits));
    return EchoUnit::Framed(body);
  }

  /// The request that reads a parameter of source 0x10.
  [[nodiscard]] static std::string ReadOf(int address) {
    char body[32];
    std::snprintf(body, sizeof body, "8410410%03X", static_cast<unsigned>(address));
    return EchoUnit::Framed(body);
  }

  /// The frames written since the last call.
  [[nodiscard]] std::vector<std::string> Written() { return std::exchange(port.written, {}); }

  QtFakeClock clock;
  FakePort port;
  FakePorts ports;
  FakeSettings settings;
  FakeBoxes boxes;
  FakeFileDialogs dialogs;
  int ends = 0;  ///< how often the program was ended
  std::unique_ptr<SimulatedUnit> unit;
  std::unique_ptr<frm_vornik> panel;

 private:
  std::string AnswerOfUnit(std::string_view frame) {
    std::string now;
    for (const LineAction& action : unit->Receive(frame)) {
      if (action.after.count() == 0 && !action.hang_up) {
        now += action.bytes;
      } else {
        clock.After(action.after, [this, action, opening = port.setups.size()] {
          // What comes for an earlier opening is lost with it.
          if (port.open && port.setups.size() == opening) Happen(action);
        });
      }
    }
    return now;
  }

  void Happen(const LineAction& action) {
    if (action.hang_up) {
      port.HangUp();
    } else {
      port.Arrive(action.bytes);
    }
  }
};

}  // namespace kalde2
