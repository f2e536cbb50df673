#include <io.h>
#include <stdio.h>

#include "adapters/standard_streams.h"

namespace kalde2 {

bool ErrorsAreSeen() {
  return _isatty(_fileno(stderr)) != 0;
}

// There is no signal for it.
void SurviveClosedPipes() {}

// Nor does Qt ask for one.
void SpeakUtf8() {}

}  // namespace kalde2
