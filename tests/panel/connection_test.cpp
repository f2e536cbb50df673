#include <tuple>
#include <vector>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Box = FakeBoxes::Box;
using Texts = std::vector<std::string>;

constexpr const char* kSection = "Tessaly";
constexpr const char* kBaud = "Serial Parameters";
constexpr const char* kPort = "Serial Port";

class Connection : public PanelFixture {
 protected:
  void ExpectClosed() {
    EXPECT_FALSE(port.open || panel->UnitSession().UnitConnected());
    EXPECT_FALSE(panel->Progress().isVisible());
    ExpectShowsClosed();
  }

  [[nodiscard]] static Texts Items(const QComboBox& combo) {
    Texts items;
    for (int i = 0; i < combo.count(); ++i) {
      items.push_back(combo.itemText(i).toStdString() + "=" +
                      std::to_string(combo.itemData(i).toInt()));
    }
    return items;
  }

  static constexpr int kConnectivityReads = 2 * (16 + 16 + 16 + 11);
};

TEST_F(Connection, TakesTheSettingsAsTheyAreStoredAndStoresWhatIsShown) {
  using Values = decltype(settings.values);
  const std::tuple<Values, const char*, const char*> cases[] = {
      {{}, "57600", "1"},
      {{{{kSection, kBaud}, "115200"}, {{kSection, kPort}, ""}}, "115200", ""},
      {{{{kSection, kBaud}, "57600 "}, {{kSection, kPort}, "COM3"}}, "", "COM3"},
  };
  for (const auto& [stored, baud, number] : cases) {
    panel.reset();
    settings.values = stored;
    Start();
    EXPECT_EQ(Form().cbo_baud->currentText(), baud);
    EXPECT_EQ(Form().txt_port->text(), number);
    Window().close();
    EXPECT_EQ(settings.values, (Values{{{kSection, kBaud}, baud}, {{kSection, kPort}, number}}));
  }
}

TEST_F(Connection, StartsClosedInSilenceAtTheBlackPreset) {
  Start();
  ExpectClosed();
  EXPECT_EQ(Form().Slider("slide_ymax")->Value(), 32);
  EXPECT_EQ(Recorded(178), 32);
  EXPECT_EQ(Form().cbo_resolution->count(), 106);
  // The refresh that the preset asks for finds no unit.
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_TRUE(Written().empty() && boxes.shown.empty());
}

TEST_F(Connection, PortNumberTakesDigitsAndColonOnly) {
  Start();
  Form().txt_port->clear();
  QTest::keyClicks(Form().txt_port, "0a5 -.9:;/+");
  QTest::keyClick(Form().txt_port, Qt::Key_Backspace);
  QTest::keyClick(Form().txt_port, 'x', Qt::AltModifier);
  EXPECT_EQ(Form().txt_port->text(), "059:");
  // Text of an input method and of a key that brings several characters.
  QInputMethodEvent commit;
  commit.setCommitString("a1\u0663b2");
  QCoreApplication::sendEvent(Form().txt_port, &commit);
  QKeyEvent several(QEvent::KeyPress, 0, {}, "3x4");
  QCoreApplication::sendEvent(Form().txt_port, &several);
  EXPECT_EQ(Form().txt_port->text(), "059:1234");
}

TEST_F(Connection, RefusesToOpenAndSaysWhy) {
  const Box no_answer = {"Could not read the product type.\r\n Please ensure the unit is connected",
                         BoxIcon::kCritical, "Connect"};
  const Box not_supported = {"Product not supported", BoxIcon::kExclamation, "Connect"};
  const Box no_such_port = {"There is no serial port 99999 on this computer", BoxIcon::kCritical,
                            "Error opening port - choose another port"};
  const std::tuple<const char*, const char*, int, Box, std::size_t> cases[] = {
      {"99999", "none", 35, no_such_port, 0}, {"1", "silent", 35, no_answer, 3},
      {"1", "error-reply", 35, no_answer, 1}, {"1", "none", 62, not_supported, 1},
      {"1", "none", -1, not_supported, 1},
  };
  for (const auto& [number, fault, type, box, requests] : cases) {
    SCOPED_TRACE(box.prompt + " " + fault + " " + std::to_string(type));
    panel.reset();
    settings.values[{kSection, kPort}] = number;
    ConnectUnit({.product_type = type});
    ASSERT_EQ(unit->Faults().Add(fault), std::nullopt);
    Start();
    boxes.shown.clear();
    Press("Cmd_openclose");
    EXPECT_EQ(boxes.shown, std::vector<Box>{box});
    ExpectClosed();
    EXPECT_EQ(Written().size(), requests);
  }
  // What no port has reaches the port as it was asked for.
  panel.reset();
  settings.values = {{{kSection, kBaud}, ""}, {{kSection, kPort}, "x"}};
  Start();
  Press("Cmd_openclose");
  EXPECT_EQ(port.setups.back().settings, "0,N,8,1");
  EXPECT_EQ(port.setups.back().comm_port, 0);
}

