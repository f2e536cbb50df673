#pragma once

#include <QMainWindow>
#include <QPointer>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "panel/command_editor.h"
#include "panel/direct_controls.h"
#include "panel/frm_About.h"
#include "panel/unit_connection.h"
#include "panel/unit_services.h"
#include "panel/vornik_form.h"

namespace kalde2 {

/// The main window: connects what the operator does, the timers and the port's events with the
/// parts that carry it out, and holds nothing of the unit itself.
class frm_vornik : public QMainWindow, public PortListener {
  Q_OBJECT

 public:
  /// The parts that the handlers call. All outlive the window's last event.
  struct Parts {
    CommandLink& link;
    UnitModel& unit;
    OperatorQueue& queue;
    DirectControls& direct;
    CommandEditor& editor;
    UnitConnection& connection;
    CloneTransfer& clone;
    SettingsFile& settings_file;
    ResolutionData& resolution_data;
    Autoset& autoset;
    RefreshTimer& refresh;
  };

  explicit frm_vornik(const Platform& platform);
  ~frm_vornik() override;

  [[nodiscard]] VornikForm& Form() { return form_; }

  /// Connects the handlers and runs the start-up sequence.
  void Attach(const Parts& parts);

  /// Stores the port and the baud rate for the next start.
  void SaveSerialSettings();

  /// The panel is to end, whatever runs or is open: saves, shuts the port and ends the program.
  void Form_Unload();

  /// The window object is going: shuts the port and ends the program, saving nothing.
  void Form_Terminate();

  // Text functions of the window.
  [[nodiscard]] static std::string chagetoasc(std::int16_t& Value);
  [[nodiscard]] static std::string changetohex(std::string& strtochange);
  [[nodiscard]] static std::string changetoasc(std::string& strtochange);
  [[nodiscard]] static std::string ConvertBinary(std::string& hex);

  /// The port's receive event: keeps what arrives unasked, unless a transaction owns the port.
  void MSComm1_OnComm() override;

  /// The port is gone and closed: so is the panel, and the operator is told once.
  void PortLost(const std::string& reason) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Form_Load();
  void Cmd_openclose_Click();
  void txt_port_KeyPress(int& KeyAscii);
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

  [[nodiscard]] std::pair<QString, QString> LoadSerialSettings() const;
  void FillResolutionList();
  void ClosePort();
  void UpdatePortHint();

  void ConnectControls();
  void ConnectMenus();
  void ConnectConnection();

  /// A slot that runs a handler; a Fault in it ends the handler without a word.
  template <typename Handler>
  [[nodiscard]] auto Guarded(Handler handler);

  Platform platform_;
  VornikForm form_;
  ReceiveRing ring_;
  std::optional<Parts> parts_;
  QPointer<frm_About> about_;
  bool is_painted_ = false;  ///< the window has been in view
};

}  // namespace kalde2
