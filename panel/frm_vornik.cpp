#include "panel/frm_vornik.h"

#include <QCloseEvent>
#include <QCoreApplication>
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

constexpr std::int32_t kOverscan = 100;
constexpr std::int32_t kUnderscan = 90;

}  // namespace

frm_vornik::frm_vornik(const Platform& platform)
    : platform_(platform),
      form_(*this),
      frames_(this),
      progress_(this, platform.clock),
      painter_(form_, queue_),
      refresh_(*form_.tmr_updatelstCommands),
      session_(platform.port, platform.clock, painter_, refresh_, queue_, *this),
      gate_(*form_.fra_control, queue_),
      command_list_(session_.Unit(), resolutions_),
      direct_(form_, session_.Link(), session_.Unit().values, refresh_, queue_, platform.boxes),
      editor_(form_, command_list_, session_.Link(), session_.Unit().values, refresh_, queue_),
      connection_(form_, session_, queue_, platform.clock, refresh_, progress_, platform.boxes,
                  OpenSteps()),
      settings_file_(session_.Unit(), platform.boxes, platform.dialogs),
      resolution_menu_(resolutions_, session_.Link(), platform.clock, progress_, platform.boxes,
                       session_.Status()),
      clone_progress_(progress_, platform.clock, ShownProgress::Result::kGoesAtOnce),
      clone_(session_.Unit(), session_.Link(), clone_progress_),
      autoset_progress_(progress_, platform.clock, ShownProgress::Result::kStaysSlept),
      autoset_(session_.Link(), platform.clock, autoset_progress_) {
  setObjectName(QStringLiteral("frm_vornik"));
  setWindowTitle(QString::fromLatin1(AppInfo::kTitle));
  connect(&progress_, &frm_Progress::SleepFollows, &frames_, &FrameLimiter::PaintNow);
  queue_.SetBulkListener([this](bool is_bulk) {
    gate_.ShowBusy(is_bulk);
    progress_.SetClosable(!is_bulk);
  });
  Form_Load();
  ConnectConnection();
  ConnectControls();
  ConnectMenus();
}

frm_vornik::~frm_vornik() {
  platform_.ports.SetListener({});
  Form_Terminate();
}

UnitConnection::Steps frm_vornik::OpenSteps() {
  return {.refresh_command_list = [this] { editor_.RefreshCommandList(); },
          .fill_source_combos = [this] { direct_.FillSourceCombos(session_.Unit().value_names); }};
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
  const SerialSettings last = LoadSerialSettings(platform_.settings);
  FillResolutionList();
  direct_.Black();  // only moves the sliders: the port is closed
  form_.SetPanelEnabled(false);
  for (const char* const rate : kBaudRates) form_.cbo_baud->addItem(QLatin1String(rate));
  form_.cbo_baud->setCurrentIndex(form_.cbo_baud->findText(
      QString::fromStdString(last.baud), Qt::MatchExactly | Qt::MatchCaseSensitive));
  form_.txt_port->setText(QString::fromStdString(last.port));
  form_.Cmd_openclose->setFocus();
}

void frm_vornik::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  // Looking for the ports takes as long as everything before it; the window is in view first.
  if (!std::exchange(is_painted_, true)) {
    QTimer::singleShot(0, this, [this] {
      form_.FitToScreen();
      UpdatePortHint();
    });
  }
}

void frm_vornik::SaveSerialSettings() {
  const int index = form_.cbo_baud->currentIndex();
  const bool chosen = index >= 0 && static_cast<std::size_t>(index) < kBaudRates.size();
  const char* const baud = chosen ? kBaudRates[static_cast<std::size_t>(index)] : "";
  kalde2::SaveSerialSettings(platform_.settings, {baud, form_.txt_port->text().toStdString()});
}

