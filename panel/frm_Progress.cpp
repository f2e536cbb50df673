#include "panel/frm_Progress.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QStyleOptionProgressBar>
#include <QVBoxLayout>
#include <QWindow>
#include <chrono>
#include <utility>

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

/// A desktop puts a window up within a few frames; one that does not must not hold up the transfer.
constexpr milliseconds kExposeLimit{250};

/// Keeps a widget from painting itself at once: it is painted with the next frame of its window.
class PaintedLater {
 public:
  explicit PaintedLater(QWidget* widget) : widget_(widget) { widget->setUpdatesEnabled(false); }
  ~PaintedLater() { widget_->setUpdatesEnabled(true); }
  PaintedLater(const PaintedLater&) = delete;
  PaintedLater& operator=(const PaintedLater&) = delete;

 private:
  QWidget* widget_;
};

}  // namespace

void StillProgressBar::initStyleOption(QStyleOptionProgressBar* option) const {
  QProgressBar::initStyleOption(option);
  if (minimum() != maximum()) return;
  option->maximum = option->minimum + 1;
  option->progress = option->minimum;
  option->textVisible = false;
}

frm_Progress::frm_Progress(QWidget* owner, Clock& clock)
    : QDialog(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint |
                         Qt::WindowCloseButtonHint),
      clock_(clock),
      lbl_progress(new QLabel(this)),
      ProgressBar(new StillProgressBar(this)),
      frames_(this) {
  setObjectName(QStringLiteral("frm_Progress"));
  setWindowTitle(QStringLiteral("Progress"));
  setModal(false);
  setAttribute(Qt::WA_ShowWithoutActivating);
  lbl_progress->setObjectName(QStringLiteral("lbl_progress"));
  lbl_progress->setTextFormat(Qt::PlainText);
  ProgressBar->setObjectName(QStringLiteral("ProgressBar"));
  ProgressBar->setAccessibleName(QStringLiteral("Progress"));
  constexpr int kWidthInCharacters = 52;  // the longest caption with room to spare
  lbl_progress->setFixedWidth(fontMetrics().averageCharWidth() * kWidthInCharacters);
  auto* const rows = new QVBoxLayout(this);
  rows->setSizeConstraint(QLayout::SetFixedSize);
  rows->addWidget(lbl_progress);
  rows->addWidget(ProgressBar);
}

void frm_Progress::Show() {
  is_new_on_screen_ = true;
  show();
}

void frm_Progress::PaintNow() {
  // Once: a window that is out of view later, with its owner say, has nobody who waits for it.
  if (std::exchange(is_new_on_screen_, false)) AwaitExposure();
  frames_.PaintNow();
  emit SleepFollows();
}

void frm_Progress::AwaitExposure() {
  const milliseconds end = clock_.Monotonic() + kExposeLimit;
  while (isVisible() && !windowHandle()->isExposed()) {
    const milliseconds left = end - clock_.Monotonic();
    if (left <= milliseconds::zero()) break;
    clock_.ServeEvents(left);
  }
}

void frm_Progress::Hide() {
  hide();
}

void frm_Progress::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    QCoreApplication::sendEvent(parentWidget(), event);
  } else {
    QDialog::keyPressEvent(event);
  }
}

void frm_Progress::closeEvent(QCloseEvent* event) {
  if (is_closable_) {
    QDialog::closeEvent(event);
  } else {
    event->ignore();
  }
}

void frm_Progress::SetCaption(std::string_view text) {
  lbl_progress->setText(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
}

void frm_Progress::SetRange(int minimum, int maximum) {
  const PaintedLater later(ProgressBar);
  ProgressBar->setRange(minimum, maximum);
  ProgressBar->setValue(minimum);
}

void frm_Progress::SetValue(int value) {
  // The bar itself takes any value while both its ends are 0.
  if (value < ProgressBar->minimum() || value > ProgressBar->maximum()) return;
  const PaintedLater later(ProgressBar);
  ProgressBar->setValue(value);
}

}  // namespace kalde2
