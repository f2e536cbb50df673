#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "adapters/end_signals.h"

namespace kalde2 {
namespace {

constexpr std::array kEndSignals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler can do little more than write to a pipe, and can reach nothing but this.
volatile std::sig_atomic_t write_end = -1;

extern "C" void OnEndSignal(int) {
  const int saved_errno = errno;
  // A full pipe says it already.
  (void)!write(write_end, "", 1);
  errno = saved_errno;
}

/// The pipe's other end.
class PipeReader : public QSocketNotifier {
 public:
  using QSocketNotifier::QSocketNotifier;
  ~PipeReader() override {
    setEnabled(false);
    close(End());
  }

  void Drain() const {
    std::array<char, 64> bytes;
    while (read(End(), bytes.data(), bytes.size()) > 0) {
    }
  }

 private:
  [[nodiscard]] int End() const { return static_cast<int>(socket()); }
};

}  // namespace

EndSignals::EndSignals() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  for (const int end : ends) {
    fcntl(end, F_SETFL, O_NONBLOCK);
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  write_end = ends[1];
  auto* const reader = new PipeReader(ends[0], QSocketNotifier::Read, this);
  connect(reader, &QSocketNotifier::activated, this, [this, reader] {
    reader->Drain();
    emit Raised();
  });
  for (const int signal : kEndSignals) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action.sa_handler = OnEndSignal;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
  }
}

EndSignals::~EndSignals() {
  for (const int signal : kEndSignals) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler != OnEndSignal) continue;
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
  }
  close(write_end);
}

}  // namespace kalde2
