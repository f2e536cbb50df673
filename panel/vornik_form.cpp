#include "panel/vornik_form.h"

#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "controls/accessible_mark.h"
#include "controls/drop_down_list.h"
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

QGridLayout* NewGrid() {
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(kGap);
  grid->setVerticalSpacing(kRowGap);
  return grid;
}

}  // namespace

VornikForm::VornikForm(QMainWindow& window) : window_(window) {
  InstallAccessibleMarks();
  auto* const clip = new ClippingArea(&window_);
  QWidget* const content = clip->Content();
  fra_control = Named(new QFrame(content), "fra_control");

  BuildMenus();
  CreateConnection(content);
  CreateControls();
  CreateChecks();
  CreateButtons();
  CreateTimers();
  lbl_status = Named(new StatusLine(content), "lbl_status");
  new MenuLetters(*window_.menuBar(), *fra_control);  // the menu bar's from here on

  auto* const rows = new QVBoxLayout(content);
  rows->setContentsMargins(kMargin, kGap, kMargin, 0);
  rows->setSpacing(kGap);
  rows->addLayout(LayOutConnection());
  rows->addWidget(Line(content, QFrame::HLine));
  rows->addWidget(fra_control, 1);
  LayOutControls();

  window_.setCentralWidget(clip);
  clip->SetContentHeight(Scaled(kAdvancedHeight) - window_.menuBar()->sizeHint().height());
  SetTabOrder();
  CollectReplyControls();
  SetAdvancedHeight(false);
  window_.resize(Scaled(kInitialWidth), window_.height());
  SetAspectVisible(false);
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           arr_shrinkposn, chk_shrinkenable, lbl_shrink, Slider("slide_shrink")}) {
    widget->hide();
  }
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
  lbl_portdevice = Named(new QLabel(content), "lbl_portdevice");
  lbl_portdevice->setTextFormat(Qt::PlainText);
  cbo_baud = Named(new DropDownList(content), "cbo_baud");
  Describe(cbo_baud, QStringLiteral("Baud rate"),
           QStringLiteral("Rate of the line, bits per second, as it is set on the unit"));
  Cmd_openclose = Named(new QPushButton(QStringLiteral("Open &Port"), content), "Cmd_openclose");
  Cmd_openclose->setAutoDefault(true);  // Enter presses it, too
  Describe(Cmd_openclose, QStringLiteral("Open or close the port"),
           QStringLiteral("Opens the port and detects the unit, or closes the port"));
  lbl_comstate = Named(new QLabel(QStringLiteral("CLOSED"), content), "lbl_comstate");
  lbl_comstate->setTextFormat(Qt::PlainText);
  lbl_comstate->setAlignment(Qt::AlignCenter);
  lbl_comstate->setFrameShape(QFrame::StyledPanel);
  lbl_comstate->setAutoFillBackground(true);
  Describe(lbl_comstate, QStringLiteral("State of the connection"),
           QStringLiteral("Whether the port is open, and the unit behind it"));
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

ArrowControl* VornikForm::CreatePad(const PadRow& row) {
  auto* const pad = Named(new ArrowControl(fra_control), row.name);
  pad->setProperty("Tag", QString::number(row.tag));
  pad->setTAG2(QString::number(row.tag2));
  pad->setTitle(QLatin1String(row.title));
  pad->setToolTip(QLatin1String(row.tooltip));
  pad->setTextX(QStringLiteral("H:"));
  pad->setValueXmin(0);
  pad->setValueXmax(100);
  pad->setValueYmin(0);
  pad->setValueYmax(100);
  pad->setRepeatInterval(kPadRepeat);
  Describe(pad, QLatin1String(row.title), QLatin1String(row.tooltip));
  return pad;
}

