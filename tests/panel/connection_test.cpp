#include <QClipboard>
#include <QGuiApplication>
#include <QProgressBar>
#include <optional>
#include <tuple>
#include <vector>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;
using Box = FakeBoxes::Box;
using Texts = std::vector<std::string>;

const auto kSection = QStringLiteral("Tessaly");
const auto kBaud = QStringLiteral("Serial Parameters");
const auto kPort = QStringLiteral("Serial Port");

const Box kNoAnswer = {"Could not read the product type.\r\n Please ensure the unit is connected",
                       BoxIcon::kCritical, "Connect"};
const Box kNotSupported = {"Product not supported", BoxIcon::kExclamation, "Connect"};

class Connection : public PanelFixture {
 protected:
  void ExpectClosed() {
    EXPECT_FALSE(port.open);
    EXPECT_FALSE(panel->Connection().UnitConnected());
    EXPECT_EQ(Form().Cmd_openclose->text(), "Open &Port");
    EXPECT_EQ(Form().lbl_comstate->text(), "CLOSED");
    EXPECT_TRUE(Form().txt_port->isEnabled() && Form().cbo_baud->isEnabled());
    EXPECT_FALSE(Form().mnu_clone->isEnabled() || Form().mnu_function->isEnabled());
    for (const QWidget* const control : Form().fra_control->findChildren<QWidget*>()) {
      const bool decoration = qobject_cast<const QFrame*>(control) != nullptr &&
                              qobject_cast<const QLabel*>(control) == nullptr &&
                              qobject_cast<const QListWidget*>(control) == nullptr;
      if (control->parent() != Form().fra_control || decoration) continue;
      EXPECT_FALSE(control->isEnabled()) << control->objectName().toStdString();
    }
    EXPECT_EQ(Form().lst_commands->count(), 0);
    EXPECT_FALSE(panel->Progress().isVisible());
  }

  void ExpectOpen(const char* model) {
    EXPECT_TRUE(port.open && panel->Connection().UnitConnected());
    EXPECT_EQ(Form().lbl_comstate->text().toStdString(), std::string("OPEN : ") + model);
    EXPECT_EQ(Form().Cmd_openclose->text(), "Close &Port");
    EXPECT_FALSE(Form().txt_port->isEnabled() || Form().cbo_baud->isEnabled());
    EXPECT_TRUE(Form().mnu_clone->isEnabled() && Form().mnu_function->isEnabled());
  }

  [[nodiscard]] static Texts Items(const QComboBox& combo) {
    Texts items;
    for (int i = 0; i < combo.count(); ++i) {
      items.push_back(combo.itemText(i).toStdString() + "=" +
                      std::to_string(combo.itemData(i).toInt()));
    }
    return items;
  }

  /// A unit slow enough for the operator to act while the panel waits for it.
  void ConnectSlowUnit() { ConnectUnit({.fitted_sources = {16, 48}, .latency = milliseconds(10)}); }

  /// A moment of an opening with the slow unit: so long after its n-th request.
  struct Moment {
    int request;
    milliseconds after;

    friend void PrintTo(const Moment& moment, std::ostream* out) {
      *out << moment.after.count() << " ms after request " << moment.request;
    }
  };
  static constexpr int kConnectivityReads = 2 * (16 + 16 + 16 + 11);
  static constexpr Moment kMoments[] = {
      {1, milliseconds(5)},                          // the product type
      {60, milliseconds(5)},                         // a source in the midst of the connectivity
      {1 + kConnectivityReads, milliseconds(1000)},  // its result stands on the progress window
      {2 + kConnectivityReads, milliseconds(5)},     // the first source that is sent
      {4 + kConnectivityReads, milliseconds(5)},     // the last one
  };

  /// Lets the operator act once, at this moment of the next opening.
  void At(const Moment& moment, std::function<void()> act) {
    port.on_write = [this, unit_answer = port.on_write, moment, act = std::move(act),
                     count = 0](std::string_view frame) mutable {
      if (++count == moment.request) clock.After(moment.after, act);
      return unit_answer(frame);
    };
  }
};

