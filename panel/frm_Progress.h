#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <string_view>

#include "link/clock.h"
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
/// and owned by the main window, which keeps the keyboard. It cannot be closed away while its
/// operation runs. Esc is the main window's, as it is there.
class frm_Progress : public QDialog {
  Q_OBJECT

 public:
  frm_Progress(QWidget* owner, Clock& clock);

  void Show();
  void Hide();
  void SetCaption(std::string_view text);

  /// Sets the ends of the bar, and the bar to its beginning; with both 0 it stands still.
  void SetRange(int minimum, int maximum);

  /// Whether the operator may close the window: not while what it shows still runs.
  void SetClosable(bool closable) { is_closable_ = closable; }

  /// Sets the bar; a value outside the range is ignored.
  void SetValue(int value);

  /// Paints what was set, for those who sleep next. The first time after Show() waits, a moment at
  /// most, until the desktop has put the window up, so that what blocks it afterwards finds it
  /// painted.
  void PaintNow();

 signals:
  /// Raised by PaintNow(): nothing is painted for a while.
  void SleepFollows();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void AwaitExposure();

  Clock& clock_;
  QLabel* lbl_progress;
  StillProgressBar* ProgressBar;
  FrameLimiter frames_;
  bool is_closable_ = true;
  bool is_new_on_screen_ = false;  ///< shown, and not waited for yet
};

}  // namespace kalde2
