#include "panel/vornik_form.h"

#include <QAccessible>
#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QScreen>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "controls/accessible_mark.h"
#include "controls/drop_down_list.h"
#include "controls/shared_style.h"
#include "model/mod_Producttypes.h"
#include "panel/clipping_area.h"
#include "panel/menu_letters.h"

namespace kalde2 {
namespace {

/// Pixel size of the font that the heights of the views are made for: 9 points at 96 dots an inch.
constexpr double kDefaultFontPixels = 12.0;

constexpr int kMargin = 8;
constexpr int kGap = 6;
constexpr int kRowGap = 5;

/// Width of the window at the default font, wide enough for the names of the resolutions.
constexpr int kInitialWidth = 860;

using std::chrono::milliseconds;

constexpr milliseconds kProcessInterval{100};   // between two unasked frames
constexpr milliseconds kRefreshInterval{1000};  // from a change to the rebuilt command list
constexpr int kPadRepeat = 500;                 // milliseconds between two steps of a held arrow

template <typename Widget>
Widget* Named(Widget* widget, const char* name) {
  widget->setObjectName(QLatin1String(name));
  return widget;
}

void Describe(QWidget* widget, const QString& name, const QString& description) {
  widget->setAccessibleName(name);
  widget->setAccessibleDescription(description);
}

void KeepPlaceWhenHidden(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

QFrame* Line(QWidget* parent, QFrame::Shape shape) {
  auto* const line = new QFrame(parent);
  line->setFrameShape(shape);
  line->setFrameShadow(QFrame::Sunken);
  return line;
}

/// The state of the connection is announced to whom does not see it.
void TellChange(QLabel* state) {
  QAccessibleEvent change(state, QAccessible::Alert);
  QAccessible::updateAccessibility(&change);
}

}  // namespace

VornikForm::VornikForm(QMainWindow& window) : window_(window) {
  InstallAccessibleMarks();
  area_ = new ClippingArea(&window_);
  QWidget* const content = area_->Content();
  fra_control = Named(new QFrame(content), "fra_control");

  BuildMenus();
  CreateConnection(content);
  CreateConnectionState(content);
  CreateControls();
  CreateChecks();
  CreateButtons();
  CreateTimers();
  lbl_status = Named(new StatusLine(content), "lbl_status");
  new MenuLetters(*window_.menuBar(), *fra_control);  // the menu bar's from here on

  auto* const rows = new QVBoxLayout(content);
  rows->setContentsMargins(Scaled(kMargin), Scaled(kGap), Scaled(kMargin), 0);
  rows->setSpacing(Scaled(kGap));
  rows->addLayout(LayOutConnection());
  rows->addWidget(Line(content, QFrame::HLine));
  rows->addWidget(fra_control, 1);
  LayOutControls();

  window_.setCentralWidget(area_);
  SetTabOrder();
  CollectReplyControls();
  SetAspectVisible(false);
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           Pad("arr_shrinkposn"), Check("chk_shrinkenable"), lbl_shrink, Slider("slide_shrink")}) {
    widget->hide();
  }
  // Last, for it asks the layouts, and each later change would make them reckon once more.
  SetAdvancedHeight(false);
  window_.resize(std::min(Scaled(kInitialWidth), RoomOnScreen().width()), window_.height());
}

int VornikForm::Scaled(int pixels) const {
  const double factor = std::max(1.0, QFontInfo(window_.font()).pixelSize() / kDefaultFontPixels);
  return static_cast<int>(std::lround(pixels * factor));
}

// ------------------------------------------------------------------------------------- creation

QAction* VornikForm::AddItem(QMenu* menu, const char* name, const char* text) {
  return Named(menu->addAction(QLatin1String(text)), name);
}

