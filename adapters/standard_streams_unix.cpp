#include <langinfo.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <string_view>

#include "adapters/standard_streams.h"

namespace kalde2 {

bool ErrorsAreSeen() {
  return isatty(STDERR_FILENO) != 0;
}

void SurviveClosedPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

void SpeakUtf8() {
  std::setlocale(LC_ALL, "");
  if (std::string_view(nl_langinfo(CODESET)) != "UTF-8") setenv("LC_ALL", "C.UTF-8", 1);
}

}  // namespace kalde2
