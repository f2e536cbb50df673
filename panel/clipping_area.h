#pragma once

#include <QWidget>

namespace kalde2 {

/// Shows the top of a content that is higher than the window lets it be. The content always has the
/// area's width and its own fixed height; what lies below the area's edge is out of view.
class ClippingArea : public QWidget {
 public:
  explicit ClippingArea(QWidget* parent) : QWidget(parent), content_(new QWidget(this)) {}

  /// The widget to lay the content out on.
  [[nodiscard]] QWidget* Content() const { return content_; }

  void SetContentHeight(int height) {
    content_height_ = height;
    Arrange();
  }

  /// As wide as the content needs; the height is the window's business.
  [[nodiscard]] QSize minimumSizeHint() const override {
    return {content_->minimumSizeHint().width(), 0};
  }
  [[nodiscard]] QSize sizeHint() const override {
    return {content_->sizeHint().width(), content_height_};
  }

 protected:
  void resizeEvent(QResizeEvent*) override { Arrange(); }

 private:
  void Arrange() { content_->setGeometry(0, 0, width(), content_height_); }

  QWidget* content_;
  int content_height_ = 0;
};

}  // namespace kalde2
