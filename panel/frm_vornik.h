#pragma once

#include <QMainWindow>
#include <QPointer>
#include <cstdint>
#include <string>

#include "files/clone.h"
#include "model/autoset.h"
#include "model/command_list.h"
#include "panel/command_editor.h"
#include "panel/direct_controls.h"
#include "panel/frame_limiter.h"
#include "panel/frm_About.h"
#include "panel/frm_Progress.h"
#include "panel/input_gate.h"
#include "panel/platform.h"
#include "panel/reply_painter.h"
#include "panel/resolution_menu.h"
#include "panel/settings_file.h"
#include "panel/shown_progress.h"
#include "panel/unit_connection.h"
#include "panel/vornik_form.h"
#include "session/session.h"

namespace kalde2 {

/// The main window, and with it the whole panel on a platform: it connects what the operator does,
/// the timers and the session's events with the parts that carry it out, and computes nothing
/// itself. There is no other state in the program.
class frm_vornik : public QMainWindow, private SessionEvents {
  Q_OBJECT

 public:
  /// Composes the panel and runs the start-up. The window is not shown yet.
  explicit frm_vornik(const Platform& platform);

  /// Shuts the port and ends the program, saving nothing.
  ~frm_vornik() override;

  [[nodiscard]] VornikForm& Form() { return form_; }
  [[nodiscard]] FrameLimiter& Frames() { return frames_; }
  [[nodiscard]] frm_Progress& Progress() { return progress_; }
  [[nodiscard]] Session& UnitSession() { return session_; }
  [[nodiscard]] CommandEditor& Editor() { return editor_; }

  /// Stores the port and the baud rate for the next start.
  void SaveSerialSettings();

  /// The panel is to end, whatever runs or is open: saves, shuts the port and ends the program.
  void Form_Unload();

  /// The window object is going: shuts the port and ends the program, saving nothing.
  void Form_Terminate();

  // Text functions of the window. Nothing here calls them: they are part of the product.
  [[nodiscard]] static std::string chagetoasc(std::int16_t& Value);
  [[nodiscard]] static std::string changetohex(std::string& strtochange);
  [[nodiscard]] static std::string changetoasc(std::string& strtochange);
  [[nodiscard]] static std::string ConvertBinary(std::string& hex);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Form_Load();
  void Cmd_openclose_Click();
  void txt_port_KeyPress(int& KeyAscii);
  [[nodiscard]] static bool IsSecondPress(const QEvent& event);
  [[nodiscard]] bool TypedIntoPort(const QKeyEvent& key);
  [[nodiscard]] bool CommittedIntoPort(const QInputMethodEvent& event);
  [[nodiscard]] QString AcceptedByPort(const QString& typed);
  void TmrProcessMessage_Timer();
  void tmr_updatelstCommands_Timer();
  void cmd_test_Click();
  void cmd_autoset_Click();
  void mnu_file_load_Click();
  void mnu_file_save_Click();
  void mnu_file_exit_Click();
  void mnu_clone_read_Click();
  void menu_clone_write_Click();
  void mnu_function_advanced_Click();
  void mnu_function_aspect_Click();
  void mnu_function_refreshRes_Click();
  void cmd_function_strore_Click();
  void mnu_function_reset_Click();
  void mnu_about_Click();

  void FillResolutionList();
  void OpenPort();
  void ClosePort();
  [[nodiscard]] UnitConnection::Steps OpenSteps();

  void PortOpened() override {
    port_came_up_ = true;
    connection_.ShowPortOpen();
  }
  void UnitFound(const Product& product) override { connection_.ShowUnit(product); }
  void UnaskedArrived() override;
  void PortLost(const std::string& reason) override { connection_.ShowLoss(reason); }
  void ShowStatus(const std::string& text) override {
    form_.lbl_status->setText(QString::fromStdString(text));
  }

  void UpdatePortHint();

  void ConnectControls();
  void ConnectMenus();
  void ConnectConnection();

  /// A slot that runs a handler; a Fault in it ends the handler without a word.
  template <typename Handler>
  [[nodiscard]] auto Guarded(Handler handler);

  Platform platform_;
  VornikForm form_;
  FrameLimiter frames_;
  frm_Progress progress_;
  OperatorQueue queue_;
  ReplyPainter painter_;
  ListRefreshTimer refresh_;
  Session session_;
  InputGate gate_;
  ResolutionTable resolutions_;
  CommandList command_list_;
  DirectControls direct_;
  CommandEditor editor_;
  UnitConnection connection_;
  SettingsFile settings_file_;
  ResolutionMenu resolution_menu_;
  ShownProgress clone_progress_;
  CloneTransfer clone_;
  ShownProgress autoset_progress_;
  Autoset autoset_;
  QPointer<frm_About> about_;
  bool port_came_up_ = false;  ///< in the last opening
  bool is_painted_ = false;    ///< the window has been in view
};

}  // namespace kalde2
