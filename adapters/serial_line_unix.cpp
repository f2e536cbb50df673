#include <poll.h>
#include <termios.h>

#include <QFileInfo>
#include <QLockFile>
#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>
#include <vector>

#include "adapters/serial_line.h"

namespace kalde2 {
namespace {

constexpr cc_t kXon = 0x11;
constexpr cc_t kXoff = 0x13;
constexpr tcflag_t kSoftwareFlags = IXON | IXOFF | IXANY;

constexpr tcflag_t SoftwareFlags(Handshaking handshaking) {
  return handshaking == Handshaking::kRtsXonXoff ? IXON | IXOFF : 0;
}

/// Where QSerialPort looks for a folder for its locks, in its order.
constexpr std::array kLockFolders = {"/var/lock",         "/etc/locks", "/var/spool/locks",
                                     "/var/spool/uucp",   "/tmp",       "/var/tmp",
                                     "/var/lock/lockdev", "/run/lock"};

/// A process of another user runs, too, though it takes no signal.
bool Runs(qint64 process) {
  return kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
}

/// The lock files that there are of a device, with whether their owners run.
std::vector<std::pair<QString, bool>> Locks(const QString& device) {
  std::vector<std::pair<QString, bool>> locks;
  QString name = CanonicalDevice(device);
  if (name.startsWith(QLatin1String("/dev/"))) name.remove(0, 5);
  name.replace('/', '_');
  for (const char* const folder : kLockFolders) {
    const QFileInfo file(QString("%1/LCK..%2").arg(QLatin1String(folder), name));
    qint64 owner = 0;
    QString host;
    QString program;
    const bool tells =
        file.exists() && QLockFile(file.filePath()).getLockInfo(&owner, &host, &program);
    if (tells) locks.emplace_back(file.canonicalFilePath(), Runs(owner));
  }
  return locks;
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

LineState LookAt(LineHandle line) {
  pollfd descriptor{.fd = line, .events = POLLIN | POLLOUT, .revents = 0};
  if (poll(&descriptor, 1, 0) <= 0) return {};
  const auto has = [&](int events) { return (descriptor.revents & events) != 0; };
  // To poll() of macOS devices are POLLNVAL.
  return {.is_gone = has(POLLHUP | POLLERR),
          .has_input = has(POLLIN | POLLNVAL),
          .takes_output = has(POLLOUT | POLLNVAL)};
}

// A line that has hung up is readable for good and gives nothing, which Qt 6.8 takes for no news.
std::unique_ptr<QObject> WatchForLoss(LineHandle line, std::function<void()> on_loss) {
  auto watch = std::make_unique<QSocketNotifier>(line, QSocketNotifier::Exception);
  QObject::connect(watch.get(), &QSocketNotifier::activated,
                   [notifier = watch.get(), on_loss = std::move(on_loss)] {
                     notifier->setEnabled(false);
                     on_loss();
                   });
  return watch;
}

QString CanonicalDevice(const QString& device) {
  return QFileInfo(device).canonicalFilePath();
}

QString AbandonedLock(const QString& device) {
  for (const auto& [path, runs] : Locks(device)) {
    if (!runs) return path;
  }
  return {};
}

bool IsLocked(const QString& device) {
  return std::ranges::any_of(Locks(device), [](const auto& lock) { return lock.second; });
}

bool MayOpen(const QString& device) {
  const QFileInfo info(device);
  return info.isReadable() && info.isWritable();
}

}  // namespace kalde2
