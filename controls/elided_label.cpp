#include "controls/elided_label.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace kalde2 {

ElidedLabel::ElidedLabel(int characters, QWidget* parent)
    : QLabel(parent), characters_(characters) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

QSize ElidedLabel::sizeHint() const {
  const QFontMetrics metrics(font());
  return {metrics.averageCharWidth() * characters_, metrics.height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        shown, foregroundRole());
}

}  // namespace kalde2
