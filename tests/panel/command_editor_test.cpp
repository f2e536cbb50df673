#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Frames = std::vector<std::string>;

class Editor : public PanelFixture {
 protected:
  QListWidget& List() { return *Form().lst_commands; }
  QComboBox& Choices() { return *Form().cbo_command; }
  QLineEdit& Value() { return *Form().txt_commandval; }

  /// The line of a parameter, -1 where it is not listed.
  [[nodiscard]] int LineOf(int address) {
    for (int line = 0; line < List().count(); ++line) {
      if (List().item(line)->data(Qt::UserRole).toInt() == IndexOf(address).number) return line;
    }
    return -1;
  }

  [[nodiscard]] std::string Line(int address) {
    return List().item(LineOf(address))->text().toStdString();
  }

  void Select(int address) { SelectLine(Line(address).c_str()); }

  void Type(const char* text) {
    Value().selectAll();
    QTest::keyClicks(&Value(), QLatin1String(text));
  }

  [[nodiscard]] bool IsTinted() {
    const QPalette& around = Value().parentWidget()->palette();
    return Value().palette().color(QPalette::Active, QPalette::Base) !=
           around.color(QPalette::Active, QPalette::Base);
  }

  /// Lets the unit change a value, and the list follow.
  void ChangeAtUnit(int address, std::int32_t value) {
    Unasked(unit->ChangeAtFrontPanel(address, 16, value));
    Tick("tmr_updatelstCommands");
  }
};

TEST_F(Editor, ListsTheParametersOfTheUnit) {
  StartAndOpen(35);
  EXPECT_EQ(List().currentRow(), -1);
  EXPECT_EQ(Line(131), "Resolution[1,1024] : NTSC / 60Hz");
  EXPECT_EQ(LineOf(259), -1);
  Unasked(unit->ChangeAtFrontPanel(159, 16, 50));
  Unasked(unit->ChangeAtFrontPanel(258, 16, 1));
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 0");
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 50");
  EXPECT_EQ(Line(259).substr(0, 18), "H Zoom[100,1000] :");

  Press("Cmd_openclose");
  ConnectUnit({.product_type = 60});
  Press("Cmd_openclose");
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_EQ(List().count(), 0) << "a product without parameters";
}

TEST_F(Editor, SelectionPreparesTheEditor) {
  OpenSettled();
  for (const auto& [address, value] : {std::pair{222, -7}, {266, 2}, {130, 48}, {131, 4}}) {
    ChangeAtUnit(address, value);
  }
  const std::tuple<int, const char*, int> cases[] = {
      // no entries: a number
      {222, "-7", 0},   {266, "Lock+Mix", 3}, {131, "640 x 400 85Hz", 106},
      {130, "CV 1", 5}, {384, "None", 16},    {159, "0", 0}};
  for (const auto& [address, value, entries] : cases) {
    SCOPED_TRACE(address);
    Select(address);
    EXPECT_EQ(Choices().isVisible(), entries > 0);
    EXPECT_EQ(Form().cmd_commandplus->isVisible(), entries == 0);
    EXPECT_EQ(entries > 0 ? Choices().currentText() : Value().text(), value);
    EXPECT_EQ(entries > 0 ? Choices().count() : 0, entries);
    EXPECT_EQ(panel->Editor().CurrentCommand(), IndexOf(address));
  }
  QTest::keyClick(&List(), Qt::Key_Up);  // the keyboard selects as the mouse does
  EXPECT_NE(panel->Editor().CurrentCommand(), IndexOf(159));
  EXPECT_TRUE(Written().empty());
}

TEST_F(Editor, PerSourceParametersNameTheSetupSource) {
  OpenSettled();
  for (const auto& [source, address, sent] :
       {std::tuple{16, 182, "F04104100B6"}, {48, 185, "F04304100B9"}, {80, 159, "F041041009F"}}) {
    ChangeAtUnit(278, source);
    Select(address);
    Choices().isVisible() ? QTest::keyClick(&Choices(), Qt::Key_Down) : Press("cmd_commandplus");
    EXPECT_EQ(Written().at(0).substr(0, 11), sent);
  }
}

