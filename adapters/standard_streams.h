#pragma once

namespace kalde2 {

/// Whether somebody at a terminal sees what goes to standard error.
[[nodiscard]] bool ErrorsAreSeen();

/// From here on writing to a pipe that nobody reads any more fails; it does not end the program.
void SurviveClosedPipes();

}  // namespace kalde2