void VornikForm::BuildMenus() {
  const auto add_menu = [this](const char* name, const char* text) {
    QMenu* const menu = Named(window_.menuBar()->addMenu(QLatin1String(text)), name);
    Named(menu->menuAction(), name);
    return menu;
  };
  mnu_file = add_menu("mnu_file", "&File");
  mnu_file_load = AddItem(mnu_file, "mnu_file_load", "&Load");
  mnu_file_save = AddItem(mnu_file, "mnu_file_save", "&Save");
  Named(mnu_file->addSeparator(), "menu_file_seperator");  // spelled so on purpose
  mnu_file_exit = AddItem(mnu_file, "mnu_file_exit", "&Exit");

  mnu_clone = add_menu("mnu_clone", "C&lone");
  mnu_clone_read = AddItem(mnu_clone, "mnu_clone_read", "&Read");
  menu_clone_write = AddItem(mnu_clone, "menu_clone_write", "&Write");

  mnu_function = add_menu("mnu_function", "&Function");
  mnu_function_advanced = AddItem(mnu_function, "mnu_function_advanced", "&Advanced");
  mnu_function_aspect = AddItem(mnu_function, "mnu_function_aspect", "As&pect Adjust");
  mnu_function_refreshRes =
      AddItem(mnu_function, "mnu_function_refreshRes", "&Update Resolution Data from unit");
  Named(mnu_function->addSeparator(), "mnu_function_sep2");
  cmd_function_strore = AddItem(mnu_function, "cmd_function_strore", "&Store");
  Named(mnu_function->addSeparator(), "mnu_function_space1");
  mnu_function_reset = AddItem(mnu_function, "mnu_function_reset", "&Reset");
  // Both are toggled by their handlers, which run on the click whatever the mark was.
  mnu_function_advanced->setCheckable(true);
  mnu_function_aspect->setCheckable(true);

  mnu_about = Named(window_.menuBar()->addAction(QStringLiteral("&About")), "mnu_about");
}

void VornikForm::CreateConnection(QWidget* content) {
  txt_port = Named(new QLineEdit(content), "txt_port");
  txt_port->setAlignment(Qt::AlignRight);
  txt_port->setInputMethodHints(Qt::ImhDigitsOnly);
  Describe(txt_port, QStringLiteral("Port number"),
           QStringLiteral("Number of the serial port that the unit is connected to"));
  constexpr int kDeviceCharacters = 16;  // "/dev/ttyUSB0" and "no such port" are seen whole
  lbl_portdevice = Named(new ElidedLabel(kDeviceCharacters, content), "lbl_portdevice");
  cbo_baud = Named(new DropDownList(content), "cbo_baud");
  Describe(cbo_baud, QStringLiteral("Baud rate"),
           QStringLiteral("Rate of the line, bits per second, as it is set on the unit"));
  Cmd_openclose = Named(new QPushButton(QStringLiteral("Open &Port"), content), "Cmd_openclose");
  Cmd_openclose->setAutoDefault(true);  // Enter presses it, too
  Cmd_openclose->setAccessibleDescription(
      QStringLiteral("Opens the port and detects the unit, or closes the port"));
}

void VornikForm::CreateConnectionState(QWidget* content) {
  lbl_comstate = Named(new QLabel(QStringLiteral("CLOSED"), content), "lbl_comstate");
  lbl_comstate->setTextFormat(Qt::PlainText);
  lbl_comstate->setAlignment(Qt::AlignCenter);
  lbl_comstate->setFrameShape(QFrame::StyledPanel);
  lbl_comstate->setAutoFillBackground(true);
  // Its name is its text, which tells the state.
  lbl_comstate->setAccessibleDescription(
      QStringLiteral("State of the connection: whether the port is open, and the unit behind it"));
  QFont bold = lbl_comstate->font();
  bold.setBold(true);
  lbl_comstate->setFont(bold);
}

QComboBox* VornikForm::CreateCombo(const char* name, int tag, const char* accessible_name,
                                   const char* description) {
  QComboBox* const combo = Named(new DropDownList(fra_control), name);
  if (tag != 0) combo->setProperty("Tag", QString::number(tag));
  combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  constexpr int kMinimumCharacters = 18;  // "1920 x 1080i 25Hz1250" is the widest entry of all
  combo->setMinimumContentsLength(kMinimumCharacters);
  Describe(combo, QLatin1String(accessible_name), QLatin1String(description));
  return combo;
}

void VornikForm::CreateControls() {
  cbo_program = CreateCombo("cbo_program", address::kMainInput, "Main input",
                            "Input that is shown and set up");
  cbo_resolution = CreateCombo("cbo_resolution", address::kResolution, "Resolution",
                               "Resolution of the unit's output");
  cbo_lock = CreateCombo("cbo_lock", address::kLockSource, "Lock Source",
                         "Input that the output is locked to");
  KeepPlaceWhenHidden(cbo_lock);
  CreateLockModes();
  CreateSliders();
  CreatePads();
  CreateCommands();
}

