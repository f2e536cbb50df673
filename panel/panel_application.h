#pragma once

#include "panel/frame_limiter.h"
#include "panel/frm_Progress.h"
#include "panel/frm_vornik.h"
#include "panel/input_gate.h"
#include "panel/reply_painter.h"

namespace kalde2 {

/// The whole panel, composed on a platform: the model, the link, the window and the parts between.
/// There is no other state in the program.
class PanelApplication {
 public:
  /// Composes the panel and runs the window's start-up. The window is not shown yet.
  explicit PanelApplication(const Platform& platform);
  ~PanelApplication();
  PanelApplication(const PanelApplication&) = delete;
  PanelApplication& operator=(const PanelApplication&) = delete;

  [[nodiscard]] frm_vornik& Window() { return window_; }
  [[nodiscard]] FrameLimiter& Frames() { return frames_; }
  [[nodiscard]] frm_Progress& Progress() { return progress_; }
  [[nodiscard]] UnitModel& Unit() { return unit_; }
  [[nodiscard]] CommandLink& Link() { return link_; }
  [[nodiscard]] UnitConnection& Connection() { return connection_; }
  [[nodiscard]] CommandEditor& Editor() { return editor_; }

 private:
  [[nodiscard]] UnitConnection::Steps OpenSteps();

  UnitModel unit_;
  frm_vornik window_;
  FrameLimiter frames_;
  frm_Progress progress_;
  ReplyPainter painter_;
  ListRefreshTimer refresh_;
  CommandLink link_;
  OperatorQueue queue_;
  InputGate gate_;
  CommandList command_list_;
  ConnectivityReader connectivity_reader_;
  DirectControls direct_;
  CommandEditor editor_;
  UnitConnection connection_;
  CloneTransfer clone_;
  SettingsFile settings_file_;
  ResolutionData resolution_data_;
  Autoset autoset_;
};

}  // namespace kalde2
