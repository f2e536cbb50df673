#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QRectF>

namespace kalde2 {

/// Colour between `from` and `to`; `share` 0 gives `from`, 1 gives `to`. Looks are mixed from
/// colours of the palette with it, so that they hold in light and in dark ones.
[[nodiscard]] QColor Blend(const QColor& from, const QColor& to, float share);

/// `rect` moved to whole pixels of the device that `painter` paints on, so that edges stay sharp at
/// fractional scales too.
[[nodiscard]] QRectF SnapToDevicePixels(const QPainter& painter, const QRectF& rect);

/// Paints a rounded box: an edge inside `rect`, `edge_width` wide but at least one device pixel,
/// around `face`. Switches antialiasing on.
void PaintBox(QPainter& painter, const QRectF& rect, const QColor& face, const QColor& edge,
              qreal edge_width = 1);

/// Paints the ring that tells which control has the focus, just inside `rect`.
void PaintFocusRing(QPainter& painter, const QRectF& rect, const QPalette& colors);

}  // namespace kalde2
