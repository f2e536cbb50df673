#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "simulator/stop_signal.h"

namespace kalde2 {
namespace {

constexpr std::array kStopSignals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler can reach nothing but this.
volatile std::sig_atomic_t write_end = -1;

extern "C" void OnStopSignal(int) {
  const int saved_errno = errno;
  // A full pipe says it already.
  if (write(write_end, "", 1) < 0) errno = saved_errno;
}

void SetHandler(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigaction(signal, &action, nullptr);
}

}  // namespace

StopSignal::StopSignal() {
  int ends[2];
  if (pipe(ends) != 0) {
    std::perror("pipe");
    std::exit(EXIT_FAILURE);
  }
  for (const int end : ends) {
    fcntl(end, F_SETFL, O_NONBLOCK);
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  read_end_ = ends[0];
  write_end = ends[1];
  for (const int signal : kStopSignals) SetHandler(signal, OnStopSignal);
  SetHandler(SIGPIPE, SIG_IGN);
}

StopSignal::~StopSignal() {
  for (const int signal : kStopSignals) SetHandler(signal, SIG_DFL);
  close(write_end);
  close(read_end_);
}

}  // namespace kalde2
