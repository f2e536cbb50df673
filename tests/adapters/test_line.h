#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <ctime>
#include <string>
#include <string_view>

namespace kalde2 {

/// The unit's end of a pseudo-terminal.
class TestLine {
 public:
  TestLine() { Reopen(); }
  ~TestLine() { HangUp(); }
  TestLine(const TestLine&) = delete;
  TestLine& operator=(const TestLine&) = delete;

  [[nodiscard]] const std::string& Device() const { return device_; }

  /// A new pseudo-terminal in place of the one before.
  void Reopen() {
    HangUp();
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    grantpt(master_);
    unlockpt(master_);
    device_ = ptsname(master_);
  }

  void HangUp() {
    if (master_ >= 0) close(master_);
    master_ = -1;
  }

  bool Send(std::string_view bytes) const {
    return write(master_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  }

  /// What has arrived, waiting for the first of it.
  [[nodiscard]] std::string Receive(std::chrono::milliseconds at_most) const {
    pollfd descriptor{.fd = master_, .events = POLLIN, .revents = 0};
    std::array<char, 4096> bytes;
    if (poll(&descriptor, 1, static_cast<int>(at_most.count())) <= 0) return {};
    const ssize_t count = read(master_, bytes.data(), bytes.size());
    return {bytes.data(), static_cast<std::size_t>(count > 0 ? count : 0)};
  }

  /// The settings of the panel's end.
  [[nodiscard]] termios Settings() const {
    termios settings{};
    tcgetattr(master_, &settings);
    return settings;
  }

 private:
  int master_ = -1;
  std::string device_;
};

/// CPU time of this process so far. POSIX counts it in microseconds.
inline std::chrono::microseconds CpuTime() {
  static_assert(CLOCKS_PER_SEC == 1'000'000);
  return std::chrono::microseconds(std::clock());
}

}  // namespace kalde2
