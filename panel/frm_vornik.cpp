#include "panel/frm_vornik.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <array>
#include <utility>

#include "link/fault.h"
#include "link/frame_codec.h"
#include "link/numbers.h"
#include "link/text_functions.h"
#include "panel/app_info.h"

namespace kalde2 {
namespace {

constexpr std::array<const char*, 4> kBaudRates = {"9600", "38400", "57600", "115200"};

const auto kSection = QStringLiteral("Tessaly");
const auto kSerialParameters = QStringLiteral("Serial Parameters");
const auto kSerialPort = QStringLiteral("Serial Port");

constexpr std::int32_t kOverscan = 100;
constexpr std::int32_t kUnderscan = 90;

}  // namespace

frm_vornik::frm_vornik(const Platform& platform) : platform_(platform), form_(*this) {
  setObjectName(QStringLiteral("frm_vornik"));
  setWindowTitle(QString::fromLatin1(AppInfo::kTitle));
}

frm_vornik::~frm_vornik() {
  platform_.port.SetListener(nullptr);
}

void frm_vornik::Attach(const Parts& parts) {
  parts_.emplace(parts);
  Form_Load();
  ConnectConnection();
  ConnectControls();
  ConnectMenus();
  platform_.port.SetListener(this);
}

template <typename Handler>
auto frm_vornik::Guarded(Handler handler) {
  return [handler](auto&&... arguments) {
    try {
      handler(std::forward<decltype(arguments)>(arguments)...);
    } catch (const Fault&) {
      // The rest of the handler is skipped.
    }
  };
}

// ------------------------------------------------------------------------------- start and end

void frm_vornik::Form_Load() {
  const auto [baud, port] = LoadSerialSettings();
  FillResolutionList();
  parts_->direct.Black();  // only moves the sliders: the port is closed
  form_.SetPanelEnabled(false);
  for (const char* const rate : kBaudRates) form_.cbo_baud->addItem(QLatin1String(rate));
  form_.cbo_baud->setCurrentIndex(
      form_.cbo_baud->findText(baud, Qt::MatchExactly | Qt::MatchCaseSensitive));
  form_.txt_port->setText(port);
  form_.SetAdvancedHeight(false);
  form_.mnu_function_advanced->setChecked(false);
  LoadInputNames(parts_->unit.input_names);
  form_.Cmd_openclose->setFocus();
}

void frm_vornik::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  // Looking for the ports takes as long as everything before it; the window is in view first.
  if (!std::exchange(is_painted_, true)) {
    QTimer::singleShot(0, this, &frm_vornik::UpdatePortHint);
  }
}

std::pair<QString, QString> frm_vornik::LoadSerialSettings() const {
  const SettingsStore& store = platform_.settings;
  return {store.GetSetting(kSection, kSerialParameters, QStringLiteral("57600")),
          store.GetSetting(kSection, kSerialPort, QStringLiteral("1"))};
}

void frm_vornik::SaveSerialSettings() {
  const int index = form_.cbo_baud->currentIndex();
  const bool chosen = index >= 0 && static_cast<std::size_t>(index) < kBaudRates.size();
  const QString baud =
      chosen ? QLatin1String(kBaudRates[static_cast<std::size_t>(index)]) : QString();
  platform_.settings.SaveSetting(kSection, kSerialParameters, baud);
  platform_.settings.SaveSetting(kSection, kSerialPort, form_.txt_port->text());
}

void frm_vornik::FillResolutionList() {
  for (const ResolutionItem& item :
       parts_->resolution_data.FillResolutionList(kResolutionFileName)) {
    form_.cbo_resolution->addItem(QString::fromLatin1(item.text.c_str()), item.data);
  }
  form_.cbo_resolution->setCurrentIndex(0);
}

void frm_vornik::Form_Unload() {
  SaveSerialSettings();
  Form_Terminate();
}

void frm_vornik::mnu_file_exit_Click() {
  Form_Unload();
}

