#pragma once

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <array>
#include <vector>

#include "controls/arrow_control.h"
#include "controls/cpv_slider.h"
#include "panel/control_table.h"
#include "panel/status_line.h"

class QBoxLayout;
class QGridLayout;

namespace kalde2 {

/// The widgets of the main window: names, captions, places, and what is enabled or shown. Knows
/// nothing of the unit and connects no handler.
///
/// All controls of the unit are direct children of `fra_control`. The window is exactly as high as
/// its view; the shrink controls lie in the strip that only the advanced view uncovers.
class VornikForm {
 public:
  /// Heights of the two views in device-independent pixels (5730 and 7125 twips) at the default
  /// font; a larger font scales both by one factor.
  static constexpr int kCompactHeight = 382;
  static constexpr int kAdvancedHeight = 475;

  explicit VornikForm(QMainWindow& window);

  /// Enables or disables every control of `fra_control` and the clone and function menus. Enabling
  /// also unchecks `chk_shrinkenable` and disables `slide_shrink`.
  void SetPanelEnabled(bool enabled);

  /// Enables the product-dependent controls, or disables them up to and including `cmd_fade`: the
  /// last three are left as they are then, which is intended.
  void SetFeatureControlsEnabled(bool enabled);

  /// Sets the window to the height of the compact or the advanced view.
  void SetAdvancedHeight(bool advanced);

  /// Shows or hides the separate vertical zoom and shrink.
  void SetAspectVisible(bool visible);

  /// The shrink controls. They are never hidden again once shown.
  void ShowShrinkControls();

  /// Chooses a lock mode and shows the lock source with those that have one. A value other than
  /// 0..2 chooses none and shows or hides nothing.
  void ShowLockMode(int value);

  /// The lock mode that was shown last, whatever has become of the option buttons; -1 before.
  [[nodiscard]] int LockMode() const { return lock_mode_; }

  /// What the connection looks like: the texts, and that a closed port's baud rate may be chosen.
  void ShowOpen(const QString& state);
  void ShowClosed();

  /// The controls of the window that replies are shown on.
  [[nodiscard]] const std::vector<QWidget*>& ReplyControls() const { return reply_controls_; }

  [[nodiscard]] cpvSlider* Slider(const char* name) const;

  // Menu bar
  QMenu* mnu_file = nullptr;
  QAction* mnu_file_load = nullptr;
  QAction* mnu_file_save = nullptr;
  QAction* mnu_file_exit = nullptr;
  QMenu* mnu_clone = nullptr;
  QAction* mnu_clone_read = nullptr;
  QAction* menu_clone_write = nullptr;
  QMenu* mnu_function = nullptr;
  QAction* mnu_function_advanced = nullptr;
  QAction* mnu_function_aspect = nullptr;
  QAction* mnu_function_refreshRes = nullptr;
  QAction* cmd_function_strore = nullptr;
  QAction* mnu_function_reset = nullptr;
  QAction* mnu_about = nullptr;

  // Connection
  QLineEdit* txt_port = nullptr;
  QLabel* lbl_portdevice = nullptr;
  QComboBox* cbo_baud = nullptr;
  QPushButton* Cmd_openclose = nullptr;
  QLabel* lbl_comstate = nullptr;

  QFrame* fra_control = nullptr;

  // Source and output
  QComboBox* cbo_program = nullptr;
  QComboBox* cbo_resolution = nullptr;
  QLabel* lbl_lockmode = nullptr;
  std::array<QRadioButton*, kLockModes.size()> opt_lock{};
  QLabel* lbl_locksource = nullptr;
  QComboBox* cbo_lock = nullptr;

  // Picture
  QCheckBox* chk_zoomenable = nullptr;
  QLabel* lbl_zoom = nullptr;
  QLabel* lbl_zoomv = nullptr;
  ArrowControl* arr_zoompan = nullptr;
  QPushButton* cmd_fade = nullptr;
  QPushButton* cmd_autoset = nullptr;
  QPushButton* cmd_overscan = nullptr;
  QPushButton* cmd_underscan = nullptr;

  // Keyer
  QLabel* lbl_keyerenable = nullptr;
  QCheckBox* chk_keyenable = nullptr;
  QCheckBox* chk_swapforback = nullptr;
  QPushButton* cmd_black = nullptr;

  // Command list
  QListWidget* lst_commands = nullptr;
  QLabel* lbl_command = nullptr;
  QComboBox* cbo_command = nullptr;
  QLineEdit* txt_commandval = nullptr;
  QPushButton* cmd_commandMinus = nullptr;
  QPushButton* cmd_commandplus = nullptr;

  // Advanced view
  QCheckBox* chk_shrinkenable = nullptr;
  QLabel* lbl_shrink = nullptr;
  QLabel* lbl_shrinkv = nullptr;
  ArrowControl* arr_shrinkposn = nullptr;

  /// Under the keyer, over `fra_control` and not in it: no reply, tag or enabling reaches it.
  StatusLine* lbl_status = nullptr;

  /// Never visible: feeds two fixed frames to the decoder.
  QPushButton* cmd_test = nullptr;

  std::array<cpvSlider*, kSliders.size()> sliders{};

  QTimer* TmrProcessMessage = nullptr;
  QTimer* tmr_updatelstCommands = nullptr;

 private:
  void BuildMenus();
  void CreateConnection(QWidget* content);
  void CreateControls();
  void CreateChecks();
  void CreateButtons();
  void CreateTimers();
  QBoxLayout* LayOutConnection();
  void LayOutControls();
  QGridLayout* LayOutSources();
  QGridLayout* LayOutPicture();
  QGridLayout* LayOutKeyer();
  QBoxLayout* LayOutCommands();
  QGridLayout* LayOutShrink();
  void SetTabOrder();
  void CollectReplyControls();

  QAction* AddItem(QMenu* menu, const char* name, const char* text);
  QLabel* Heading(const char* name, const char* text);
  QLabel* Caption(const char* name, const char* text, QWidget* buddy = nullptr);
  ArrowControl* CreatePad(const PadRow& row);
  QComboBox* CreateCombo(const char* name, int tag, const char* accessible_name,
                         const char* description);
  [[nodiscard]] int Scaled(int pixels) const;

  QMainWindow& window_;
  QButtonGroup* lock_group_ = nullptr;
  int lock_mode_ = -1;
  std::vector<QWidget*> reply_controls_;
};

}  // namespace kalde2