TEST_F(Editor, EachWayOfChangingSendsAndStores) {
  OpenSettled();
  struct Case {
    int address;
    std::int32_t before;
    std::string act;  ///< a button, keys for a list, else what is typed
    Frames sent;
    std::int32_t stored;
  };
  const Case cases[] = {
      {159, 50, "cmd_commandplus", {WriteOf(159, 51)}, 51},
      {222, -120, "cmd_commandMinus", {WriteOf(222, -120)}, -120},  // the limit is sent again
      {315, 300, "cmd_commandplus", {WriteOf(315, 235)}, 235},
      {159, 50, "48.5\r", {WriteOf(159, 48)}, 48},
      {159, 50, "1001\r", {}, 50},
      {222, 0, "-120\r", {WriteOf(222, -120)}, -120},
      {266, 0, "down", {WriteOf(266, 1)}, 1},
      {130, 80, "up", {WriteOf(130, 64)}, 64},
      {131, 4, "down", {WriteOf(131, 6)}, 5},  // counted from 1 on the line
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.address) + " " + row.act);
    ChangeAtUnit(row.address, row.before);
    Select(row.address);
    if (row.act.starts_with("cmd")) {
      Press(row.act.c_str());
    } else if (Choices().isVisible()) {
      QTest::keyClick(&Choices(), row.act == "up" ? Qt::Key_Up : Qt::Key_Down);
    } else {
      Type(row.act.c_str());
    }
    EXPECT_EQ(Written(), row.sent);
    EXPECT_EQ(Recorded(row.address), row.stored);
    EXPECT_EQ(unit->Value(row.address, 16), row.stored);
    EXPECT_EQ(Tick("tmr_updatelstCommands"), !row.sent.empty());
  }
}

TEST_F(Editor, LineIsSelectedAgainByItsPlace) {
  OpenSettled();
  Select(184);
  const int line = LineOf(184);
  ChangeAtUnit(278, 91);  // not fitted: the parameters of the sources are gone
  ASSERT_LT(List().count(), line);
  EXPECT_EQ(List().currentRow(), -1);
  ChangeAtUnit(278, 16);
  EXPECT_EQ(List().currentRow(), line);

  Select(159);  // one line up when "H Zoom" and the like come in above it
  const int pan = LineOf(159);
  ChangeAtUnit(258, 1);
  EXPECT_EQ(List().currentRow(), pan);
  EXPECT_NE(panel->Editor().CurrentCommand(), IndexOf(159));
}

TEST_F(Editor, TintsANumberThatIsNotSentAndForgetsItWhenTheFieldIsLeft) {
  OpenSettled();
  ChangeAtUnit(222, 5);
  Select(222);
  EXPECT_EQ(Value().toolTip(), "-120 to 100. Enter sends");
  const auto leave = [this] { QTest::keyClick(&Value(), Qt::Key_Tab); };
  const std::tuple<const char*, bool, const char*> cases[] = {
      {"6", true, "5"},    {"5", false, "5"}, {"121", true, "5"},   {"121\r", true, "5"},
      {"7\r", false, "7"}, {"", true, "7"},   {"7.2\r", false, "7"}};
  for (const auto& [typed, tinted, left] : cases) {
    SCOPED_TRACE(typed);
    Focus(Value());
    Value().clear();
    Type("0");
    QTest::keyClick(&Value(), Qt::Key_Backspace);
    QTest::keyClicks(&Value(), QLatin1String(typed));
    EXPECT_EQ(IsTinted(), tinted);
    leave();
    EXPECT_EQ(Value().text(), left);
    EXPECT_FALSE(IsTinted() || Value().hasFocus());
  }
  EXPECT_EQ(Written(), (Frames{WriteOf(222, 7), WriteOf(222, 7)}));

  // What the unit says while something is typed counts, too; a menu is no leaving.
  Focus(Value());
  Type("8");
  QFocusEvent menu(QEvent::FocusOut, Qt::MenuBarFocusReason);
  QCoreApplication::sendEvent(&Value(), &menu);
  EXPECT_TRUE(Value().text() == "8" && IsTinted());
  ChangeAtUnit(222, 8);
  EXPECT_FALSE(IsTinted());

  // What has to wait for its turn is not sent yet.
  ASSERT_FALSE(unit->Faults().Add("late=5"));
  clock.After(std::chrono::milliseconds(2), [this] {
    Type("9\r");
    EXPECT_TRUE(IsTinted());
  });
  clock.After(std::chrono::milliseconds(7), [this] { EXPECT_FALSE(IsTinted()) << "on its way"; });
  Type("10\r");
  EXPECT_FALSE(IsTinted());
  EXPECT_EQ(Written(), (Frames{WriteOf(222, 10), WriteOf(222, 9)}));
}

TEST_F(Editor, RebuildLeavesAHalfTypedNumber) {
  OpenSettled();
  Select(159);
  Focus(Value());
  ASSERT_TRUE(Value().hasFocus());
  Type("7");
  ChangeAtUnit(159, 20);
  EXPECT_EQ(Value().text(), "7");
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 20");
  QTest::keyClicks(&Value(), "5\r");
  EXPECT_EQ(Written(), Frames{WriteOf(159, 75)});
  ChangeAtUnit(159, 30);
  EXPECT_EQ(Value().text(), "30");
  // What was refused is no longer being typed.
  Type("1001\r");
  EXPECT_EQ(Value().text(), "1001");
  ChangeAtUnit(160, 1);
  EXPECT_EQ(Value().text(), "30");
  EXPECT_TRUE(Written().empty());
}

}  // namespace
}  // namespace kalde2
