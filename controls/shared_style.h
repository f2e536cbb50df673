#pragma once

#include <QStyle>

namespace kalde2 {

/// The application's style with what this program's drop-down lists and marks need: lists that drop
/// down, and frames of check boxes and option buttons that are seen in a dark palette. One for all
/// of them, for each style of its own would cost as much as the application's; it goes with the
/// application.
[[nodiscard]] QStyle* SharedStyle();

}  // namespace kalde2