void VornikForm::CreateControls() {
  cbo_program = CreateCombo("cbo_program", address::kMainInput, "Main input",
                            "Input that is shown and set up");
  cbo_resolution = CreateCombo("cbo_resolution", address::kResolution, "Output resolution",
                               "Resolution of the unit's output");
  cbo_lock = CreateCombo("cbo_lock", address::kLockSource, "Lock source",
                         "Input that the output is locked to");
  KeepPlaceWhenHidden(cbo_lock);

  lock_group_ = new QButtonGroup(fra_control);
  for (std::size_t i = 0; i < kLockModes.size(); ++i) {
    const LockModeRow& row = kLockModes[i];
    opt_lock[i] = Named(new QRadioButton(QLatin1String(row.caption), fra_control), row.name);
    Describe(opt_lock[i], QStringLiteral("Lock mode ") + QLatin1String(row.caption),
             QLatin1String(row.description));
    lock_group_->addButton(opt_lock[i], row.value);
  }

  for (std::size_t i = 0; i < kSliders.size(); ++i) {
    const SliderRow& row = kSliders[i];
    sliders[i] = Named(new cpvSlider(fra_control), row.name);
    sliders[i]->setProperty("Tag", QString::number(row.tag));
    sliders[i]->setMin(row.minimum);
    sliders[i]->setMax(row.maximum);
    sliders[i]->setInitial(row.initial);
    sliders[i]->setValue(row.initial);
    sliders[i]->setShowValueTip(true);
    Describe(sliders[i], QLatin1String(row.accessible_name), sliders[i]->toolTip());
  }

  arr_zoompan = CreatePad(kPads[0]);
  arr_shrinkposn = CreatePad(kPads[1]);

  lst_commands = Named(new QListWidget(fra_control), "lst_commands");
  lst_commands->setToolTip(QStringLiteral("Select command to change"));
  lst_commands->setUniformItemSizes(true);
  Describe(lst_commands, QStringLiteral("Commands"), lst_commands->toolTip());
  cbo_command =
      CreateCombo("cbo_command", 0, "Value of the selected command", "Choose a value to send it");
  txt_commandval = Named(new QLineEdit(fra_control), "txt_commandval");
  txt_commandval->setAlignment(Qt::AlignRight);
  Describe(txt_commandval, QStringLiteral("Value of the selected command"),
           QStringLiteral("Type a value and press Enter"));
  for (QWidget* const editor : std::initializer_list<QWidget*>{cbo_command, txt_commandval}) {
    editor->hide();
  }
}

void VornikForm::CreateChecks() {
  const std::array<QCheckBox**, kChecks.size()> boxes = {&chk_keyenable, &chk_swapforback,
                                                         &chk_shrinkenable, &chk_zoomenable};
  for (std::size_t i = 0; i < kChecks.size(); ++i) {
    const CheckRow& row = kChecks[i];
    auto* const box = Named(new QCheckBox(QLatin1String(row.caption), fra_control), row.name);
    box->setToolTip(QLatin1String(row.tooltip));
    if (row.address != 0) box->setProperty("Tag", QString::number(row.address));
    Describe(box, box->toolTip(), box->toolTip());
    *boxes[i] = box;
  }
  // The zoom sliders are enabled with the panel; the mark says so from the start.
  chk_zoomenable->setChecked(true);
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
    Describe(row.button, QLatin1String(row.tooltip), QLatin1String(row.tooltip));
  }
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
  constexpr int kPortDigits = 6;
  txt_port->setMaximumWidth(txt_port->fontMetrics().averageCharWidth() * (kPortDigits + 3));
  auto* const row = new QHBoxLayout;
  row->setSpacing(kGap);
  row->addWidget(caption("lbl_port", "Port", txt_port));
  row->addWidget(txt_port);
  row->addWidget(lbl_portdevice);
  row->addSpacing(kGap);
  row->addWidget(caption("lbl_baud", "Baud rate", cbo_baud));
  row->addWidget(cbo_baud);
  row->addSpacing(kGap);
  row->addWidget(Cmd_openclose);
  row->addStretch(1);
  lbl_comstate->setMinimumWidth(
      lbl_comstate->fontMetrics().horizontalAdvance(QStringLiteral("OPEN : 9R-K2-315")) +
      4 * kMargin);
  row->addWidget(lbl_comstate);
  return row;
}

