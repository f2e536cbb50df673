#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>

#include "link/clock.h"
#include "model/progress_view.h"
#include "panel/frame_limiter.h"

namespace kalde2 {

/// A progress bar that stands still where an ordinary one with both ends 0 would be animated.
class StillProgressBar : public QProgressBar {
  Q_OBJECT

 public:
  using QProgressBar::QProgressBar;

 protected:
  void initStyleOption(QStyleOptionProgressBar* option) const override;
};

/// The progress window of long transfers: a label `lbl_progress` and a bar `ProgressBar`, which
/// hold what a step sets from that moment on; only the painting waits for the next frame. Modeless
/// and owned by the main window, which keeps the keyboard. Closing it only takes it out of sight;
/// the transfer goes on. Esc is the main window's, as it is there.
class frm_Progress : public QDialog, public ProgressView {
  Q_OBJECT

 public:
  frm_Progress(QWidget* owner, Clock& clock);

  void Show() override;
  void Hide() override;
  void SetCaption(std::string_view text) override;
  void SetRange(int minimum, int maximum) override;
  void SetValue(int value) override;

  /// The first time after Show() waits, a moment at most, until the desktop has put the window up,
  /// so that what blocks it afterwards finds it painted.
  void PaintNow() override;

 signals:
  /// Raised by PaintNow(): nothing is painted for a while.
  void SleepFollows();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void AwaitExposure();

  Clock& clock_;
  QLabel* lbl_progress;
  StillProgressBar* ProgressBar;
  FrameLimiter frames_;
  bool is_new_on_screen_ = false;  ///< shown, and not waited for yet
};

}  // namespace kalde2