void frm_vornik::Form_Terminate() {
  parts_->connection.ShutPort();
  parts_->queue.Abandon();
  platform_.end_program();
}

void frm_vornik::closeEvent(QCloseEvent* event) {
  Form_Unload();
  event->accept();
}

// ---------------------------------------------------------------------------------- connection

void frm_vornik::ConnectConnection() {
  connect(form_.Cmd_openclose, &QPushButton::clicked, this, &frm_vornik::Cmd_openclose_Click);
  connect(form_.txt_port, &QLineEdit::textChanged, this, &frm_vornik::UpdatePortHint);
  connect(&platform_.ports, &PortDirectory::Changed, this, &frm_vornik::UpdatePortHint);
  form_.txt_port->installEventFilter(this);
  connect(form_.TmrProcessMessage, &QTimer::timeout, this, &frm_vornik::TmrProcessMessage_Timer);
  connect(form_.tmr_updatelstCommands, &QTimer::timeout, this,
          &frm_vornik::tmr_updatelstCommands_Timer);
}

void frm_vornik::Cmd_openclose_Click() {
  if (form_.Cmd_openclose->text() == QLatin1String("Open &Port")) {
    parts_->queue.DoInBulk("Cmd_openclose", [this] { parts_->connection.Open(); });
  } else {
    ClosePort();
  }
}

void frm_vornik::ClosePort() {
  parts_->connection.Close();
  form_.TmrProcessMessage->stop();
  parts_->queue.Abandon();
}

void frm_vornik::PortLost(const std::string& reason) {
  ClosePort();
  parts_->queue.Do("MSComm1", [this, reason] {
    platform_.boxes.Show("The serial port was lost: " + reason, BoxIcon::kCritical, "Connect");
  });
}

/// While the port is open, Esc closes it.
void frm_vornik::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && platform_.port.PortOpen()) {
    form_.Cmd_openclose->click();
  } else {
    QMainWindow::keyPressEvent(event);
  }
}

bool frm_vornik::eventFilter(QObject* watched, QEvent* event) {
  if (watched != form_.txt_port || event->type() != QEvent::KeyPress) return false;
  const auto* const key = static_cast<QKeyEvent*>(event);
  const bool moves_on = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
  const bool types = !key->text().isEmpty() && key->key() != Qt::Key_Delete && !moves_on;
  if (!types) return false;
  const int typed = key->text().front().unicode();
  int accepted = typed;
  txt_port_KeyPress(accepted);
  return accepted != typed;
}

/// Digits and the colon, 48 to 58, are accepted; anything else, Backspace included, becomes the
/// character 1 and so is not inserted. Both are intended.
void frm_vornik::txt_port_KeyPress(int& KeyAscii) {
  constexpr int kFirst = 48;
  constexpr int kLast = 58;
  if (KeyAscii < kFirst || KeyAscii > kLast) KeyAscii = 1;
}

void frm_vornik::UpdatePortHint() {
  QString device;
  try {
    device = platform_.ports.DeviceFor(
        RoundToInt16(NumericValue(form_.txt_port->text().toLatin1().toStdString())));
  } catch (const Fault&) {
    // A number beyond 16 bits stands for no port.
  }
  const QString shown = device.isEmpty() ? QStringLiteral("no such port") : device;
  form_.lbl_portdevice->setText(shown);
  const QStringList present = platform_.ports.PresentPorts();
  const QString list =
      present.isEmpty() ? QStringLiteral("none") : present.join(QStringLiteral("\n"));
  form_.txt_port->setToolTip(QStringLiteral("Port %1: %2\n\nPorts of this computer:\n%3")
                                 .arg(form_.txt_port->text(), shown, list));
}

void frm_vornik::MSComm1_OnComm() {
  if (parts_->link.CommsBusy()) return;
  try {
    ring_.Store(platform_.port.Input());
  } catch (const Fault&) {
    return;  // the line is gone, and PortLost() on its way
  }
  if (ring_.HasData() && !form_.TmrProcessMessage->isActive()) form_.TmrProcessMessage->start();
}