// ------------------------------------------------------------------------------------ start-up

TEST_F(Connection, StartsWithTheStoredSettings) {
  using Stored = std::optional<QString>;
  const std::tuple<Stored, Stored, const char*, const char*> cases[] = {
      {std::nullopt, std::nullopt, "57600", "1"},
      {"9600", "7", "9600", "7"},
      {"115200", "", "115200", ""},
      {"", "COM3", "", "COM3"},
      {"57600 ", "99999", "", "99999"},
      {"19200", "1", "", "1"},
  };
  for (const auto& [stored_baud, stored_port, baud, number] : cases) {
    settings.values.clear();
    if (stored_baud) settings.values[{kSection, kBaud}] = *stored_baud;
    if (stored_port) settings.values[{kSection, kPort}] = *stored_port;
    panel.reset();
    Start();
    EXPECT_EQ(Form().cbo_baud->currentText(), baud);
    EXPECT_EQ(Form().txt_port->text(), number);
  }
  EXPECT_EQ(Items(*Form().cbo_baud), (Texts{"9600=0", "38400=0", "57600=0", "115200=0"}));
}

TEST_F(Connection, StartsClosedInTheCompactViewAtTheBlackPreset) {
  Start();
  ExpectClosed();
  EXPECT_TRUE(Form().mnu_file->isEnabled() && Form().mnu_about->isEnabled());
  EXPECT_EQ(Window().height(), 382);
  EXPECT_FALSE(Form().mnu_function_advanced->isChecked());
  for (const char* const hidden :
       {"arr_shrinkposn", "chk_shrinkenable", "slide_shrink", "slide_shrinkv", "slide_zoomv",
        "cmd_test", "txt_commandval", "cbo_command", "cmd_commandMinus", "cmd_commandplus"}) {
    EXPECT_FALSE(Find<QWidget>(hidden)->isVisible()) << hidden;
  }
  EXPECT_TRUE(Form().cbo_lock->isVisible() && Form().lbl_locksource->isVisible());
  for (const QRadioButton* const mode : Form().opt_lock) EXPECT_FALSE(mode->isChecked());
  const std::tuple<const char*, int, int> preset[] = {
      {"slide_ymin", 45, 0},   {"slide_ymax", 48, 32},  {"slide_umin", 46, 120},
      {"slide_umax", 49, 134}, {"slide_vmin", 47, 120}, {"slide_vmax", 50, 134},
      {"slide_softy", 159, 0}, {"slide_softu", 161, 0}, {"slide_softv", 163, 0}};
  for (const auto& [slider, row, value] : preset) {
    EXPECT_EQ(Form().Slider(slider)->Value(), value) << slider;
    EXPECT_EQ(panel->Unit().values.ParamValue(row), value) << slider;
  }
  EXPECT_EQ(Form().cbo_resolution->currentIndex(), 0);
  EXPECT_EQ(Form().cbo_resolution->count(), 106);
  EXPECT_EQ(panel->Unit().input_names[17], "YUV2");
  // The refresh that the preset asks for finds no unit.
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_FALSE(Tick("tmr_updatelstCommands"));
  EXPECT_EQ(Form().lst_commands->count(), 0);
  EXPECT_TRUE(Written().empty() && boxes.shown.empty());
}

TEST_F(Connection, PortNumberTakesDigitsAndColonOnly) {
  Start();
  QLineEdit& box = *Form().txt_port;
  const auto press = [&box](int key, const char* text, Qt::KeyboardModifiers modifiers = {}) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, QString::fromLatin1(text));
    QCoreApplication::sendEvent(&box, &event);
  };
  QGuiApplication::clipboard()->setText("99");
  for (const char c : std::string("0a5 -.9:;/+")) press(0, std::string(1, c).c_str());
  EXPECT_EQ(box.text(), "1059:");
  press(Qt::Key_Backspace, "\b");
  press(Qt::Key_Return, "\r");
  press(Qt::Key_V, "\x16", Qt::ControlModifier);
  EXPECT_EQ(box.text(), "1059:");
  press(Qt::Key_Home, "");
  press(Qt::Key_Delete, "\x7f");
  press(Qt::Key_Right, "");
  press(Qt::Key_Delete, "\x7f");
  EXPECT_EQ(box.text(), "09:");

  Focus(box);
  ASSERT_TRUE(box.hasFocus());
  press(Qt::Key_Tab, "\t");
  EXPECT_FALSE(box.hasFocus());
  press(Qt::Key_Backtab, "");
  EXPECT_EQ(box.text(), "09:");
}

