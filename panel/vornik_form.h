#pragma once

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <array>
#include <vector>

#include "controls/arrow_control.h"
#include "controls/cpv_slider.h"
#include "controls/elided_label.h"
#include "controls/line_list.h"
#include "panel/control_table.h"
#include "panel/status_line.h"

class QBoxLayout;
class QGridLayout;

namespace kalde2 {

class ClippingArea;

/// The widgets of the main window: names, captions, places, and what is enabled or shown. Knows
/// nothing of the unit and connects no handler.
///
/// All controls of the unit are direct children of `fra_control`. The window is exactly as high as
/// its view, or as its screen lets it be, and scrolls then; the shrink controls lie in the strip
/// that only the advanced view uncovers. Nothing else moves with the view but the command list's
/// lower edge.
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

  /// The same for the view that is shown: for when the window's frame has become known, which is
  /// when it is in view first.
  void FitToScreen();

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

  /// The device that the number in the port field stands for.
  void ShowDevice(const QString& device);

  /// Puts the focus into the port field with the number selected, which typing then replaces.
  void AskForPort();

  /// The controls of the window that replies are shown on.
  [[nodiscard]] const std::vector<QWidget*>& ReplyControls() const { return reply_controls_; }

  [[nodiscard]] cpvSlider* Slider(SliderId id) const { return sliders[id.index]; }
  [[nodiscard]] ArrowControl* Pad(PadId id) const { return pads[id.index]; }
  [[nodiscard]] QCheckBox* Check(CheckId id) const { return checks[id.index]; }

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
  ElidedLabel* lbl_portdevice = nullptr;
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
  QLabel* lbl_zoom = nullptr;
  QLabel* lbl_zoomv = nullptr;
  QPushButton* cmd_fade = nullptr;
  QPushButton* cmd_autoset = nullptr;
  QPushButton* cmd_overscan = nullptr;
  QPushButton* cmd_underscan = nullptr;

  // Keyer
  QLabel* lbl_keyerenable = nullptr;
  QPushButton* cmd_black = nullptr;

  // Command list
  LineList* lst_commands = nullptr;
  QLabel* lbl_command = nullptr;
  QComboBox* cbo_command = nullptr;
  QLineEdit* txt_commandval = nullptr;
  QPushButton* cmd_commandMinus = nullptr;
  QPushButton* cmd_commandplus = nullptr;

  // Advanced view
  QLabel* lbl_shrink = nullptr;
  QLabel* lbl_shrinkv = nullptr;

  /// Under the keyer, over `fra_control` and not in it: no reply, tag or enabling reaches it.
  StatusLine* lbl_status = nullptr;

  /// Never visible: feeds two fixed frames to the decoder.
  QPushButton* cmd_test = nullptr;

  std::array<cpvSlider*, kSliders.size()> sliders{};
  std::array<ArrowControl*, kPads.size()> pads{};
  std::array<QCheckBox*, kChecks.size()> checks{};

  QTimer* TmrProcessMessage = nullptr;
  QTimer* tmr_updatelstCommands = nullptr;

 private:
  void BuildMenus();
  void CreateConnection(QWidget* content);
  void CreateControls();
  void CreateConnectionState(QWidget* content);
  void CreateLockModes();
  void CreateSliders();
  void CreatePads();
  void CreateChecks();
  void CreateCommands();
  void CreateButtons();
  void CreateTimers();
  QBoxLayout* LayOutConnection();
  void LayOutControls();
  QGridLayout* LayOutSources();
  QGridLayout* LayOutPicture();
  QGridLayout* LayOutKeyer();
  void LayOutCommands();
  QBoxLayout* LayOutEditor();
  QGridLayout* LayOutShrink();
  void AlignStrips(QGridLayout& picture, QGridLayout& shrink) const;
  [[nodiscard]] QGridLayout* NewGrid() const;
  void SetTabOrder();
  void CollectReplyControls();

  QAction* AddItem(QMenu* menu, const char* name, const char* text);
  QLabel* Heading(const char* name, const char* text);
  QLabel* Caption(const char* name, const char* text, QWidget* buddy = nullptr);
  QComboBox* CreateCombo(const char* name, int tag, const char* accessible_name,
                         const char* description);

  /// The controls of a group that have a row, in tab order: check boxes, sliders, pads.
  [[nodiscard]] std::vector<QWidget*> ControlsOf(Group group) const;

  /// What a length at the default font is with the window's.
  [[nodiscard]] int Scaled(int pixels) const;
  [[nodiscard]] QSize RoomOnScreen() const;

  QMainWindow& window_;
  ClippingArea* area_ = nullptr;
  QBoxLayout* commands_ = nullptr;
  bool advanced_ = false;
  QButtonGroup* lock_group_ = nullptr;
  int lock_mode_ = -1;
  std::vector<QWidget*> reply_controls_;
};

}  // namespace kalde2
