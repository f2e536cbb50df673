#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "link/clock.h"
#include "link/fault.h"
#include "link/mod_comms.h"
#include "link/serial_port.h"
#include "model/mod_Producttypes.h"
#include "model/progress.h"
#include "model/reply_display.h"
#include "model/unit_model.h"

namespace kalde2 {

/// A serial port that tests script: what is written is logged and handed to `on_write`, whose
/// result waits to be read at once. Later characters come through `Receive`.
class FakePort : public SerialPort {
 public:
  std::function<std::string(std::string_view frame)> on_write;  ///< none: the unit is silent
  bool open = true;
  std::vector<std::string> written;
  std::vector<PortSetup> setups;
  std::vector<Handshaking> handshaking;

  void Receive(std::string_view characters) { waiting_ += characters; }

  /// Receives, and says so.
  void Arrive(std::string_view characters) {
    Receive(characters);
    Listener()->MSComm1_OnComm();
  }

  /// The line goes away.
  void HangUp() {
    Close();
    Listener()->PortLost("hung up");
  }

  [[nodiscard]] bool PortOpen() const override { return open; }
  [[nodiscard]] std::optional<std::string> Open(const PortSetup& setup) override {
    setups.push_back(setup);
    open = true;
    return std::nullopt;
  }
  void Close() override {
    open = false;
    waiting_.clear();
  }
  void Output(std::string_view text) override {
    RequireOpen();
    written.emplace_back(text);
    if (on_write) waiting_ += on_write(written.back());
  }
  [[nodiscard]] std::string Input() override {
    RequireOpen();
    return std::exchange(waiting_, {});
  }
  void SetHandshaking(Handshaking mode) override {
    if (open) handshaking.push_back(mode);
  }

 private:
  void RequireOpen() const {
    if (!open) throw Fault("the port is closed");
  }

  std::string waiting_;
};

/// Time that passes only where the code under test waits. It begins half an hour past a full hour.
class FakeClock : public Clock {
 public:
  using milliseconds = std::chrono::milliseconds;

  std::vector<milliseconds> sleeps;

  /// Runs `event` inside the first wait that reaches this moment.
  void After(milliseconds delay, std::function<void()> event) {
    events_.emplace(elapsed_ + delay, std::move(event));
  }

  /// Sets the time of the hour; scheduled events keep their distance.
  void SetMillisecondOfHour(milliseconds of_hour) {
    start_ = std::chrono::system_clock::time_point(std::chrono::hours(1) + of_hour - elapsed_);
  }

  /// Counts the waits from here on: that one test waits often is no endless wait.
  void StartCounting() { serves_ = 0; }

  void Advance(milliseconds duration) { elapsed_ += duration; }

  [[nodiscard]] std::chrono::system_clock::time_point Now() const override {
    return start_ + elapsed_;
  }
  [[nodiscard]] milliseconds Monotonic() const override { return elapsed_; }

  /// Runs the next event that is due within `at_most`, else lets all of `at_most` pass.
  void ServeEvents(milliseconds at_most) override {
    constexpr int kTooMany = 2'000'000;
    if (++serves_ > kTooMany) throw std::logic_error("the code under test waits for ever");
    const auto next = events_.begin();
    if (next == events_.end() || next->first > elapsed_ + at_most) {
      elapsed_ += at_most;
      return;
    }
    elapsed_ = std::max(elapsed_, next->first);
    const auto event = std::move(next->second);
    events_.erase(next);
    event();
  }

  void Sleep(milliseconds duration) override {
    sleeps.push_back(duration);
    elapsed_ += duration;
  }

 private:
  std::chrono::system_clock::time_point start_{std::chrono::minutes(30)};
  milliseconds elapsed_{0};
  std::multimap<milliseconds, std::function<void()>> events_;
  int serves_ = 0;
};

/// Log of an operation's course: "begin", "caption TEXT", "range 0 283", "value 3", "sleep", "end
/// 1".
class FakeProgress : public Progress {
 public:
  std::vector<std::string> log;
  bool shown = false;

  void Begin() override {
    shown = true;
    log.emplace_back("begin");
  }
  void SetCaption(std::string_view text) override { log.push_back("caption " + std::string(text)); }
  void SetRange(int minimum, int maximum) override {
    log.push_back("range " + std::to_string(minimum) + " " + std::to_string(maximum));
  }
  void SetValue(int value) override { log.push_back("value " + std::to_string(value)); }
  void SleepFollows() override { log.emplace_back("sleep"); }
  void End(bool is_complete) override {
    shown = false;
    log.emplace_back(is_complete ? "end 1" : "end 0");
  }
};

/// Log of what replies do to the window: "aspect 1", "lock 2", "value 159 50", "refresh on",
/// "refresh off".
class FakeDisplay : public ReplyDisplay, public RefreshTimer {
 public:
  std::vector<std::string> log;

  void ShowAspectAdjust(bool advanced) override {
    log.emplace_back(advanced ? "aspect 1" : "aspect 0");
  }
  void ShowLockMode(std::int32_t value) override { log.push_back("lock " + std::to_string(value)); }
  void ShowValue(std::int16_t address, std::int32_t value) override {
    log.push_back("value " + std::to_string(address) + " " + std::to_string(value));
  }
  void Enable() override { log.emplace_back("refresh on"); }
  void Disable() override { log.emplace_back("refresh off"); }
};

/// A unit that keeps what is written to it, by source and address, and answers every parameter
/// request; it does not know which parameters exist. Use as `port.on_write = std::ref(unit)`.
class EchoUnit {
 public:
  /// Source, group, index and address as they stand in frames ("104100D8") to six hex digits.
  std::map<std::string, std::string, std::less<>> values;

  /// The complete reply frame for a body such as "C4104100D8000002".
  [[nodiscard]] static std::string Framed(std::string_view body) {
    unsigned sum = 0;
    for (std::size_t i = 0; i + 1 < body.size(); i += 2) {
      sum += static_cast<unsigned>(std::stoul(std::string(body.substr(i, 2)), nullptr, 16));
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    return "F" + std::string(body) + kDigits[sum / 16 % 16] + kDigits[sum % 16] + "\r";
  }

  std::string operator()(std::string_view frame) {
    constexpr std::size_t kFields = 3;
    constexpr std::size_t kFieldsWidth = 8;
    constexpr std::size_t kValueWidth = 6;
    const std::string fields(frame.substr(kFields, kFieldsWidth));
    const bool is_read = frame.substr(1, 2) == "84";
    std::string& value = values.try_emplace(fields, kValueWidth, '0').first->second;
    if (!is_read) value = frame.substr(kFields + kFieldsWidth, kValueWidth);
    return Framed((is_read ? "C4" : "44") + fields + value);
  }
};

/// The inner half of the panel over fakes.
struct LinkFixture {
  FakePort port;
  FakeClock clock;
  FakeProgress progress;
  FakeDisplay display;
  UnitModel model{display, display};
  ParamCatalogue& catalogue = model.catalogue;
  Connectivity& connectivity = model.connectivity;
  ValueStore& values = model.values;
  CommandLink link{port, clock, model};

  void LoadProduct(std::int32_t type) { AddProductEntries(catalogue, type); }

  void Fit(std::initializer_list<int> sources) {
    for (const int source : sources) {
      connectivity.SourceFitted[static_cast<std::size_t>(source)] = true;
    }
  }
};

}  // namespace kalde2
