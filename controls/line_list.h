#pragma once

#include <QListWidget>
#include <QWidgetItem>

namespace kalde2 {

/// A list of lines of one height that shows where the keys go: a ring with the focus, and a paler
/// selection without it.
class LineList : public QListWidget {
 public:
  explicit LineList(QWidget* parent);

  /// The height of the list with as many whole lines as fit into `room`.
  [[nodiscard]] int HeightOfWholeLines(int room) const;

 protected:
  bool event(QEvent* event) override;
};

/// A LineList's place in a layout, of which it takes what whole lines need.
class LineListItem : public QWidgetItem {
 public:
  explicit LineListItem(LineList* list) : QWidgetItem(list), list_(list) {}

  void setGeometry(const QRect& room) override {
    QWidgetItem::setGeometry(
        {room.topLeft(), QSize(room.width(), list_->HeightOfWholeLines(room.height()))});
  }

 private:
  LineList* list_;
};

}  // namespace kalde2