void frm_vornik::FillResolutionList() {
  for (const ResolutionItem& item : resolution_menu_.FillResolutionList()) {
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
  connection_.ShutPort();
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
  platform_.ports.SetListener([this] { UpdatePortHint(); });
  for (QWidget* const watched :
       std::initializer_list<QWidget*>{form_.txt_port, form_.Cmd_openclose, form_.txt_commandval}) {
    watched->installEventFilter(this);
  }
  connect(form_.TmrProcessMessage, &QTimer::timeout, this, &frm_vornik::TmrProcessMessage_Timer);
  connect(form_.tmr_updatelstCommands, &QTimer::timeout, this,
          &frm_vornik::tmr_updatelstCommands_Timer);
}

void frm_vornik::Cmd_openclose_Click() {
  if (!session_.IsOpen()) {
    queue_.DoInBulk("Cmd_openclose", [this] { OpenPort(); });
  } else {
    ClosePort();
  }
}

void frm_vornik::OpenPort() {
  // The session forgets what it was to cut frames from.
  form_.TmrProcessMessage->stop();
  port_came_up_ = false;
  connection_.Open();
  if (!port_came_up_) form_.AskForPort();  // it is the number that has to change
}

void frm_vornik::ClosePort() {
  connection_.Close();
}

/// While the port is open, Esc closes it.
void frm_vornik::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && session_.IsOpen()) {
    form_.Cmd_openclose->click();
  } else {
    QMainWindow::keyPressEvent(event);
  }
}

bool frm_vornik::eventFilter(QObject* watched, QEvent* event) {
  if (watched == form_.Cmd_openclose) return IsSecondPress(*event);
  if (watched == form_.txt_commandval) {
    if (event->type() == QEvent::FocusOut) {
      editor_.txt_commandval_Leave(static_cast<QFocusEvent*>(event)->reason());
    }
    return false;
  }
  if (watched != form_.txt_port) return false;
  if (event->type() == QEvent::KeyPress) {
    return TypedIntoPort(*static_cast<QKeyEvent*>(event));
  }
  if (event->type() == QEvent::MouseButtonRelease && !form_.txt_port->hasSelectedText()) {
    form_.txt_port->selectAll();  // Backspace takes nothing out; what is typed replaces it
  }
  if (event->type() == QEvent::InputMethod) {
    return CommittedIntoPort(*static_cast<QInputMethodEvent*>(event));
  }
  return false;
}

/// The second press of a double-click, and those of a key that is held: one press was meant, and
/// what it has done is not to be undone.
bool frm_vornik::IsSecondPress(const QEvent& event) {
  return event.type() == QEvent::MouseButtonDblClick ||
         (event.type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(event).isAutoRepeat());
}

/// @return true when the field is to see nothing more of the key
bool frm_vornik::TypedIntoPort(const QKeyEvent& key) {
  const bool moves_on = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
  if (key.key() == Qt::Key_Delete || moves_on) return false;
  const QString accepted = AcceptedByPort(key.text());
  if (accepted == key.text()) return false;
  if (!accepted.isEmpty()) form_.txt_port->insert(accepted);
  return true;
}

/// What an input method commits is typed, too: the field gets what is accepted of it.
bool frm_vornik::CommittedIntoPort(const QInputMethodEvent& event) {
  const QString accepted = AcceptedByPort(event.commitString());
  if (accepted == event.commitString()) return false;
  QInputMethodEvent filtered(event.preeditString(), event.attributes());
  filtered.setCommitString(accepted, event.replacementStart(), event.replacementLength());
  QCoreApplication::sendEvent(form_.txt_port, &filtered);
  return true;
}

QString frm_vornik::AcceptedByPort(const QString& typed) {
  QString accepted;
  for (const QChar character : typed) {
    int key = character.unicode();
    txt_port_KeyPress(key);
    if (key == character.unicode()) accepted += character;
  }
  return accepted;
}

/// Digits and the colon, 48 to 58, are accepted; anything else, Backspace included, becomes the
/// character 1 and so is not inserted. Both are intended.
void frm_vornik::txt_port_KeyPress(int& KeyAscii) {
  constexpr int kFirst = 48;
  constexpr int kLast = 58;
  if (KeyAscii < kFirst || KeyAscii > kLast) KeyAscii = 1;
}

