#pragma once

#include <QFontMetrics>
#include <QStyle>
#include <QWidget>

namespace kalde2 {

/// How wide a window has to be for its title to be read whole: the window manager writes it bold,
/// at times, and takes room for an icon and buttons at both ends.
[[nodiscard]] inline int WidthForTitle(const QWidget& window) {
  constexpr int kTitleBarHeights = 5;
  QFont bold = window.font();
  bold.setBold(true);
  return QFontMetrics(bold).horizontalAdvance(window.windowTitle()) +
         kTitleBarHeights * window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
}

}  // namespace kalde2