void VornikForm::CreateLockModes() {
  lock_group_ = new QButtonGroup(fra_control);
  for (std::size_t i = 0; i < kLockModes.size(); ++i) {
    const LockModeRow& row = kLockModes[i];
    opt_lock[i] = Named(new QRadioButton(QLatin1String(row.caption), fra_control), row.name);
    opt_lock[i]->setStyle(SharedStyle());
    Describe(opt_lock[i], QLatin1String(row.caption) + QStringLiteral(", Lock Mode"),
             QLatin1String(row.description));
    lock_group_->addButton(opt_lock[i], row.value);
  }
}

void VornikForm::CreateSliders() {
  for (std::size_t i = 0; i < kSliders.size(); ++i) {
    const SliderRow& row = kSliders[i];
    const ValueRange range = RangeOf(row.tag);
    cpvSlider* const slider = sliders[i] = Named(new cpvSlider(fra_control), row.name);
    slider->setProperty("Tag", QString::number(row.tag));
    slider->setMin(range.minimum);
    slider->setMax(range.maximum);
    slider->setInitial(row.initial);
    slider->setValue(row.initial);
    slider->setShowValueTip(true);
    Describe(slider, QLatin1String(row.accessible_name),
             QLatin1String(row.description) + QStringLiteral(". ") + slider->toolTip());
  }
}

void VornikForm::CreatePads() {
  for (std::size_t i = 0; i < kPads.size(); ++i) {
    const PadRow& row = kPads[i];
    const ValueRange range_x = RangeOf(row.tag);
    const ValueRange range_y = RangeOf(row.tag2);
    ArrowControl* const pad = pads[i] = Named(new ArrowControl(fra_control), row.name);
    pad->setProperty("Tag", QString::number(row.tag));
    pad->setTAG2(QString::number(row.tag2));
    pad->setTitle(QLatin1String(row.title));
    pad->setToolTip(QLatin1String(row.tooltip));
    pad->setTextX(QStringLiteral("H:"));
    pad->setValueXmin(range_x.minimum);
    pad->setValueXmax(range_x.maximum);
    pad->setValueYmin(range_y.minimum);
    pad->setValueYmax(range_y.maximum);
    pad->setRepeatInterval(kPadRepeat);
    Describe(pad, QLatin1String(row.title), QLatin1String(row.tooltip));
  }
}

void VornikForm::CreateCommands() {
  lst_commands = Named(new LineList(fra_control), "lst_commands");
  lst_commands->setToolTip(QStringLiteral("Select command to change"));
  Describe(lst_commands, QStringLiteral("Commands"), lst_commands->toolTip());
  cbo_command =
      CreateCombo("cbo_command", 0, "Value of the selected command", "Choose a value to send it");
  txt_commandval = Named(new QLineEdit(fra_control), "txt_commandval");
  txt_commandval->setAlignment(Qt::AlignRight);
  constexpr int kFewestCharacters =
      15;  // it is as wide as the list, but need not be on a small screen
  cbo_command->setMinimumContentsLength(kFewestCharacters);
  Describe(txt_commandval, QStringLiteral("Value of the selected command"),
           QStringLiteral("Type a value and press Enter"));
  for (QWidget* const editor : std::initializer_list<QWidget*>{cbo_command, txt_commandval}) {
    editor->hide();
  }
}

void VornikForm::CreateChecks() {
  for (std::size_t i = 0; i < kChecks.size(); ++i) {
    const CheckRow& row = kChecks[i];
    QCheckBox* const box = checks[i] =
        Named(new QCheckBox(QLatin1String(row.caption), fra_control), row.name);
    box->setStyle(SharedStyle());
    box->setToolTip(QLatin1String(row.tooltip));
    if (row.address != 0) box->setProperty("Tag", QString::number(row.address));
    box->setChecked(row.marked);
    Describe(box, QLatin1String(row.accessible_name), box->toolTip());
  }
}