TEST_F(Connection, OffersWhatEachModelHas) {
  const std::tuple<int, const char*, bool, bool, bool> models[] = {
      {23, "9R-K2-315", true, true, true},
      {24, "9R-K2-320", false, false, false},
      {71, "9R-K2-340", false, true, false},
      {25, "9R-K2-325", true, true, false},
  };
  Start();
  // One after the other on one panel: nothing of a model stays with the next.
  for (const auto& [type, code, features, autoset, overscan] : models) {
    SCOPED_TRACE(type);
    ConnectUnit({.product_type = type});
    Press("Cmd_openclose");
    EXPECT_EQ(Form().lbl_comstate->text(), QStringLiteral("OPEN : ") + code);
    EXPECT_EQ(Form().mnu_function_advanced->isEnabled(), features);
    EXPECT_EQ(Form().cmd_fade->isEnabled(), features);
    EXPECT_EQ(Form().opt_lock[2]->isEnabled(), features);
    EXPECT_EQ(Form().cmd_autoset->isEnabled(), autoset);
    EXPECT_EQ(Form().cmd_overscan->isEnabled(), overscan);
    // Shrink starts switched off after each connect, without a word to the unit.
    EXPECT_FALSE(Form().Check("chk_shrinkenable")->isChecked());
    EXPECT_FALSE(Form().Slider("slide_shrink")->isEnabled());
    EXPECT_TRUE(Form().Slider("slide_shrinkv")->isEnabled());
    for (const std::string& frame : Written()) EXPECT_NE(frame.substr(0, 11), "F041041018E");
    Form().Check("chk_shrinkenable")->click();
    Press("Cmd_openclose");
    (void)Written();
  }
}

TEST_F(Connection, AsksForTheTypeAndTheSourcesAndSendsTheFirstOfEachList) {
  struct Case {
    int type;
    std::vector<int> fitted;
    Texts lock, program, sent;
  };
  const Texts all = {"RGB 2=17", "CV 3=50", "SDI 1=80"};
  const Case cases[] = {
      {35, {17, 50, 80}, all, all, {WriteOf(329, 17), WriteOf(130, 17), WriteOf(278, 17)}},
      {22, {16}, {}, {"RGB1=16"}, {WriteOf(130, 16), WriteOf(278, 16)}},
      // The sixteen items of a list cannot hold them all, so the input lists get none.
      {35, {16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 48}, {}, {}, {}},
  };
  settings.values[{kSection, kPort}] = "12";
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.type) + " " + std::to_string(row.fitted.size()));
    panel.reset();
    StartAndOpen(row.type, row.fitted);
    EXPECT_EQ(Items(*Form().cbo_lock), row.lock);
    EXPECT_EQ(Items(*Form().cbo_program), row.program);
    EXPECT_EQ(Form().cbo_program->currentIndex(), row.program.empty() ? -1 : 0);
    const Texts sent = Written();
    ASSERT_EQ(sent.size(), 1 + kConnectivityReads + row.sent.size());
    EXPECT_EQ(sent[0], "F84104100C499\r");
    EXPECT_EQ(sent[1], ReadOf(404));
    EXPECT_EQ(sent[kConnectivityReads], "F845A410195B5\r");
    EXPECT_EQ(Texts(sent.begin() + 1 + kConnectivityReads, sent.end()), row.sent);
    EXPECT_TRUE(Tick("tmr_updatelstCommands"));
    EXPECT_TRUE(boxes.shown.empty());
  }
  EXPECT_EQ(port.setups[0].settings, "57600,N,8,1");
  EXPECT_EQ(port.setups[0].handshaking, Handshaking::kRtsXonXoff);
  EXPECT_TRUE(port.setups[0].dtr_enable);
  EXPECT_EQ(port.setups[0].comm_port, 12);
}

TEST_F(Connection, ViewsMayBeChangedWhileTheSourcesAreReadAndTheListComesAfter) {
  ConnectUnit();
  Start();
  (void)unit->Faults().Add("late=5");
  Tick("tmr_updatelstCommands");
  clock.After(std::chrono::milliseconds(500), [this] {
    for (const char* view : {"mnu_function_aspect", "mnu_function_advanced"}) {
      Choose(view);
      EXPECT_FALSE(Tick("tmr_updatelstCommands")) << view;
    }
    EXPECT_TRUE(Form().Slider("slide_zoomv")->isVisible());
  });
  Press("Cmd_openclose");
  EXPECT_GT(Form().lst_commands->count(), 0);
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
}

TEST_F(Connection, EndOfTheProgramFreesTheBaudRateAlone) {
  StartAndOpen();
  Window().close();
  EXPECT_TRUE(Form().cbo_baud->isEnabled());
  EXPECT_FALSE(Form().txt_port->isEnabled());
  EXPECT_EQ(Form().lbl_comstate->text(), "CLOSED");
}

}  // namespace
}  // namespace kalde2
