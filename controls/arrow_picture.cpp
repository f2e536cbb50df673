#include "controls/arrow_picture.h"

#include <QAccessibleWidget>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>

#include "controls/painting.h"

namespace kalde2 {
namespace {

// Shares of the second colour in the mixed colours of the face and its edge.
constexpr float kHoverShare = 0.22F;
constexpr float kEdgeShare = 0.38F;

/// Half the base of the arrow head, as a share of the picture's shorter side and, so that the heads
/// of one pad look alike, of the font's height at the most.
constexpr qreal kHeadOfSide = 0.36;
constexpr qreal kHeadOfFont = 0.36;

/// Presents an arrow as a push button that assistive tools can press.
class AccessibleArrow : public QAccessibleWidget {
 public:
  explicit AccessibleArrow(ArrowPicture* picture)
      : QAccessibleWidget(picture, QAccessible::Button), picture_(picture) {}

  [[nodiscard]] QStringList actionNames() const override {
    return picture_->isEnabled() ? QStringList{pressAction()} : QStringList{};
  }

  void doAction(const QString& action) override {
    if (action != pressAction() || !picture_->isEnabled()) return;
    emit picture_->Activated();
  }

 private:
  ArrowPicture* const picture_;
};

QAccessibleInterface* MakeAccessibleArrow(const QString& /*class_name*/, QObject* object) {
  auto* picture = qobject_cast<ArrowPicture*>(object);
  return picture != nullptr ? new AccessibleArrow(picture) : nullptr;
}

/// The arrow head pointing up, around the origin, scaled by half its base.
QPolygonF ArrowHead(qreal half) {
  return QPolygonF({QPointF(-half, half / 2), QPointF(0, -half / 2), QPointF(half, half / 2)});
}

qreal RotationOf(Qt::ArrowType direction) {
  switch (direction) {
    case Qt::RightArrow:
      return 90;
    case Qt::DownArrow:
      return 180;
    case Qt::LeftArrow:
      return 270;
    default:
      return 0;
  }
}

}  // namespace

ArrowPicture::ArrowPicture(Qt::ArrowType direction, QWidget* parent)
    : QWidget(parent), direction_(direction) {
  QAccessible::installFactory(MakeAccessibleArrow);  // a second installation changes nothing
  setAttribute(Qt::WA_Hover);                        // repaint when the pointer comes and goes
}

void ArrowPicture::ShowPressed(bool pressed) {
  pressed_ = pressed;
  update();
}

void ArrowPicture::mousePressEvent(QMouseEvent* event) {
  event->accept();
  emit Pressed();
}

void ArrowPicture::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  emit Released();
}

QColor ArrowPicture::FaceColor() const {
  const QPalette& colors = palette();
  if (pressed_) return colors.color(QPalette::Highlight);
  if (isEnabled() && underMouse()) {
    return Blend(colors.color(QPalette::Button), colors.color(QPalette::Highlight), kHoverShare);
  }
  return colors.color(QPalette::Button);
}

void ArrowPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QPalette& colors = palette();
  const QColor ink = colors.color(pressed_ ? QPalette::HighlightedText : QPalette::ButtonText);
  const QColor face = FaceColor();
  PaintBox(painter, rect(), face, Blend(face, ink, kEdgeShare));

  const qreal half = std::min(std::min(width(), height()) * kHeadOfSide,
                              QFontMetrics(font()).height() * kHeadOfFont);
  painter.translate(QRectF(rect()).center());
  painter.rotate(RotationOf(direction_));
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink);
  painter.drawPolygon(ArrowHead(half));
}

}  // namespace kalde2
