#include "controls/line_list.h"

#include <QEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "controls/painting.h"

namespace kalde2 {
namespace {

constexpr int kFrameWidth = 2;  // room for the focus ring
constexpr float kFrameShare = 0.38F;
constexpr float kPaleSelection = 0.3F;

class LineDelegate : public QStyledItemDelegate {
 public:
  explicit LineDelegate(LineList* list) : QStyledItemDelegate(list), list_(list) {}

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override {
    return {QStyledItemDelegate::sizeHint(option, index).width(), list_->fontMetrics().height()};
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state &= ~QStyle::State_HasFocus;  // the list's ring tells
    const bool selected = (option->state & QStyle::State_Selected) != 0;
    if (!selected || list_->hasFocus()) return;
    const QColor base = list_->palette().color(QPalette::Base);
    const QColor pale = Blend(base, list_->palette().color(QPalette::Highlight), kPaleSelection);
    option->palette.setColor(QPalette::Highlight, pale);
    option->palette.setColor(QPalette::HighlightedText, option->palette.color(QPalette::Text));
  }

 private:
  LineList* list_;
};

}  // namespace

LineList::LineList(QWidget* parent) : QListWidget(parent) {
  setUniformItemSizes(true);
  setFrameStyle(QFrame::Box | QFrame::Plain);
  setLineWidth(kFrameWidth);
  setItemDelegate(new LineDelegate(this));
}

int LineList::HeightOfWholeLines(int room) const {
  const int line = fontMetrics().height();
  const int frame = 2 * frameWidth();
  return frame + (room - frame) / line * line;
}

bool LineList::event(QEvent* event) {
  if (event->type() != QEvent::Paint) return QListWidget::event(event);
  QPainter painter(this);
  const QColor base = palette().color(QPalette::Base);
  const QColor edge =
      Blend(palette().color(QPalette::Window), palette().color(QPalette::WindowText), kFrameShare);
  PaintBox(painter, rect(), base, edge);
  if (hasFocus()) PaintFocusRing(painter, rect(), palette());
  return true;
}

}  // namespace kalde2
