#pragma once

#include <QComboBox>

namespace kalde2 {

/// A drop-down list that changes only by a choice: typing opens it and searches in it, and Enter or
/// a click chooses. The arrow keys go from entry to entry while it is closed; the wheel does so
/// only while it has the focus. The open list shows 15 entries and a scroll bar for the others.
class DropDownList : public QComboBox {
 public:
  explicit DropDownList(QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace kalde2