void VornikForm::CreateButtons() {
  struct ButtonRow {
    QPushButton*& button;
    const char* name;
    const char* caption;
    const char* tooltip;
  };
  // clang-format off
  const ButtonRow rows[] = {
      {cmd_fade,         "cmd_fade",         "&Fade",      "Toggle fade"},
      {cmd_autoset,      "cmd_autoset",      "&AutoSet",   "Autoadjust RGB sources"},
      {cmd_overscan,     "cmd_overscan",     "&OverScan",  "Overscan"},
      {cmd_underscan,    "cmd_underscan",    "&Underscan", "Underscan"},
      {cmd_black,        "cmd_black",        "&Black Key", "Set Key back to black"},
      {cmd_commandMinus, "cmd_commandMinus", "-",          "One less"},
      {cmd_commandplus,  "cmd_commandplus",  "+",          "One more"},
      {cmd_test,         "cmd_test",         "",           ""},
  };
  // clang-format on
  for (const ButtonRow& row : rows) {
    row.button = Named(new QPushButton(QLatin1String(row.caption), fra_control), row.name);
    row.button->setToolTip(QLatin1String(row.tooltip));
    row.button->setAutoDefault(false);
    row.button->setAccessibleDescription(QLatin1String(row.tooltip));
  }
  cmd_commandMinus->setAccessibleName(QStringLiteral("- (one less)"));
  cmd_commandplus->setAccessibleName(QStringLiteral("+ (one more)"));
  for (QPushButton* const hidden : {cmd_commandMinus, cmd_commandplus, cmd_test}) hidden->hide();
}

void VornikForm::CreateTimers() {
  const auto create = [this](const char* name, milliseconds interval) {
    auto* const timer = Named(new QTimer(&window_), name);
    timer->setTimerType(Qt::PreciseTimer);  // others tick up to a twentieth early or late
    timer->setInterval(interval);
    return timer;
  };
  TmrProcessMessage = create("TmrProcessMessage", kProcessInterval);
  tmr_updatelstCommands = create("tmr_updatelstCommands", kRefreshInterval);
}

// --------------------------------------------------------------------------------------- layout

QGridLayout* VornikForm::NewGrid() const {
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(Scaled(kGap));
  grid->setVerticalSpacing(Scaled(kRowGap));
  return grid;
}

QLabel* VornikForm::Heading(const char* name, const char* text) {
  QLabel* const label = Caption(name, text);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  return label;
}

QLabel* VornikForm::Caption(const char* name, const char* text, QWidget* buddy) {
  auto* const label = Named(new QLabel(QLatin1String(text), fra_control), name);
  label->setTextFormat(Qt::PlainText);
  if (buddy != nullptr) label->setBuddy(buddy);
  return label;
}

QBoxLayout* VornikForm::LayOutConnection() {
  QWidget* const content = fra_control->parentWidget();
  const auto caption = [content](const char* name, const char* text, QWidget* buddy) {
    auto* const label = Named(new QLabel(QLatin1String(text), content), name);
    label->setBuddy(buddy);
    return label;
  };
  // Whatever is shown in it, nothing of the row moves.
  constexpr int kPortDigits = 6;
  txt_port->setFixedWidth(txt_port->fontMetrics().averageCharWidth() * (kPortDigits + 3));
  const QString open = Cmd_openclose->text();
  Cmd_openclose->setText(QStringLiteral("Close &Port"));  // the wider one of its two captions
  Cmd_openclose->setMinimumWidth(Cmd_openclose->sizeHint().width());
  Cmd_openclose->setText(open);
  auto* const row = new QHBoxLayout;
  row->setSpacing(Scaled(kGap));
  row->addWidget(caption("lbl_port", "Port", txt_port));
  row->addWidget(txt_port);
  row->addWidget(lbl_portdevice);
  row->addSpacing(Scaled(kGap));
  row->addWidget(caption("lbl_baud", "Baud rate", cbo_baud));
  row->addWidget(cbo_baud);
  row->addSpacing(Scaled(kGap));
  row->addWidget(Cmd_openclose);
  row->addStretch(1);
  lbl_comstate->setMinimumWidth(
      lbl_comstate->fontMetrics().horizontalAdvance(QStringLiteral("OPEN : 9R-K2-315")) +
      4 * Scaled(kMargin));
  row->addWidget(lbl_comstate);
  return row;
}

