#include <poll.h>
#include <termios.h>

#include <QFileInfo>

#include "adapters/serial_line.h"

namespace kalde2 {
namespace {

constexpr cc_t kXon = 0x11;
constexpr cc_t kXoff = 0x13;
constexpr tcflag_t kSoftwareFlags = IXON | IXOFF | IXANY;

constexpr tcflag_t SoftwareFlags(Handshaking handshaking) {
  return handshaking == Handshaking::kRtsXonXoff ? IXON | IXOFF : 0;
}

}  // namespace

bool SetFlowControl(LineHandle line, Handshaking handshaking) {
  termios wanted{};
  if (tcgetattr(line, &wanted) != 0) return false;
  wanted.c_cflag |= CRTSCTS;
  wanted.c_iflag = (wanted.c_iflag & ~kSoftwareFlags) | SoftwareFlags(handshaking);
  wanted.c_cc[VSTART] = kXon;
  wanted.c_cc[VSTOP] = kXoff;
  if (tcsetattr(line, TCSANOW, &wanted) != 0) return false;
  // Success only says that some of it was taken.
  termios actual{};
  return tcgetattr(line, &actual) == 0 && (actual.c_cflag & CRTSCTS) != 0 &&
         (actual.c_iflag & kSoftwareFlags) == SoftwareFlags(handshaking);
}

void RestartOutput(LineHandle line) {
  // Linux heeds TCOON only where TCOOFF was the last to stop the line, and not an XOFF.
  tcflow(line, TCOOFF);
  tcflow(line, TCOON);
}

bool CanWriteNow(LineHandle line) {
  pollfd descriptor{.fd = line, .events = POLLOUT, .revents = 0};
  return poll(&descriptor, 1, 0) > 0;
}

QString CanonicalDevice(const QString& device) {
  return QFileInfo(device).canonicalFilePath();
}

bool MayOpen(const QString& device) {
  const QFileInfo info(device);
  return info.isReadable() && info.isWritable();
}

}  // namespace kalde2