// ------------------------------------------------------------------------------------- opening

TEST_F(Connection, AsksForTheProductTypeOnALineSetUp) {
  settings.values[{kSection, kPort}] = "12";
  StartAndOpen(35);
  ASSERT_EQ(port.setups.size(), 1U);
  EXPECT_EQ(port.setups[0].settings, "57600,N,8,1");
  EXPECT_EQ(port.setups[0].handshaking, Handshaking::kRtsXonXoff);
  EXPECT_TRUE(port.setups[0].dtr_enable);
  EXPECT_EQ(port.setups[0].comm_port, 12);
  EXPECT_EQ(Written().at(0), "F84104100C499\r");
}

TEST_F(Connection, RefusesToOpenAndSaysWhy) {
  constexpr auto kTitle = "Error opening port - choose another port";
  struct Case {
    const char* stored_port;
    std::optional<std::string> open_error;
    const char* fault;
    int type;
    Box box;
    std::size_t requests;
  };
  const Case cases[] = {
      {"1", "busy", "none", 35, {"busy", BoxIcon::kCritical, kTitle}, 0},
      {"99999",
       {},
       "none",
       35,
       {"There is no serial port 99999 on this computer", BoxIcon::kCritical, kTitle},
       0},
      {"1", {}, "silent", 35, kNoAnswer, 3},
      {"1", {}, "error-reply", 35, kNoAnswer, 1},
      {"1", {}, "short-frame=4", 35, kNoAnswer, 1},
      {"1", {}, "none", 62, kNotSupported, 1},
      {"1", {}, "none", 36, kNotSupported, 1},
      {"1", {}, "none", 0, kNotSupported, 1},
      {"1", {}, "none", -1, kNotSupported, 1},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.box.prompt + " " + row.fault + " " + std::to_string(row.type));
    panel.reset();
    settings.values[{kSection, kPort}] = row.stored_port;
    port.open_error = row.open_error;
    ConnectUnit({.product_type = row.type});
    ASSERT_EQ(unit->Faults().Add(row.fault), std::nullopt);
    Start();
    boxes.shown.clear();
    Press("Cmd_openclose");
    EXPECT_EQ(boxes.shown, std::vector<Box>{row.box});
    ExpectClosed();
    EXPECT_EQ(Written().size(), row.requests);
  }
  // What the port itself refuses reaches it as it was asked for.
  for (const auto& [baud, number] : {std::pair{"", "0"}, {"9600", ""}, {"", "x"}}) {
    panel.reset();
    settings.values[{kSection, kBaud}] = baud;
    settings.values[{kSection, kPort}] = number;
    port.open_error = "refused";
    Start();
    Press("Cmd_openclose");
    EXPECT_EQ(boxes.shown.back().prompt, "refused");
    EXPECT_EQ(port.setups.back().settings, *baud == 0 ? "0,N,8,1" : "9600,N,8,1");
    EXPECT_EQ(port.setups.back().comm_port, 0);
    ExpectClosed();
  }
}