void VornikForm::LayOutControls() {
  auto* const left = new QVBoxLayout;
  left->setSpacing(Scaled(kRowGap));
  left->addLayout(LayOutSources());
  left->addWidget(Line(fra_control, QFrame::HLine));
  QGridLayout* const picture = LayOutPicture();
  left->addLayout(picture);
  left->addWidget(Line(fra_control, QFrame::HLine));
  left->addLayout(LayOutKeyer());
  left->addItem(new RoomFor(*lbl_status, *fra_control));
  QGridLayout* const shrink = LayOutShrink();
  AlignStrips(*picture, *shrink);
  LayOutCommands();

  auto* const grid = new QGridLayout(fra_control);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(2 * Scaled(kMargin));
  grid->setVerticalSpacing(0);
  grid->addLayout(left, 0, 0);
  grid->addLayout(shrink, 1, 0);
  grid->addLayout(commands_, 0, 1, 2, 1);
  grid->setColumnStretch(0, 3);
  grid->setColumnStretch(1, 2);
  grid->setRowStretch(0, 1);
  grid->setRowMinimumHeight(1, Scaled(kAdvancedHeight) - Scaled(kCompactHeight));
}

QGridLayout* VornikForm::LayOutSources() {
  QGridLayout* const grid = NewGrid();
  grid->addWidget(Heading("lbl_source", "Source and output"), 0, 0, 1, 4);
  grid->addWidget(Caption("lbl_program", "Main input", cbo_program), 1, 0);
  grid->addWidget(cbo_program, 1, 1);
  grid->addWidget(Caption("lbl_resolution", "Resolution", cbo_resolution), 1, 2);
  grid->addWidget(cbo_resolution, 1, 3);
  lbl_lockmode = Caption("lbl_lockmode", "Lock Mode");
  grid->addWidget(lbl_lockmode, 2, 0);
  auto* const modes = new QHBoxLayout;
  modes->setSpacing(Scaled(kGap));
  for (QRadioButton* const mode : opt_lock) modes->addWidget(mode);
  modes->addStretch(1);
  grid->addLayout(modes, 2, 1);
  lbl_locksource = Caption("lbl_locksource", "Lock Source", cbo_lock);
  KeepPlaceWhenHidden(lbl_locksource);
  grid->addWidget(lbl_locksource, 2, 2);
  grid->addWidget(cbo_lock, 2, 3);
  grid->setColumnStretch(1, 1);
  grid->setColumnStretch(3, 1);
  return grid;
}

QGridLayout* VornikForm::LayOutPicture() {
  QGridLayout* const grid = NewGrid();
  lbl_zoom = Caption("lbl_zoom", "Zoom (%)", Slider("slide_zoom"));
  lbl_zoomv = Caption("lbl_zoomv", "Zoom V (%)", Slider("slide_zoomv"));
  KeepPlaceWhenHidden(lbl_zoomv);
  KeepPlaceWhenHidden(Slider("slide_zoomv"));
  grid->addWidget(Heading("lbl_picture", "Picture"), 0, 0);
  grid->addWidget(Check("chk_zoomenable"), 0, 1);
  grid->addWidget(lbl_zoom, 1, 0);
  grid->addWidget(Slider("slide_zoom"), 1, 1);
  grid->addWidget(lbl_zoomv, 2, 0);
  grid->addWidget(Slider("slide_zoomv"), 2, 1);
  grid->addWidget(Pad("arr_zoompan"), 0, 2, 3, 1);
  grid->addWidget(cmd_fade, 0, 3);
  grid->addWidget(cmd_autoset, 0, 4);
  grid->addWidget(cmd_overscan, 1, 3);
  grid->addWidget(cmd_underscan, 1, 4);
  grid->setColumnStretch(1, 1);
  return grid;
}

QGridLayout* VornikForm::LayOutKeyer() {
  QGridLayout* const grid = NewGrid();
  lbl_keyerenable = Heading("lbl_keyerenable", "Keyer");
  grid->addWidget(lbl_keyerenable, 0, 0);
  auto* const switches = new QHBoxLayout;
  switches->setSpacing(2 * Scaled(kGap));
  switches->addWidget(Check("chk_keyenable"));
  switches->addWidget(Check("chk_swapforback"));
  switches->addStretch(1);
  switches->addWidget(cmd_black);
  grid->addLayout(switches, 0, 1, 1, 3);

  constexpr std::array<const char*, 3> kLimits = {"Min", "Max", "Softness"};
  constexpr std::array<const char*, 3> kComponents = {"Y", "U", "V"};
  constexpr SliderId kGridSliders[3][3] = {{"slide_ymin", "slide_ymax", "slide_softy"},
                                           {"slide_umin", "slide_umax", "slide_softu"},
                                           {"slide_vmin", "slide_vmax", "slide_softv"}};
  constexpr std::array<const char*, 3> kLimitLabels = {"lbl_keymin", "lbl_keymax", "lbl_keysoft"};
  constexpr std::array<const char*, 3> kComponentLabels = {"lbl_keyy", "lbl_keyu", "lbl_keyv"};
  for (int i = 0; i < 3; ++i) {
    const auto n = static_cast<std::size_t>(i);
    grid->addWidget(Caption(kLimitLabels[n], kLimits[n]), 1, i + 1);
    QLabel* const component = Caption(kComponentLabels[n], kComponents[n]);
    component->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(component, i + 2, 0);
    for (int j = 0; j < 3; ++j) grid->addWidget(Slider(kGridSliders[i][j]), i + 2, j + 1);
    grid->setColumnStretch(i + 1, 1);
  }
  return grid;
}

