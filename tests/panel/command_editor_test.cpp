#include <QAbstractItemView>
#include <QSignalSpy>
#include <tuple>
#include <vector>

#include "link/value_store.h"
#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Texts = std::vector<std::string>;

class Editor : public PanelFixture {
 protected:
  QListWidget& List() { return *Form().lst_commands; }
  QComboBox& Choices() { return *Form().cbo_command; }
  QLineEdit& Value() { return *Form().txt_commandval; }

  /// The line of a parameter, -1 where it is not listed.
  [[nodiscard]] int LineOf(int address) {
    for (int line = 0; line < List().count(); ++line) {
      if (List().item(line)->data(Qt::UserRole).toInt() == address - kFirstAddress) return line;
    }
    return -1;
  }

  [[nodiscard]] std::string Line(int address) {
    const int line = LineOf(address);
    return line < 0 ? "-" : List().item(line)->text().toStdString();
  }

  /// Clicks on the line of a parameter.
  void Select(int address) {
    ASSERT_GE(LineOf(address), 0) << address;
    QListWidgetItem* const item = List().item(LineOf(address));
    List().scrollToItem(item);
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualItemRect(item).center());
  }

  /// Chooses from the value's list with the keyboard, as it is done without opening it.
  void ChooseValue(int steps) {
    for (int i = 0; i < std::abs(steps); ++i) {
      QTest::keyClick(&Choices(), steps < 0 ? Qt::Key_Up : Qt::Key_Down);
    }
  }

  void Type(const char* text) {
    Value().selectAll();
    QTest::keyClicks(&Value(), QLatin1String(text));
  }

  void Enter(const char* text) {
    Type(text);
    QTest::keyClick(&Value(), Qt::Key_Return);
  }

  void ChangeAtUnit(int address, std::int32_t value) {
    Unasked(unit->ChangeAtFrontPanel(address, 16, value));
  }

  /// Opens and lets the first rebuild pass.
  void OpenSettled(int type = 35) {
    StartAndOpen(type);
    Tick("tmr_updatelstCommands");
    (void)Written();
  }

  /// "list", "number" or what else the editor shows.
  [[nodiscard]] std::string EditorShown() {
    const bool list = Choices().isVisible();
    const bool number = Value().isVisible();
    const bool steps = Form().cmd_commandMinus->isVisible();
    if (steps != number || steps != Form().cmd_commandplus->isVisible()) return "mixed";
    return list == number ? "mixed" : list ? "list" : "number";
  }
};

TEST_F(Editor, ListsTheParametersOfTheUnit) {
  StartAndOpen(35);
  EXPECT_EQ(List().currentRow(), -1);
  EXPECT_EQ(panel->Editor().CurrentCommand(), 0);
  EXPECT_EQ(Line(130), "Main input : RGB 1");
  EXPECT_EQ(Line(131), "Resolution[1,1024] : NTSC / 60Hz");
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 0");
  EXPECT_EQ(Line(135), "-");
  EXPECT_EQ(Line(259), "-");
  ChangeAtUnit(159, 50);
  ChangeAtUnit(258, 1);
  ChangeAtUnit(131, 3);
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 0");
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 50");
  EXPECT_EQ(Line(131), "Resolution[1,1024] : 640 x 350 85Hz");
  EXPECT_EQ(Line(259).substr(0, 18), "H Zoom[100,1000] :");
}

TEST_F(Editor, ProductWithoutParametersHasAnEmptyList) {
  StartAndOpen(60);
  EXPECT_EQ(List().count(), 0);
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_EQ(List().count(), 0);
  EXPECT_FALSE(Choices().isVisible() || Value().isVisible());
  EXPECT_EQ(Form().lbl_comstate->text(), "OPEN : K2-6155");
}

