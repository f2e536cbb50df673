#pragma once

#include "link/clock.h"
#include "model/progress.h"
#include "panel/frm_Progress.h"

namespace kalde2 {

/// The progress of an operation in the progress window.
class ShownProgress : public Progress {
 public:
  /// What becomes of the window when the operation is complete.
  enum class Result {
    kGoesAtOnce,
    kStaysServed,  ///< stays for a moment while events are served
    kStaysSlept,   ///< stays for a moment while nothing is served
  };

  ShownProgress(frm_Progress& window, Clock& clock, Result result)
      : window_(window), clock_(clock), result_(result) {}

  void Begin() override { window_.Show(); }
  void SetCaption(std::string_view text) override { window_.SetCaption(text); }
  void SetRange(int minimum, int maximum) override { window_.SetRange(minimum, maximum); }
  void SetValue(int value) override { window_.SetValue(value); }
  void SleepFollows() override { window_.PaintNow(); }
  void End(bool is_complete) override;

 private:
  void ShowResult();

  frm_Progress& window_;
  Clock& clock_;
  Result result_;
};

}  // namespace kalde2
