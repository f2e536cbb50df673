#pragma once

#include <QLabel>
#include <QSpacerItem>

namespace kalde2 {

/// A line of plain text that says what the panel is doing. It takes neither focus nor clicks nor
/// room: whatever its text, nothing beside it moves, and what does not fit ends in dots. Screen
/// readers find the text as its name, and are told of each change.
class StatusLine : public QLabel {
  Q_OBJECT

 public:
  explicit StatusLine(QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// Room in the layout of one widget for another that is not its child, but lies over it.
class RoomFor : public QSpacerItem {
 public:
  /// @param owner whose layout this is an item of
  RoomFor(QWidget& guest, const QWidget& owner);

  void setGeometry(const QRect& place) override;

 private:
  QWidget& guest_;
  const QWidget& owner_;
};

}  // namespace kalde2