TEST_F(Editor, SelectionPreparesTheEditor) {
  OpenSettled();
  ChangeAtUnit(222, -7);
  ChangeAtUnit(266, 2);
  ChangeAtUnit(130, 48);
  ChangeAtUnit(131, 4);
  struct Case {
    int address;
    const char* editor;
    const char* value;
    int entries;
  };
  const Case cases[] = {{222, "number", "-7", 0},  {266, "list", "Lock+Mix", 3},
                        {130, "list", "CV 1", 5},  {131, "list", "640 x 400 85Hz", 106},
                        {384, "list", "None", 16}, {159, "number", "0", 0}};
  for (const Case& row : cases) {
    Select(row.address);
    EXPECT_EQ(EditorShown(), row.editor) << row.address;
    const bool list = EditorShown() == "list";
    EXPECT_EQ(list ? Choices().currentText() : Value().text(), row.value) << row.address;
    EXPECT_EQ(list ? Choices().count() : 0, row.entries) << row.address;
    EXPECT_EQ(panel->Editor().CurrentCommand(), row.address - kFirstAddress);
    EXPECT_EQ(panel->Editor().SavedCommandLine(), LineOf(row.address));
  }
  QTest::keyClick(&List(), Qt::Key_Up);  // the keyboard selects as the mouse does
  EXPECT_NE(panel->Editor().CurrentCommand(), 159 - kFirstAddress);
  EXPECT_TRUE(Written().empty());
}

TEST_F(Editor, EachWayOfChangingSendsAndStores) {
  OpenSettled();
  const auto plus = [this] { Press("cmd_commandplus"); };
  const auto minus = [this] { Press("cmd_commandMinus"); };
  struct Case {
    int address;
    std::int32_t before;
    std::function<void()> act;
    Texts sent;
    std::int32_t stored;
  };
  const Case cases[] = {
      {159, 50, plus, {"10 09F 000033"}, 51},
      {159, 50, minus, {"10 09F 000031"}, 49},
      {222, 100, plus, {"10 0DE 000064"}, 100},  // the limit is sent again
      {222, -120, minus, {"10 0DE FFFF88"}, -120},
      {222, 119, minus, {"10 0DE 000064"}, 100},
      {315, 300, plus, {"10 13B 0000EB"}, 235},
      {315, 0, minus, {"10 13B 000010"}, 16},
      {159, 50, [this] { Enter("100"); }, {"10 09F 000064"}, 100},
      {159, 50, [this] { Enter("48.5"); }, {"10 09F 000030"}, 48},
      {159, 50, [this] { Enter("1001"); }, {}, 50},
      {159, 50, [this] { Enter("-1"); }, {}, 50},
      {222, 0, [this] { Enter("-120"); }, {"10 0DE FFFF88"}, -120},
      {159, 50, [this] { Type("77"); }, {}, 50},
      {266, 0, [this] { ChooseValue(2); }, {"10 10A 000001", "10 10A 000002"}, 2},
      {130, 16, [this] { ChooseValue(1); }, {"10 082 000011"}, 17},
      {130, 80, [this] { ChooseValue(-1); }, {"10 082 000040"}, 64},
      {131, 4, [this] { ChooseValue(1); }, {"10 083 000006"}, 5},  // counted from 1 on the line
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.address) + " from " + std::to_string(row.before));
    ChangeAtUnit(row.address, row.before);
    Tick("tmr_updatelstCommands");
    Select(row.address);
    row.act();
    EXPECT_EQ(Sent(), row.sent);
    EXPECT_EQ(Find<QTimer>("tmr_updatelstCommands")->isActive(), !row.sent.empty());
    EXPECT_EQ(panel->Unit().values.GetParamValue(row.address - kFirstAddress), row.stored);
    EXPECT_EQ(unit->Value(row.address, 16), row.stored);
    if (EditorShown() == "number" && !row.sent.empty()) {
      Tick("tmr_updatelstCommands");
      EXPECT_EQ(Value().text(), QString::number(row.stored));
    }
  }
}

TEST_F(Editor, PerSourceParametersNameTheSetupSource) {
  OpenSettled();
  const std::tuple<std::int32_t, int, const char*> cases[] = {
      {16, 193, "10"}, {48, 185, "30"}, {64, 185, "40"}, {80, 138, "50"}};
  for (const auto& [source, address, field] : cases) {
    ChangeAtUnit(278, source);
    Tick("tmr_updatelstCommands");
    EXPECT_EQ(LineOf(193) >= 0, source < 32);
    EXPECT_EQ(LineOf(185) >= 0, source >= 32);
    Select(address);
    if (EditorShown() == "list") {
      ChooseValue(1);
    } else {
      Press("cmd_commandplus");
    }
    const Texts sent = Sent();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].substr(0, 2), field);
    Select(159);
    Press("cmd_commandplus");
    EXPECT_EQ(Sent().at(0).substr(0, 6), "10 09F");
  }
}

