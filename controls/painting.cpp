#include "controls/painting.h"

#include <QTransform>
#include <algorithm>
#include <cmath>

namespace kalde2 {
namespace {

constexpr qreal kCornerRadius = 2.5;
constexpr qreal kFocusRingWidth = 1.5;

}  // namespace

QColor Blend(const QColor& from, const QColor& to, float share) {
  const auto mix = [share](float a, float b) { return a + (b - a) * share; };
  return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                          mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

QRectF SnapToDevicePixels(const QPainter& painter, const QRectF& rect) {
  const QTransform to_device = painter.deviceTransform();
  const QRectF device = to_device.mapRect(rect);
  const QPointF top_left(std::round(device.left()), std::round(device.top()));
  const QPointF bottom_right(std::round(device.right()), std::round(device.bottom()));
  return to_device.inverted().mapRect(QRectF(top_left, bottom_right));
}

void PaintBox(QPainter& painter, const QRectF& rect, const QColor& face, const QColor& edge,
              qreal edge_width) {
  // A pen is centred on its outline: half its width inside puts the edge on whole pixels.
  const qreal scale = painter.deviceTransform().m11();
  const qreal width = std::max(1.0, std::round(edge_width * scale)) / scale;
  const qreal inset = width / 2;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(edge, width));
  painter.setBrush(face);
  painter.drawRoundedRect(SnapToDevicePixels(painter, rect).adjusted(inset, inset, -inset, -inset),
                          kCornerRadius, kCornerRadius);
}

void PaintFocusRing(QPainter& painter, const QRectF& rect, const QPalette& colors) {
  PaintBox(painter, rect, Qt::transparent, colors.color(QPalette::Highlight), kFocusRingWidth);
}

}  // namespace kalde2
