#pragma once

#include <QWidget>

namespace kalde2 {

/// One arrow of an ArrowControl: a flat button that looks released or pressed as its owner says and
/// reports every press and release of any mouse button. It steps nothing itself and takes no focus.
/// Screen readers see a push button.
class ArrowPicture : public QWidget {
  Q_OBJECT

 public:
  ArrowPicture(Qt::ArrowType direction, QWidget* parent);

  /// Chooses between the pressed and the released look.
  void ShowPressed(bool pressed);

 signals:
  /// A mouse button went down on the arrow; the second press of a double click counts as well.
  void Pressed();
  /// A mouse button went up after a press on the arrow, wherever the pointer is by then.
  void Released();
  /// An assistive tool pressed the arrow, which holds nothing.
  void Activated();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QColor FaceColor() const;

  const Qt::ArrowType direction_;
  bool pressed_ = false;
};

}  // namespace kalde2
