#pragma once

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

namespace kalde2 {

/// Shows the top of a content that is higher than the view lets it be: what lies below the view's
/// edge is out of view and cannot be scrolled to. Where the window is smaller than the view, the
/// view scrolls, and follows the keyboard focus.
class ClippingArea : public QScrollArea {
 public:
  explicit ClippingArea(QWidget* parent)
      : QScrollArea(parent), view_(new QWidget), content_(new QWidget(view_)) {
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setBackgroundRole(QPalette::Window);
    setWidget(view_);
    view_->setAutoFillBackground(false);
    // A press of the mouse is where its hand is: nothing may move under it.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
      if (QApplication::mouseButtons() == Qt::NoButton && content_->isAncestorOf(now)) {
        ensureWidgetVisible(now, kAround, kAround);
      }
    });
  }

  /// The widget to lay the content out on. It has the area's width, or the least that it needs.
  [[nodiscard]] QWidget* Content() const { return content_; }

  void SetContentHeight(int height) {
    content_height_ = height;
    Arrange();
  }

  /// @param scrolls where the window is to be smaller; a bar that comes and goes while the window
  ///   follows the view would make everything in it move
  void SetView(int height, bool scrolls) {
    view_height_ = height;
    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    Arrange();
  }

  /// As wide as the content needs; how much less is enough and the height are the window's
  /// business.
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }
  [[nodiscard]] QSize sizeHint() const override {
    return {content_->sizeHint().width(), view_height_};
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QScrollArea::resizeEvent(event);
    Arrange();
  }

 private:
  static constexpr int kAround = 8;

  void Arrange() {
    const int width = std::max(viewport()->width(), content_->minimumSizeHint().width());
    view_->resize(width, view_height_);
    content_->setGeometry(0, 0, width, content_height_);
  }

  QWidget* view_;
  QWidget* content_;
  int content_height_ = 0;
  int view_height_ = 0;
};

}  // namespace kalde2
