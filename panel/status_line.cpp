#include "panel/status_line.h"

#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace kalde2 {

StatusLine::StatusLine(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFocusPolicy(Qt::NoFocus);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  // No accessible name of its own: it is the text, whose changes QLabel tells.
}

QSize StatusLine::minimumSizeHint() const {
  return {0, fontMetrics().height()};
}

void StatusLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        shown, foregroundRole());
}

RoomFor::RoomFor(QWidget& guest, const QWidget& owner)
    : QSpacerItem(0, guest.minimumSizeHint().height(), QSizePolicy::Minimum,
                  QSizePolicy::MinimumExpanding),
      guest_(guest),
      owner_(owner) {}

void RoomFor::setGeometry(const QRect& place) {
  QSpacerItem::setGeometry(place);
  // In a room much too high it stays near what it stands below.
  const int room = std::min(place.height(), 2 * guest_.minimumSizeHint().height());
  guest_.setGeometry(
      {owner_.mapTo(guest_.parentWidget(), place.topLeft()), QSize(place.width(), room)});
}

}  // namespace kalde2
