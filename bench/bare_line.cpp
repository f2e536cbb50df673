#include "bench/bare_line.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include "bench/figures.h"
#include "link/frame_codec.h"
#include "link/mod_datatypes.h"

namespace kalde2::bench {
namespace {

constexpr int kSilence = 1000;  // milliseconds

void Check(bool ok, const char* what) {
  if (!ok) throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

BareLine::BareLine(const std::string& device, int baud)
    : device_(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)) {
  Check(device_ >= 0, device.c_str());
  termios settings{};
  Check(tcgetattr(device_, &settings) == 0, "tcgetattr");
  cfmakeraw(&settings);
  cfsetspeed(&settings, baud == 115200 ? B115200 : B57600);
  Check(tcsetattr(device_, TCSANOW, &settings) == 0, "tcsetattr");
}

BareLine::~BareLine() {
  close(device_);
}

std::vector<double> BareLine::ReadAgain(std::int16_t address, int count) {
  const std::string request = HexToWire(BuildRequest({true, kFirstSourceCode, 0, address}));
  std::vector<double> times(static_cast<std::size_t>(count));
  for (double& time : times) time = Microseconds(RoundTrip(request));
  return times;
}

std::chrono::nanoseconds BareLine::RoundTrip(std::string_view request) {
  using Clock = std::chrono::steady_clock;
  std::array<char, 256> reply;
  const auto start = Clock::now();
  Check(write(device_, request.data(), request.size()) == static_cast<ssize_t>(request.size()),
        "write");
  while (true) {
    pollfd wait{device_, POLLIN, 0};
    if (poll(&wait, 1, kSilence) != 1) throw std::runtime_error("the unit is silent");
    const ssize_t count = read(device_, reply.data(), reply.size());
    Check(count > 0, "read");
    if (std::memchr(reply.data(), '\r', static_cast<std::size_t>(count)) != nullptr) break;
  }
  return Clock::now() - start;
}

}  // namespace kalde2::bench