void VornikForm::LayOutControls() {
  auto* const left = new QVBoxLayout;
  left->setSpacing(kRowGap);
  left->addLayout(LayOutSources());
  left->addWidget(Line(fra_control, QFrame::HLine));
  left->addLayout(LayOutPicture());
  left->addWidget(Line(fra_control, QFrame::HLine));
  left->addLayout(LayOutKeyer());
  left->addItem(new RoomFor(*lbl_status, *fra_control));

  auto* const grid = new QGridLayout(fra_control);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(2 * kMargin);
  grid->setVerticalSpacing(0);
  grid->addLayout(left, 0, 0);
  grid->addLayout(LayOutCommands(), 0, 1);
  grid->addLayout(LayOutShrink(), 1, 0);
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
  modes->setSpacing(kGap);
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
  grid->addWidget(chk_zoomenable, 0, 1);
  grid->addWidget(lbl_zoom, 1, 0);
  grid->addWidget(Slider("slide_zoom"), 1, 1);
  grid->addWidget(lbl_zoomv, 2, 0);
  grid->addWidget(Slider("slide_zoomv"), 2, 1);
  grid->addWidget(arr_zoompan, 0, 2, 3, 1);
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
  switches->setSpacing(2 * kGap);
  switches->addWidget(chk_keyenable);
  switches->addWidget(chk_swapforback);
  switches->addStretch(1);
  switches->addWidget(cmd_black);
  grid->addLayout(switches, 0, 1, 1, 3);

  constexpr std::array<const char*, 3> kLimits = {"Min", "Max", "Softness"};
  constexpr std::array<const char*, 3> kComponents = {"Y", "U", "V"};
  constexpr const char* kGridSliders[3][3] = {{"slide_ymin", "slide_ymax", "slide_softy"},
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

QBoxLayout* VornikForm::LayOutCommands() {
  auto* const editor = new QHBoxLayout;
  editor->setSpacing(kGap);
  lbl_command = Caption("lbl_command", "Value", cbo_command);
  lbl_command->hide();
  editor->addStrut(cbo_command->sizeHint().height());  // the list keeps its place without an editor
  editor->addWidget(lbl_command);
  editor->addWidget(cbo_command, 1);
  editor->addWidget(txt_commandval, 1);
  const int square = txt_commandval->sizeHint().height();
  for (QPushButton* const step : {cmd_commandMinus, cmd_commandplus}) {
    step->setFixedWidth(square * 3 / 2);
    editor->addWidget(step);
  }
  constexpr int kLineCharacters = 40;  // "Swap Fore / Background : Off" and the like
  lst_commands->setMinimumWidth(lst_commands->fontMetrics().averageCharWidth() * kLineCharacters);
  auto* const column = new QVBoxLayout;
  column->setSpacing(kRowGap);
  column->setContentsMargins(0, 0, 0, kMargin);
  column->addWidget(Heading("lbl_commands", "Commands"));
  column->addWidget(lst_commands, 1);
  column->addLayout(editor);
  return column;
}

QGridLayout* VornikForm::LayOutShrink() {
  QGridLayout* const grid = NewGrid();
  grid->setContentsMargins(0, 0, 0, kRowGap);
  lbl_shrink = Caption("lbl_shrink", "Shrink (%)", Slider("slide_shrink"));
  lbl_shrinkv = Caption("lbl_shrinkv", "Shrink V (%)", Slider("slide_shrinkv"));
  grid->addWidget(chk_shrinkenable, 0, 0, 1, 2);
  grid->addWidget(lbl_shrink, 1, 0);
  grid->addWidget(Slider("slide_shrink"), 1, 1);
  grid->addWidget(lbl_shrinkv, 2, 0);
  grid->addWidget(Slider("slide_shrinkv"), 2, 1);
  grid->addWidget(arr_shrinkposn, 0, 2, 3, 1);
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           chk_shrinkenable, lbl_shrink, lbl_shrinkv, Slider("slide_shrink"),
           Slider("slide_shrinkv"), arr_shrinkposn}) {
    KeepPlaceWhenHidden(widget);
  }
  grid->setColumnStretch(1, 1);
  return grid;
}