TEST_F(Connection, OffersWhatEachModelHas) {
  struct Model {
    int type;
    const char* code;
    bool features, autoset, overscan;
  };
  // clang-format off
  const Model models[] = {
      {22, "9R-K2-310", false, false, false}, {71, "9R-K2-340", false, true,  false},
      {23, "9R-K2-315", true,  true,  true},  {24, "9R-K2-320", false, false, false},
      {25, "9R-K2-325", true,  true,  false}, {26, "K2-5100",   false, false, false},
      {27, "K2-5150",   true,  true,  true},  {28, "K2-5200",   false, false, false},
      {29, "K2-5250",   true,  true,  false}, {30, "K2-5350",   true,  true,  false},
      {31, "K2-6100",   false, false, false}, {32, "K2-6150",   true,  true,  true},
      {33, "K2-6200",   false, false, false}, {34, "K2-6250",   true,  true,  false},
      {35, "K2-6350",   true,  true,  false}, {57, "K2-416",    true,  true,  true},
      {58, "K2-426",    true,  true,  false}, {59, "K2-6150",   true,  true,  true},
      {60, "K2-6155",   true,  true,  true},  {61, "K2-6205",   true,  true,  false},
      {63, "K2-6355",   true,  true,  false},
  };
  // clang-format on
  Start();
  // One after the other on one panel: nothing of a model stays with the next.
  for (const Model& model : models) {
    SCOPED_TRACE(model.type);
    ConnectUnit({.product_type = model.type});
    Press("Cmd_openclose");
    ExpectOpen(model.code);
    EXPECT_EQ(panel->Connection().ProductType(), model.type);
    EXPECT_EQ(Form().mnu_function_advanced->isEnabled(), model.features);
    for (const char* const name :
         {"lbl_keyerenable", "chk_keyenable", "cmd_black", "lbl_locksource", "cbo_lock",
          "lbl_lockmode", "opt_lockoff", "opt_lockgenlock", "opt_lockmix", "cmd_fade"}) {
      EXPECT_EQ(Find<QWidget>(name)->isEnabled(), model.features) << name;
    }
    EXPECT_EQ(Form().cmd_autoset->isEnabled(), model.autoset);
    EXPECT_EQ(Form().cmd_overscan->isEnabled(), model.overscan);
    EXPECT_EQ(Form().cmd_underscan->isEnabled(), model.overscan);
    for (const char* const name : {"cbo_program", "cbo_resolution", "chk_swapforback", "slide_zoom",
                                   "slide_ymin", "arr_zoompan", "lst_commands", "lbl_zoom",
                                   "txt_commandval", "chk_shrinkenable", "arr_shrinkposn"}) {
      EXPECT_TRUE(Find<QWidget>(name)->isEnabled()) << name;
    }
    EXPECT_FALSE(Form().Slider("slide_shrink")->isEnabled());
    Form().chk_shrinkenable->click();
    EXPECT_TRUE(Form().Slider("slide_shrink")->isEnabled());
    Press("Cmd_openclose");
    ExpectClosed();
  }
  // Shrink starts switched off after each connect, without a word to the unit.
  (void)Written();
  Press("Cmd_openclose");
  EXPECT_FALSE(Form().chk_shrinkenable->isChecked());
  for (const std::string& request : Sent()) EXPECT_NE(request.substr(0, 6), "10 18E");

  Form().SetFeatureControlsEnabled(true);
  Form().SetFeatureControlsEnabled(false);
  EXPECT_FALSE(Form().cmd_fade->isEnabled());
  EXPECT_TRUE(Form().cmd_autoset->isEnabled() && Form().cmd_overscan->isEnabled() &&
              Form().cmd_underscan->isEnabled());
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(Connection, FillsTheSourceListsAndSendsTheFirstOfEach) {
  struct Case {
    int type;
    std::vector<int> fitted;
    Texts lock, program, sent;
  };
  const Case cases[] = {
      {35,
       {17, 50, 80},
       {"RGB 2=17", "CV 3=50", "SDI 1=80"},
       {"RGB 2=17", "CV 3=50", "SDI 1=80"},
       {"10 149 000011", "10 082 000011", "10 116 000011"}},
      {23,
       {16},
       {"CV1=48", "YC1=64"},
       {"RGB1=16"},
       {"10 149 000030", "10 082 000010", "10 116 000010"}},
      {25,
       {16},
       {"RGB1=16"},
       {"RGB1=16", "CV1=48", "YC1=64"},
       {"10 149 000010", "10 082 000010", "10 116 000010"}},
      {22, {16}, {}, {"RGB1=16"}, {"10 082 000010", "10 116 000010"}},
      {35, {}, {}, {}, {}},
      // The sixteen items of a list cannot hold them all, so the input lists get none.
      {35, {16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 48}, {}, {}, {}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.type) + " " + std::to_string(row.fitted.size()));
    panel.reset();
    StartAndOpen(row.type, row.fitted);
    EXPECT_EQ(Items(*Form().cbo_lock), row.lock);
    EXPECT_EQ(Items(*Form().cbo_program), row.program);
    EXPECT_EQ(Form().cbo_lock->currentIndex(), row.lock.empty() ? -1 : 0);
    EXPECT_EQ(Form().cbo_program->currentIndex(), row.program.empty() ? -1 : 0);
    Texts sent = Sent();
    constexpr std::ptrdiff_t kReads = 1 + kConnectivityReads;
    ASSERT_GE(sent.size(), static_cast<std::size_t>(kReads));
    EXPECT_EQ(sent[1], "10 194");
    EXPECT_EQ(sent[kReads - 1], "5A 195");
    EXPECT_EQ(Texts(sent.begin() + kReads, sent.end()), row.sent);
    EXPECT_GT(Form().lst_commands->count(), 20);
    EXPECT_TRUE(Tick("tmr_updatelstCommands"));
    EXPECT_FALSE(panel->Progress().isVisible());
    EXPECT_TRUE(boxes.shown.empty());
  }
}

