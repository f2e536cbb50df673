#pragma once

namespace kalde2 {

/// Lets assistive tools work check boxes and option buttons as a click does. What the toolkit does
/// on their "toggle" changes the mark, but is no click to anybody.
void InstallAccessibleMarks();

}  // namespace kalde2
