#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "adapters/pseudo_terminal.h"

namespace kalde2 {
namespace {

struct Rate {
  speed_t speed;
  int baud;
};

constexpr std::array kRates = std::to_array<Rate>({{B1200, 1200},
                                                   {B2400, 2400},
                                                   {B4800, 4800},
                                                   {B9600, 9600},
                                                   {B19200, 19200},
                                                   {B38400, 38400},
                                                   {B57600, 57600},
                                                   {B115200, 115200},
                                                   {B230400, 230400}});

PseudoTerminal::Opening Failure(const std::string& what, int master) {
  const std::string problem = what + ": " + std::strerror(errno);
  if (master >= 0) close(master);
  return {nullptr, problem};
}

bool MakeRaw(int descriptor) {
  termios settings{};
  if (tcgetattr(descriptor, &settings) != 0) return false;
  cfmakeraw(&settings);
  return tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

}  // namespace

PseudoTerminal::Opening PseudoTerminal::Open() {
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0) return Failure("cannot open a pseudo-terminal", master);
  const bool is_ready = grantpt(master) == 0 && unlockpt(master) == 0 &&
                        fcntl(master, F_SETFL, O_NONBLOCK) == 0 &&
                        fcntl(master, F_SETFD, FD_CLOEXEC) == 0;
  const char* name = is_ready ? ptsname(master) : nullptr;
  if (name == nullptr) return Failure("cannot prepare the pseudo-terminal", master);
  const std::string device = name;
  const int slave = open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (slave < 0) return Failure("cannot open " + device, master);
  auto terminal = std::make_unique<PseudoTerminal>(master, slave, device);
  if (!MakeRaw(slave)) return Failure("cannot set up " + device, -1);
  return {std::move(terminal), {}};
}

PseudoTerminal::PseudoTerminal(int master, int slave, std::string device)
    : master_(master), slave_(slave), device_(std::move(device)) {}

PseudoTerminal::~PseudoTerminal() {
  close(slave_);
  close(master_);
}

std::string PseudoTerminal::Read() {
  std::array<char, 4096> buffer;
  const ssize_t count = read(master_, buffer.data(), buffer.size());
  return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
}

std::size_t PseudoTerminal::Write(std::string_view bytes) {
  std::size_t taken = 0;
  while (taken < bytes.size()) {
    const ssize_t count = write(master_, bytes.data() + taken, bytes.size() - taken);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    taken += static_cast<std::size_t>(count);
  }
  return taken;
}

int PseudoTerminal::PanelBaud() const {
  termios settings{};
  if (tcgetattr(slave_, &settings) != 0) return 0;
  const speed_t speed = cfgetospeed(&settings);
  const auto rate = std::find_if(kRates.begin(), kRates.end(),
                                 [&](const Rate& candidate) { return candidate.speed == speed; });
  return rate == kRates.end() ? 0 : rate->baud;
}

}  // namespace kalde2