TEST_F(Connection, ConnectivityIsReadBehindTheProgressWindow) {
  ConnectSlowUnit();
  Start();
  Texts seen;
  const auto look = [&] {
    const auto* const bar = panel->Progress().findChild<QProgressBar*>("ProgressBar");
    const auto* const label = panel->Progress().findChild<QLabel*>("lbl_progress");
    seen.push_back(panel->Progress().isVisible()
                       ? label->text().toStdString() + " | " + std::to_string(bar->value()) +
                             " of " + std::to_string(bar->maximum())
                       : "hidden");
  };
  const Moment moments[] = {{1, milliseconds(5)},   {2, milliseconds(5)},
                            {34, milliseconds(5)},  {66, milliseconds(5)},
                            {119, milliseconds(5)}, {119, milliseconds(2000)},
                            {120, milliseconds(5)}};
  for (const Moment& moment : moments) At(moment, look);
  Press("Cmd_openclose");
  EXPECT_EQ(seen, (Texts{"hidden", "Reading Connectivity... RGB/DVI Sources 0 | 16 of 255",
                         "Reading Connectivity... Analog Sources 0 | 48 of 255",
                         "Reading Connectivity... Analog Sources 16 | 64 of 255",
                         "Reading Connectivity... SDI Sources 10 | 90 of 255",
                         "Reading Connectivity... SDI Sources 10 | 255 of 255", "hidden"}));
}

// ------------------------------------------------------------------------------ closing, ending

TEST_F(Connection, EscClosesOnlyWhileOpen) {
  Start();
  QTest::keyClick(Form().cbo_baud, Qt::Key_Escape);
  EXPECT_TRUE(port.setups.empty());
  ConnectUnit();
  for (const char* const focus : {"frm_vornik", "lst_commands", "cbo_program", "slide_zoom",
                                  "arr_zoompan", "chk_keyenable", "opt_lockoff", "cmd_fade"}) {
    Press("Cmd_openclose");
    ExpectOpen("K2-6350");
    QWidget* const target = *focus == 'f' ? static_cast<QWidget*>(&Window()) : Find<QWidget>(focus);
    QTest::keyClick(target, Qt::Key_Escape);
    EXPECT_FALSE(port.open) << focus;
    ExpectClosed();
    QTest::keyClick(target, Qt::Key_Escape);
    ExpectClosed();
  }
  EXPECT_EQ(port.setups.size(), 8U);
}