QBoxLayout* VornikForm::LayOutEditor() {
  auto* const editor = new QHBoxLayout;
  editor->setSpacing(Scaled(kGap));
  lbl_command = Caption("lbl_command", "Value", cbo_command);
  lbl_command->hide();
  editor->addWidget(lbl_command);
  editor->addWidget(cbo_command, 1);
  editor->addWidget(txt_commandval, 1);
  const int square = txt_commandval->sizeHint().height();
  int height = 0;
  for (QPushButton* const step : {cmd_commandMinus, cmd_commandplus}) {
    step->setFixedWidth(square * 3 / 2);
    editor->addWidget(step);
  }
  for (const QWidget* const part : std::initializer_list<QWidget*>{
           lbl_command, cbo_command, txt_commandval, cmd_commandMinus, cmd_commandplus}) {
    height = std::max(height, part->sizeHint().height());
  }
  editor->addStrut(height);  // the list keeps its place whichever editor there is, and without one
  return editor;
}

/// The editor stands above the list: the list's lower edge goes with the view, and nothing else.
void VornikForm::LayOutCommands() {
  constexpr int kLineCharacters = 36;  // "Swap Fore / Background : Off" and the like
  const int lines = lst_commands->fontMetrics().averageCharWidth() * kLineCharacters;
  QBoxLayout* const editor = LayOutEditor();
  const int widest_editor =
      lbl_command->sizeHint().width() + editor->spacing() + cbo_command->minimumSizeHint().width();
  lst_commands->setMinimumWidth(std::max(lines, widest_editor));
  commands_ = new QVBoxLayout;
  commands_->setSpacing(Scaled(kRowGap));
  commands_->addWidget(Heading("lbl_commands", "Commands"));
  commands_->addLayout(editor);
  commands_->addItem(new LineListItem(lst_commands));
  commands_->setStretch(commands_->count() - 1, 1);
}

QGridLayout* VornikForm::LayOutShrink() {
  QGridLayout* const grid = NewGrid();
  grid->setContentsMargins(0, 0, 0, Scaled(kRowGap));
  lbl_shrink = Caption("lbl_shrink", "Shrink (%)", Slider("slide_shrink"));
  lbl_shrinkv = Caption("lbl_shrinkv", "Shrink V (%)", Slider("slide_shrinkv"));
  grid->addWidget(Line(fra_control, QFrame::HLine), 0, 0, 1, 5);
  grid->addWidget(Heading("lbl_shrinkgroup", "Shrink"), 1, 0);
  grid->addWidget(Check("chk_shrinkenable"), 1, 1);
  grid->addWidget(lbl_shrink, 2, 0);
  grid->addWidget(Slider("slide_shrink"), 2, 1);
  grid->addWidget(lbl_shrinkv, 3, 0);
  grid->addWidget(Slider("slide_shrinkv"), 3, 1);
  grid->addWidget(Pad("arr_shrinkposn"), 1, 2, 3, 1);
  for (QWidget* const widget : std::initializer_list<QWidget*>{lbl_shrink, lbl_shrinkv}) {
    KeepPlaceWhenHidden(widget);
  }
  for (QWidget* const widget : ControlsOf(Group::kShrink)) KeepPlaceWhenHidden(widget);
  grid->setColumnStretch(1, 1);
  return grid;
}

