#pragma once

namespace kalde2 {

/// Whether somebody at a terminal sees what goes to standard error.
[[nodiscard]] bool ErrorsAreSeen();

/// From here on writing to a pipe that nobody reads any more fails; it does not end the program.
void SurviveClosedPipes();

/// Sees to a locale of UTF-8, which programs that the system starts do without, and of whose
/// absence Qt complains from 6.8 on. To be called before Qt is.
void SpeakUtf8();

}  // namespace kalde2