TEST_F(Connection, ClosedAtAnyMomentItStaysSilentAndOpensAgain) {
  for (const Moment& moment : kMoments) {
    SCOPED_TRACE(testing::PrintToString(moment));
    panel.reset();
    ConnectSlowUnit();
    Start();
    std::size_t requests = 0;
    At(moment, [&] {
      Press("Cmd_openclose");
      ExpectClosed();
      requests = port.written.size();
    });
    Press("Cmd_openclose");
    ExpectClosed();
    EXPECT_EQ(port.written.size(), requests);
    Tick("tmr_updatelstCommands");
    ExpectClosed();
    Press("Cmd_openclose");
    ExpectOpen("K2-6350");
    EXPECT_TRUE(Form().cbo_lock->count() == 2 && Form().cbo_program->count() == 2);
  }
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(Connection, OpenedAgainWhileTheClosedOpeningUnwinds) {
  for (const Moment& moment : kMoments) {
    SCOPED_TRACE(testing::PrintToString(moment));
    panel.reset();
    ConnectSlowUnit();
    Start();
    At(moment, [&] {
      Press("Cmd_openclose");
      Press("Cmd_openclose");
    });
    Press("Cmd_openclose");
    ExpectOpen("K2-6350");
    EXPECT_EQ(Form().cbo_program->count(), 2);
    EXPECT_GT(Form().lst_commands->count(), 40);
  }
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(Connection, LostAtAnyMomentItSaysSoOnce) {
  const auto lose = [this] {
    port.Close();
    Window().PortLost("gone");
  };
  for (const Moment& moment : kMoments) {
    SCOPED_TRACE(testing::PrintToString(moment));
    panel.reset();
    ConnectSlowUnit();
    Start();
    At(moment, lose);
    Press("Cmd_openclose");
    ExpectClosed();
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].title, "Connect");
    EXPECT_EQ(boxes.shown[0].icon, BoxIcon::kCritical);
    boxes.shown.clear();
    Press("Cmd_openclose");
    ExpectOpen("K2-6350");
  }
  lose();
  ExpectClosed();
  EXPECT_EQ(boxes.shown.size(), 1U);
}

TEST_F(Connection, EndsOnceFromEveryStateAndKeepsTheSettings) {
  const auto end_at = [this](std::optional<Moment> moment, bool opened, bool by_menu) {
    panel.reset();
    settings.values.clear();
    ConnectSlowUnit();
    Start();
    Form().cbo_baud->setCurrentIndex(1);
    QTest::keyClick(Form().txt_port, Qt::Key_2);
    ends = 0;
    std::size_t requests = 0;
    const auto end = [&] {
      if (by_menu) {
        Choose("mnu_file_exit");
      } else {
        Window().close();
      }
      requests = port.written.size();
    };
    if (moment) At(*moment, end);
    if (opened) Press("Cmd_openclose");
    if (!moment) end();
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(port.open);
    EXPECT_EQ(port.written.size(), requests);
    EXPECT_EQ((settings.values[{kSection, kBaud}]), "38400");
    EXPECT_EQ((settings.values[{kSection, kPort}]), "12");
    EXPECT_EQ(Form().Cmd_openclose->text(), "Open &Port");
    EXPECT_EQ(Form().lbl_comstate->text(), "CLOSED");
    EXPECT_TRUE(Form().cbo_baud->isEnabled());
  };
  for (const bool by_menu : {false, true}) {
    SCOPED_TRACE(by_menu ? "menu" : "window");
    end_at({}, false, by_menu);
    end_at({}, true, by_menu);
    for (const Moment& moment : kMoments) {
      SCOPED_TRACE(testing::PrintToString(moment));
      end_at(moment, true, by_menu);
    }
  }
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(Connection, NoBaudIsStoredAsEmptyAndTheWindowGoingStoresNothing) {
  settings.values[{kSection, kBaud}] = "1200";
  Start();
  Window().close();
  ASSERT_EQ(settings.values.count({kSection, kBaud}), 1U);
  EXPECT_EQ((settings.values[{kSection, kBaud}]), "");
  EXPECT_EQ((settings.values[{kSection, kPort}]), "1");

  panel.reset();
  settings.values.clear();
  StartAndOpen();
  ends = 0;
  panel.reset();
  EXPECT_EQ(ends, 1);
  EXPECT_FALSE(port.open);
  EXPECT_TRUE(settings.values.empty());
}

}  // namespace
}  // namespace kalde2