void frm_vornik::TmrProcessMessage_Timer() {
  if (const auto frame = ring_.NextFrame()) parts_->link.ParseReply(*frame);
  if (ring_.IsDrained()) form_.TmrProcessMessage->stop();
}

void frm_vornik::tmr_updatelstCommands_Timer() {
  if (parts_->connection.UnitConnected()) parts_->editor.RefreshCommandList();
  parts_->refresh.Disable();
  parts_->editor.SelectSavedLine();
}

void frm_vornik::cmd_test_Click() {
  parts_->link.ParseReply("F441041010A000002A2\r");
  parts_->link.ParseReply("F441041018E00000125\r");
}

// ------------------------------------------------------------------------------------ controls

void frm_vornik::ConnectControls() {
  DirectControls& direct = parts_->direct;
  CommandEditor& editor = parts_->editor;
  for (std::size_t i = 0; i < kSliders.size(); ++i) {
    connect(form_.sliders[i], &cpvSlider::Moved, this, Guarded([this, &direct, i](int value) {
              direct.SliderMoved(*form_.sliders[i], kSliders[i], value);
            }));
  }
  for (ArrowControl* const pad : {form_.arr_zoompan, form_.arr_shrinkposn}) {
    connect(pad, &ArrowControl::ValueChanged, this,
            Guarded([&direct, pad](int x, int y) { direct.PadStepped(*pad, x, y); }));
  }
  for (const CheckRow& row : kChecks) {
    auto* const box = form_.fra_control->findChild<QCheckBox*>(QLatin1String(row.name));
    connect(box, &QCheckBox::toggled, this,
            [&direct, &row](bool checked) { direct.CheckChanged(row, checked); });
    connect(box, &QCheckBox::clicked, this,
            Guarded([&direct, box, &row](bool) { direct.CheckClicked(*box, row); }));
  }
  for (std::size_t i = 0; i < kLockModes.size(); ++i) {
    connect(form_.opt_lock[i], &QRadioButton::clicked, this,
            Guarded([&direct, i](bool) { direct.LockModeClicked(kLockModes[i]); }));
  }
  const auto on_choice = [this](QComboBox* combo, auto handler) {
    connect(combo, &QComboBox::activated, this, Guarded([handler](int) { handler(); }));
  };
  on_choice(form_.cbo_lock, [&direct] { direct.LockSourceSelected(); });
  on_choice(form_.cbo_program, [&direct] { direct.ProgramSelected(); });
  on_choice(form_.cbo_resolution, [&direct] { direct.ResolutionSelected(); });
  on_choice(form_.cbo_command, [&editor] { editor.cbo_command_Click(); });

  const auto on_click = [this](QPushButton* button, auto handler) {
    connect(button, &QPushButton::clicked, this, Guarded([handler](bool) { handler(); }));
  };
  on_click(form_.cmd_fade, [&direct] { direct.Fade(); });
  on_click(form_.cmd_black, [&direct] { direct.Black(); });
  on_click(form_.cmd_overscan, [&direct] { direct.ShrinkTo(kOverscan); });
  on_click(form_.cmd_underscan, [&direct] { direct.ShrinkTo(kUnderscan); });
  on_click(form_.cmd_autoset, [this] { cmd_autoset_Click(); });
  on_click(form_.cmd_commandMinus, [&editor] { editor.cmd_commandMinus_Click(); });
  on_click(form_.cmd_commandplus, [&editor] { editor.cmd_commandplus_Click(); });
  on_click(form_.cmd_test, [this] { cmd_test_Click(); });

  connect(form_.lst_commands, &QListWidget::itemSelectionChanged, this,
          [&editor] { editor.lst_commands_Click(); });
  connect(form_.lst_commands, &QListWidget::itemClicked, this,
          [&editor](QListWidgetItem*) { editor.lst_commands_Click(); });
  connect(form_.txt_commandval, &QLineEdit::returnPressed, this,
          Guarded([&editor] { editor.txt_commandval_Enter(); }));
}