void VornikForm::SetTabOrder() {
  std::vector<QWidget*> order = {txt_port, cbo_baud, Cmd_openclose, cbo_program, cbo_resolution};
  order.insert(order.end(), opt_lock.begin(), opt_lock.end());
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           cbo_lock, chk_zoomenable, Slider("slide_zoom"), Slider("slide_zoomv"), arr_zoompan,
           cmd_fade, cmd_autoset, cmd_overscan, cmd_underscan, chk_keyenable, chk_swapforback,
           cmd_black}) {
    order.push_back(widget);
  }
  for (std::size_t i = 0; i < kSliders.size(); ++i) {
    const int tag = kSliders[i].address;
    if (tag >= 175 && tag != 261 && tag != 262) order.push_back(sliders[i]);
  }
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           lst_commands, cbo_command, txt_commandval, cmd_commandMinus, cmd_commandplus,
           chk_shrinkenable, Slider("slide_shrink"), Slider("slide_shrinkv"), arr_shrinkposn}) {
    order.push_back(widget);
  }
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

cpvSlider* VornikForm::Slider(const char* name) const {
  const auto row = std::ranges::find_if(
      kSliders, [name](const SliderRow& slider) { return qstrcmp(slider.name, name) == 0; });
  Q_ASSERT(row != kSliders.end());
  return sliders[static_cast<std::size_t>(row - kSliders.begin())];
}

void VornikForm::SetPanelEnabled(bool enabled) {
  mnu_clone->setEnabled(enabled);
  mnu_function->setEnabled(enabled);
  for (QWidget* const control : reply_controls_) {
    if (control->parentWidget() == fra_control) control->setEnabled(enabled);
  }
  if (!enabled) return;
  // Only this slider: the vertical one stays enabled, which is intended.
  const QSignalBlocker silent(chk_shrinkenable);
  chk_shrinkenable->setChecked(false);
  Slider("slide_shrink")->setEnabled(false);
}

void VornikForm::SetFeatureControlsEnabled(bool enabled) {
  mnu_function_advanced->setEnabled(enabled);
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           lbl_keyerenable, chk_keyenable, cmd_black, lbl_locksource, cbo_lock, lbl_lockmode,
           opt_lock[0], opt_lock[1], opt_lock[2], cmd_fade}) {
    widget->setEnabled(enabled);
  }
  if (!enabled) return;
  for (QPushButton* const button : {cmd_autoset, cmd_overscan, cmd_underscan}) {
    button->setEnabled(true);
  }
}

void VornikForm::SetAdvancedHeight(bool advanced) {
  window_.setFixedHeight(Scaled(advanced ? kAdvancedHeight : kCompactHeight));
  // Out of view, the shrink controls are out of the keyboard's way, too.
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           chk_shrinkenable, Slider("slide_shrink"), Slider("slide_shrinkv"), arr_shrinkposn}) {
    widget->setFocusPolicy(advanced ? Qt::StrongFocus : Qt::NoFocus);
    // The list is the nearest place where no key sends anything.
    if (!advanced && window_.focusWidget() == widget) lst_commands->setFocus();
  }
}

void VornikForm::SetAspectVisible(bool visible) {
  for (QWidget* const widget : std::initializer_list<QWidget*>{lbl_shrinkv, Slider("slide_shrinkv"),
                                                               lbl_zoomv, Slider("slide_zoomv")}) {
    widget->setVisible(visible);
  }
}

void VornikForm::ShowShrinkControls() {
  for (QWidget* const widget : std::initializer_list<QWidget*>{
           arr_shrinkposn, chk_shrinkenable, lbl_shrink, Slider("slide_shrink")}) {
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
  lbl_comstate->setBackgroundRole(QPalette::Highlight);
  lbl_comstate->setForegroundRole(QPalette::HighlightedText);
}

void VornikForm::ShowClosed() {
  Cmd_openclose->setText(QStringLiteral("Open &Port"));
  lbl_comstate->setText(QStringLiteral("CLOSED"));
  lbl_comstate->setBackgroundRole(QPalette::Window);
  lbl_comstate->setForegroundRole(QPalette::WindowText);
  cbo_baud->setEnabled(true);
}

}  // namespace kalde2
