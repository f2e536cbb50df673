#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "adapters/signal_pipe.h"

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

using Handler = void (*)(int);

Handler HandlerOf(int signal) {
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  return action.sa_handler;
}

void SetHandler(int signal, Handler handler) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigaction(signal, &action, nullptr);
}

}  // namespace

SignalPipe::SignalPipe(Ignored ignored) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  for (const int end : ends) {
    fcntl(end, F_SETFL, O_NONBLOCK);
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  read_end_ = ends[0];
  write_end = ends[1];
  for (const int signal : kEndSignals) {
    if (ignored == Ignored::kStays && HandlerOf(signal) == SIG_IGN) continue;
    SetHandler(signal, OnEndSignal);
  }
}

SignalPipe::~SignalPipe() {
  for (const int signal : kEndSignals) {
    if (HandlerOf(signal) == OnEndSignal) SetHandler(signal, SIG_DFL);
  }
  close(write_end);
  close(read_end_);
}

void SignalPipe::Drain() const {
  std::array<char, 64> bytes;
  while (read(read_end_, bytes.data(), bytes.size()) > 0) {
  }
}

}  // namespace kalde2
