#include <io.h>
#include <stdio.h>

#include "adapters/standard_streams.h"

namespace kalde2 {

bool ErrorsAreSeen() {
  return _isatty(_fileno(stderr)) != 0;
}

// There is no signal for it.
void SurviveClosedPipes() {}

}  // namespace kalde2