/// Gives both strips the same columns: POSN stands under PAN, and the sliders under the sliders.
void VornikForm::AlignStrips(QGridLayout& picture, QGridLayout& shrink) const {
  int caption = 0;
  for (const QLabel* const label : {lbl_zoom, lbl_zoomv, lbl_shrink, lbl_shrinkv}) {
    caption = std::max(caption, label->sizeHint().width());
  }
  const auto width = [](const QPushButton* a, const QPushButton* b) {
    return std::max(a->sizeHint().width(), b->sizeHint().width());
  };
  for (QGridLayout* const strip : {&picture, &shrink}) {
    strip->setColumnMinimumWidth(0, caption);
    strip->setColumnMinimumWidth(3, width(cmd_fade, cmd_overscan));
    strip->setColumnMinimumWidth(4, width(cmd_autoset, cmd_underscan));
  }
}

std::vector<QWidget*> VornikForm::ControlsOf(Group group) const {
  std::vector<QWidget*> controls;
  const auto add = [&](const auto& rows, const auto& widgets) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].group == group) controls.push_back(widgets[i]);
    }
  };
  add(kChecks, checks);
  add(kSliders, sliders);
  add(kPads, pads);
  return controls;
}

void VornikForm::SetTabOrder() {
  std::vector<QWidget*> order = {txt_port, cbo_baud, Cmd_openclose, cbo_program, cbo_resolution};
  const auto add = [&order](const auto& widgets) {
    order.insert(order.end(), widgets.begin(), widgets.end());
  };
  add(opt_lock);
  order.push_back(cbo_lock);
  add(ControlsOf(Group::kPicture));
  add(std::array<QWidget*, 4>{cmd_fade, cmd_autoset, cmd_overscan, cmd_underscan});
  // As it stands in the window: the button comes between the marks and the sliders.
  const std::vector<QWidget*> keyer = ControlsOf(Group::kKeyer);
  const auto first_slider = std::ranges::find_if(
      keyer, [](const QWidget* control) { return qobject_cast<const cpvSlider*>(control); });
  order.insert(order.end(), keyer.begin(), first_slider);
  order.push_back(cmd_black);
  order.insert(order.end(), first_slider, keyer.end());
  add(std::array<QWidget*, 5>{lst_commands, cbo_command, txt_commandval, cmd_commandMinus,
                              cmd_commandplus});
  add(ControlsOf(Group::kShrink));
  for (std::size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}

/// Text boxes, labels, pads, sliders, buttons, combo boxes, list boxes, check boxes and option
/// buttons: the kinds that replies are shown on and that the panel enables.
void VornikForm::CollectReplyControls() {
  for (QWidget* const widget : window_.findChildren<QWidget*>()) {
    const bool listed = qobject_cast<QLineEdit*>(widget) != nullptr ||
                        qobject_cast<QLabel*>(widget) != nullptr ||
                        qobject_cast<ArrowControl*>(widget) != nullptr ||
                        qobject_cast<cpvSlider*>(widget) != nullptr ||
                        qobject_cast<QAbstractButton*>(widget) != nullptr ||
                        qobject_cast<QComboBox*>(widget) != nullptr ||
                        qobject_cast<QListWidget*>(widget) != nullptr;
    const bool own = widget->parentWidget() == fra_control ||
                     widget->parentWidget() == fra_control->parentWidget();
    if (listed && own && widget != lbl_status) reply_controls_.push_back(widget);
  }
}

// ---------------------------------------------------------------------------- state of the form

void VornikForm::SetPanelEnabled(bool enabled) {
  mnu_clone->setEnabled(enabled);
  mnu_function->setEnabled(enabled);
  for (QWidget* const control : reply_controls_) {
    if (control->parentWidget() == fra_control) control->setEnabled(enabled);
  }
  if (!enabled) return;
  // Only this slider: the vertical one stays enabled, which is intended.
  QCheckBox* const shrink_enable = Check("chk_shrinkenable");
  const QSignalBlocker silent(shrink_enable);
  shrink_enable->setChecked(false);
  Slider("slide_shrink")->setEnabled(false);
}

void VornikForm::SetFeatureControlsEnabled(bool enabled) {
  mnu_function_advanced->setEnabled(enabled);
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           lbl_keyerenable, Check("chk_keyenable"), cmd_black, lbl_locksource, cbo_lock,
           lbl_lockmode, opt_lock[0], opt_lock[1], opt_lock[2], cmd_fade}) {
    widget->setEnabled(enabled);
  }
  if (!enabled) return;
  for (QPushButton* const button : {cmd_autoset, cmd_overscan, cmd_underscan}) {
    button->setEnabled(true);
  }
}