TEST_F(Editor, BurstOfChangesLeadsToOneRebuild) {
  OpenSettled();
  Select(159);
  QTimer& timer = *Find<QTimer>("tmr_updatelstCommands");
  EXPECT_EQ(timer.interval(), 1000);
  EXPECT_FALSE(timer.isActive());
  const QSignalSpy rebuilt(List().model(), &QAbstractItemModel::modelReset);
  Press("cmd_commandplus");
  constexpr int kPause = 150;
  constexpr int kInaccuracy = 50;  // of such a timer
  QTest::qWait(kPause);
  Press("cmd_commandplus");
  Press("cmd_commandMinus");
  EXPECT_LT(timer.remainingTime(), timer.interval() - kPause + kInaccuracy);  // is not restarted
  EXPECT_EQ(rebuilt.count(), 0);
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_EQ(rebuilt.count(), 1);
  EXPECT_FALSE(timer.isActive());
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 1");
  EXPECT_EQ(List().currentRow(), LineOf(159));
  (void)Written();
}

TEST_F(Editor, LineIsSelectedAgainByItsPlace) {
  OpenSettled();
  Select(184);
  const int line = LineOf(184);
  ChangeAtUnit(278, 91);  // not fitted: the parameters of the sources are gone
  Tick("tmr_updatelstCommands");
  ASSERT_LT(List().count(), line);
  EXPECT_EQ(List().currentRow(), -1);
  EXPECT_EQ(panel->Editor().SavedCommandLine(), line);
  EXPECT_EQ(panel->Editor().CurrentCommand(), 184 - kFirstAddress);
  ChangeAtUnit(278, 16);
  Tick("tmr_updatelstCommands");
  EXPECT_EQ(List().currentRow(), line);

  Select(259 - 100);  // one line up when "H Zoom" and the like come in above it
  const int pan = LineOf(159);
  ChangeAtUnit(258, 1);
  Tick("tmr_updatelstCommands");
  EXPECT_EQ(List().currentRow(), pan);
  EXPECT_NE(panel->Editor().CurrentCommand(), 159 - kFirstAddress);

  Press("Cmd_openclose");
  Press("Cmd_openclose");
  EXPECT_EQ(List().currentRow(), -1);
  Tick("tmr_updatelstCommands");
  EXPECT_EQ(List().currentRow(), pan);
}

TEST_F(Editor, RebuildLeavesAHalfTypedNumber) {
  OpenSettled();
  Select(159);
  Focus(Value());
  ASSERT_TRUE(Value().hasFocus());
  Type("7");
  ChangeAtUnit(159, 20);
  Tick("tmr_updatelstCommands");
  EXPECT_EQ(Value().text(), "7");
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 20");
  EXPECT_EQ(List().currentRow(), LineOf(159));
  QTest::keyClicks(&Value(), "5");
  QTest::keyClick(&Value(), Qt::Key_Return);
  EXPECT_EQ(Sent(), Texts{"10 09F 00004B"});
  ChangeAtUnit(159, 30);
  Tick("tmr_updatelstCommands");
  EXPECT_EQ(Value().text(), "30");

  Select(266);
  Choices().showPopup();
  ChangeAtUnit(266, 2);
  Tick("tmr_updatelstCommands");
  EXPECT_TRUE(Choices().view()->isVisible());
  EXPECT_EQ(Choices().currentIndex(), 0);
  Choices().hidePopup();
}

TEST_F(Editor, ValueStaysWhenTheUnitDoesNotAnswer) {
  OpenSettled();
  for (const char* const fault : {"silent", "error-reply"}) {
    ASSERT_EQ(unit->Faults().Add(fault), std::nullopt);
    Select(159);
    Enter(fault[0] == 's' ? "41" : "42");
    EXPECT_EQ(Sent().size(), fault[0] == 's' ? 3U : 1U);
    EXPECT_TRUE(Tick("tmr_updatelstCommands"));
    EXPECT_EQ(Line(159), std::string("Zoom Pan H[0,100] : ") + (fault[0] == 's' ? "41" : "42"));
    unit->Faults().Clear();
  }
  EXPECT_TRUE(boxes.shown.empty());
}

}  // namespace
}  // namespace kalde2
