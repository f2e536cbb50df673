#pragma once

#include <QLabel>

namespace kalde2 {

/// A label of a fixed width that leaves out the middle of a text that is too long for it. Its text
/// stays whole, also for screen readers.
class ElidedLabel : public QLabel {
 public:
  ElidedLabel(int characters, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const int characters_;
};

}  // namespace kalde2
