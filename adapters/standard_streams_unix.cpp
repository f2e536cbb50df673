#include <unistd.h>

#include <csignal>

#include "adapters/standard_streams.h"

namespace kalde2 {

bool ErrorsAreSeen() {
  return isatty(STDERR_FILENO) != 0;
}

void SurviveClosedPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace kalde2
