#pragma once

#include <QFrame>

class QDoubleSpinBox;
class QLabel;

namespace kalde2 {

/// A small pop-up with a spin box that adjusts a value one step at a time. Every step takes effect
/// at once. Enter, or a click elsewhere, keeps the value and closes; Esc puts the value back that
/// stood there at opening and closes.
class FineAdjustPopup : public QFrame {
  Q_OBJECT

 public:
  /// What is adjusted: an integer in `min`..`max`, shown divided by ten to the power of `decimals`.
  struct Subject {
    int min;
    int max;
    int value;
    int decimals;
    QString name;  ///< shown before the spin box, and what screen readers call that
  };

  explicit FineAdjustPopup(QWidget* parent);

  /// Opens the pop-up with its top centre at `position` (in screen coordinates), moved as far as
  /// needed to lie on `parentWidget()`'s screen.
  void Open(const Subject& subject, const QPoint& position);

 signals:
  /// The operator chose `value`.
  void ValuePicked(int value);
  /// The pop-up is out of view.
  void Closed();

 protected:
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QLabel* const lbl_name_;
  QDoubleSpinBox* const spin_;
  int scale_ = 1;
  double value_at_opening_ = 0;
};

}  // namespace kalde2