void frm_vornik::cmd_autoset_Click() {
  parts_->queue.DoInBulk("cmd_autoset", [this] { parts_->autoset.Run(); });
}

// --------------------------------------------------------------------------------------- menus

void frm_vornik::ConnectMenus() {
  const auto on_item = [this](QAction* item, void (frm_vornik::*handler)()) {
    connect(item, &QAction::triggered, this,
            Guarded([this, handler](bool) { (this->*handler)(); }));
  };
  on_item(form_.mnu_file_load, &frm_vornik::mnu_file_load_Click);
  on_item(form_.mnu_file_save, &frm_vornik::mnu_file_save_Click);
  on_item(form_.mnu_file_exit, &frm_vornik::mnu_file_exit_Click);
  on_item(form_.mnu_clone_read, &frm_vornik::mnu_clone_read_Click);
  on_item(form_.menu_clone_write, &frm_vornik::menu_clone_write_Click);
  on_item(form_.mnu_function_advanced, &frm_vornik::mnu_function_advanced_Click);
  on_item(form_.mnu_function_aspect, &frm_vornik::mnu_function_aspect_Click);
  on_item(form_.mnu_function_refreshRes, &frm_vornik::mnu_function_refreshRes_Click);
  on_item(form_.cmd_function_strore, &frm_vornik::cmd_function_strore_Click);
  on_item(form_.mnu_function_reset, &frm_vornik::mnu_function_reset_Click);
  on_item(form_.mnu_about, &frm_vornik::mnu_about_Click);
}

void frm_vornik::mnu_file_load_Click() {
  parts_->queue.Do("mnu_file_load", [this] { parts_->settings_file.LoadSettingsFile(); });
}

void frm_vornik::mnu_file_save_Click() {
  parts_->queue.Do("mnu_file_save", [this] {
    parts_->settings_file.SaveSettingsFile(parts_->connection.ProductType());
  });
}

void frm_vornik::mnu_clone_read_Click() {
  parts_->queue.DoInBulk("mnu_clone_read", [this] { parts_->clone.CloneRead(); });
}

void frm_vornik::menu_clone_write_Click() {
  parts_->queue.DoInBulk("menu_clone_write", [this] { parts_->clone.CloneWrite(); });
}

void frm_vornik::mnu_function_refreshRes_Click() {
  parts_->queue.DoInBulk("mnu_function_refreshRes",
                         [this] { parts_->resolution_data.FetchResolutionData(); });
}

void frm_vornik::cmd_function_strore_Click() {
  parts_->direct.Store();
}

void frm_vornik::mnu_function_reset_Click() {
  parts_->direct.Reset();
}

/// The click has set the check mark already. The shrink controls are shown with the advanced view
/// and never hidden again; the smaller window takes them out of view.
void frm_vornik::mnu_function_advanced_Click() {
  const bool advanced = form_.mnu_function_advanced->isChecked();
  if (advanced) form_.ShowShrinkControls();
  form_.SetAdvancedHeight(advanced);
}

void frm_vornik::mnu_function_aspect_Click() {
  const bool aspect = form_.mnu_function_aspect->isChecked();
  form_.SetAspectVisible(aspect);
  if (aspect) parts_->refresh.Enable();
}

void frm_vornik::mnu_about_Click() {
  // A box that has been closed, in this very event perhaps, is about to be deleted.
  if (about_.isNull() || about_->isHidden()) about_ = new frm_About(this);
  about_->show();
  about_->raise();
  about_->activateWindow();
}

// ------------------------------------------------------------------------------- text functions

std::string frm_vornik::chagetoasc(std::int16_t& Value) {
  return TwoHexDigits(Value);
}

std::string frm_vornik::changetohex(std::string& strtochange) {
  return TextToTwoHexCodes(strtochange);
}

std::string frm_vornik::changetoasc(std::string& strtochange) {
  return HexToText(strtochange);
}

std::string frm_vornik::ConvertBinary(std::string& hex) {
  return HexToBinary(hex);
}

}  // namespace kalde2