void VornikForm::SetAdvancedHeight(bool advanced) {
  advanced_ = advanced;
  const int out_of_view = advanced ? 0 : Scaled(kAdvancedHeight) - Scaled(kCompactHeight);
  commands_->setContentsMargins(0, 0, 0, Scaled(kMargin) + out_of_view);
  FitToScreen();
  // Out of view, the shrink controls are out of the keyboard's way, too.
  for (QWidget* const widget : ControlsOf(Group::kShrink)) {
    widget->setFocusPolicy(advanced ? Qt::StrongFocus : Qt::NoFocus);
    // The list is the nearest place where no key sends anything.
    if (!advanced && window_.focusWidget() == widget) lst_commands->setFocus();
  }
}

/// What the screen has for the inside of the window.
QSize VornikForm::RoomOnScreen() const {
  QSize frame = window_.frameGeometry().size() - window_.size();
  if (frame.isNull()) {  // the window has none yet, or never gets one
    frame = {0, window_.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window_)};
  }
  return window_.screen()->availableSize() - frame;
}

void VornikForm::FitToScreen() {
  const QSize room = RoomOnScreen();
  const QSize least = area_->Content()->minimumSizeHint();
  const int menu = window_.menuBar()->sizeHint().height();
  const int content = Scaled(kAdvancedHeight) - menu;
  // A desktop's style may have controls that are too high for the views: these scroll as well.
  const int beyond = std::max(0, least.height() - content);
  int height = Scaled(advanced_ ? kAdvancedHeight : kCompactHeight);
  const bool scrolls = beyond > 0 || height > room.height();
  area_->SetContentHeight(content + beyond);
  area_->SetView(height - menu + beyond, scrolls);
  const int bar = scrolls ? area_->verticalScrollBar()->sizeHint().width() : 0;
  const int width = least.width() + bar;
  if (width > room.width()) height += area_->horizontalScrollBar()->sizeHint().height();
  area_->setMinimumWidth(std::min(width, room.width()));
  window_.setFixedHeight(std::min(height, room.height()));
  if (window_.width() > room.width()) window_.resize(room.width(), window_.height());
}

void VornikForm::SetAspectVisible(bool visible) {
  for (QWidget* const widget : std::initializer_list<QWidget*>{lbl_shrinkv, Slider("slide_shrinkv"),
                                                               lbl_zoomv, Slider("slide_zoomv")}) {
    widget->setVisible(visible);
  }
}

void VornikForm::ShowShrinkControls() {
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           Pad("arr_shrinkposn"), Check("chk_shrinkenable"), lbl_shrink, Slider("slide_shrink")}) {
    widget->show();
  }
}

void VornikForm::ShowLockMode(int value) {
  lock_mode_ = value;
  if (QAbstractButton* const mode = lock_group_->button(value)) {
    mode->setChecked(true);
    for (QWidget* const widget : std::initializer_list<QWidget*>{cbo_lock, lbl_locksource}) {
      widget->setVisible(value != 0);
    }
    return;
  }
  // An exclusive group always keeps one chosen.
  lock_group_->setExclusive(false);
  for (QRadioButton* const mode : opt_lock) mode->setChecked(false);
  lock_group_->setExclusive(true);
}

void VornikForm::ShowOpen(const QString& state) {
  lbl_comstate->setText(state);
  lbl_comstate->setToolTip(
      QStringLiteral("Port %1: %2\n%3").arg(txt_port->text(), lbl_portdevice->text(), state));
  lbl_comstate->setBackgroundRole(QPalette::Highlight);
  lbl_comstate->setForegroundRole(QPalette::HighlightedText);
  TellChange(lbl_comstate);
}

void VornikForm::ShowClosed() {
  Cmd_openclose->setText(QStringLiteral("Open &Port"));
  lbl_comstate->setText(QStringLiteral("CLOSED"));
  lbl_comstate->setToolTip({});
  lbl_comstate->setBackgroundRole(QPalette::Window);
  lbl_comstate->setForegroundRole(QPalette::WindowText);
  cbo_baud->setEnabled(true);
  TellChange(lbl_comstate);
}

void VornikForm::ShowDevice(const QString& device) {
  lbl_portdevice->setText(device);
  lbl_portdevice->setToolTip(device);
}

void VornikForm::AskForPort() {
  txt_port->setFocus();
  txt_port->selectAll();
}

}  // namespace kalde2
