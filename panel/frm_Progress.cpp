#include "panel/frm_Progress.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QStyleOptionProgressBar>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <utility>

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

/// A desktop puts a window up within a few frames; one that does not must not hold up the transfer.
constexpr milliseconds kExposeLimit{250};

/// No screen shows more pictures than one in this time, and each takes a millisecond to paint.
constexpr milliseconds kFrame{16};

/// What is set last and followed by nothing is painted after this.
constexpr milliseconds kAtLatest{50};

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
      update_(new QTimer(this)) {
  setObjectName(QStringLiteral("frm_Progress"));
  setWindowTitle(QStringLiteral("Progress"));
  setModal(false);
  setAttribute(Qt::WA_ShowWithoutActivating);
  lbl_progress->setObjectName(QStringLiteral("lbl_progress"));
  lbl_progress->setTextFormat(Qt::PlainText);
  ProgressBar->setObjectName(QStringLiteral("ProgressBar"));
  ProgressBar->setAccessibleName(QStringLiteral("Progress"));
  constexpr int kWidthInCharacters = 52;  // the longest caption with room to spare
  lbl_progress->setMinimumWidth(fontMetrics().averageCharWidth() * kWidthInCharacters);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(lbl_progress);
  rows->addWidget(ProgressBar);
  update_->setSingleShot(true);
  connect(update_, &QTimer::timeout, this, &frm_Progress::Update);
}

void frm_Progress::Show() {
  is_new_on_screen_ = true;
  show();
}

void frm_Progress::PaintNow() {
  Update();
  // Once: a window that is out of view later, with its owner say, has nobody who waits for it.
  if (std::exchange(is_new_on_screen_, false)) AwaitExposure();
  repaint();
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

void frm_Progress::SetCaption(std::string_view text) {
  caption_ = text;
  UpdateLater();
}

void frm_Progress::SetRange(int minimum, int maximum) {
  minimum_ = minimum;
  maximum_ = std::max(minimum, maximum);
  value_ = minimum;
  UpdateLater();
}

void frm_Progress::SetValue(int value) {
  if (value < minimum_ || value > maximum_) return;
  value_ = value;
  UpdateLater();
}

void frm_Progress::UpdateLater() {
  // Right behind the request that follows: its reply is not there yet, so nothing waits for the
  // painting.
  if (clock_.Monotonic() >= last_update_ + kFrame) {
    update_->start(milliseconds::zero());
  } else if (!update_->isActive()) {
    update_->start(kAtLatest);
  }
}

void frm_Progress::Update() {
  update_->stop();
  last_update_ = clock_.Monotonic();
  lbl_progress->setText(QString::fromLatin1(caption_.c_str()));
  // A bar that may not paint itself at once is painted together with the label.
  ProgressBar->setUpdatesEnabled(false);
  ProgressBar->setRange(minimum_, maximum_);
  ProgressBar->setValue(value_);
  ProgressBar->setUpdatesEnabled(true);
}

}  // namespace kalde2