void frm_vornik::UpdatePortHint() {
  const QString number = form_.txt_port->text();
  std::string device;
  try {
    device = platform_.ports.DeviceFor(RoundToInt16(NumericValue(number.toStdString())));
  } catch (const Fault&) {
    // A number beyond 16 bits stands for no port.
  }
  const QString shown =
      device.empty() ? QStringLiteral("no such port") : QString::fromStdString(device);
  form_.ShowDevice(shown);
  QString list;
  for (const NumberedPort& port : platform_.ports.PresentPorts()) {
    list += QStringLiteral("\n%1: %2").arg(port.number).arg(QString::fromStdString(port.device));
  }
  if (list.isEmpty()) list = QStringLiteral("\nnone");
  form_.txt_port->setToolTip(
      QStringLiteral("Port %1: %2\n\nPorts of this computer:%3").arg(number, shown, list));
}

void frm_vornik::UnaskedArrived() {
  if (!form_.TmrProcessMessage->isActive()) form_.TmrProcessMessage->start();
}

void frm_vornik::TmrProcessMessage_Timer() {
  if (session_.ProcessUnasked()) form_.TmrProcessMessage->stop();
}

void frm_vornik::tmr_updatelstCommands_Timer() {
  if (session_.UnitConnected()) editor_.RefreshCommandList();
  refresh_.Disable();
  editor_.SelectSavedLine();
}

void frm_vornik::cmd_test_Click() {
  session_.Link().ParseReply("F441041010A000002A2\r");
  session_.Link().ParseReply("F441041018E00000125\r");
}

// ------------------------------------------------------------------------------------ controls

void frm_vornik::ConnectControls() {
  DirectControls& direct = direct_;
  CommandEditor& editor = editor_;
  for (std::size_t i = 0; i < kSliders.size(); ++i) {
    connect(form_.sliders[i], &cpvSlider::Moved, this, Guarded([this, &direct, i](int value) {
              direct.SliderMoved(*form_.sliders[i], kSliders[i], value);
            }));
  }
  for (ArrowControl* const pad : form_.pads) {
    connect(pad, &ArrowControl::ValueChanged, this,
            Guarded([&direct, pad](int x, int y) { direct.PadStepped(*pad, x, y); }));
  }
  for (std::size_t i = 0; i < kChecks.size(); ++i) {
    const CheckRow& row = kChecks[i];
    QCheckBox* const box = form_.checks[i];
    connect(box, &QCheckBox::toggled, this,
            [&direct, box, &row](bool) { direct.CheckChanged(*box, row); });
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
  connect(form_.txt_commandval, &QLineEdit::textEdited, this,
          [&editor](const QString&) { editor.txt_commandval_Edit(); });
  connect(form_.txt_commandval, &QLineEdit::returnPressed, this,
          Guarded([&editor] { editor.txt_commandval_Enter(); }));
}

void frm_vornik::cmd_autoset_Click() {
  queue_.DoInBulk("cmd_autoset", [this] { autoset_.Run(); });
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
  queue_.Do("mnu_file_load", [this] {
    const SettingsFile::Loaded loaded = settings_file_.LoadSettingsFile();
    if (loaded == SettingsFile::Loaded::kNothing) return;
    session_.Status().FileLoaded(loaded == SettingsFile::Loaded::kWhole);
  });
}

void frm_vornik::mnu_file_save_Click() {
  queue_.Do("mnu_file_save", [this] { settings_file_.SaveSettingsFile(session_.ProductType()); });
}

void frm_vornik::mnu_clone_read_Click() {
  queue_.DoInBulk("mnu_clone_read", [this] { session_.Status().ValuesRead(clone_.CloneRead()); });
}

void frm_vornik::menu_clone_write_Click() {
  queue_.DoInBulk("menu_clone_write",
                  [this] { session_.Status().ValuesWritten(clone_.CloneWrite()); });
}

void frm_vornik::mnu_function_refreshRes_Click() {
  queue_.DoInBulk("mnu_function_refreshRes", [this] { resolution_menu_.FetchResolutionData(); });
}

void frm_vornik::cmd_function_strore_Click() {
  direct_.Store();
}

void frm_vornik::mnu_function_reset_Click() {
  direct_.Reset();
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
  // While the connectivity is read there is no list to refresh; the opening's end does that.
  if (aspect && !session_.Link().DetectionInProgress()) refresh_.Enable();
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
