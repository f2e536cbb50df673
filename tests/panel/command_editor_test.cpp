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

  void Select(int address) { SelectLine(Line(address).c_str()); }

  void Type(const char* text) {
    Value().selectAll();
    QTest::keyClicks(&Value(), QLatin1String(text));
  }

  /// Lets the unit change a value, and the list follow.
  void ChangeAtUnit(int address, std::int32_t value) {
    Unasked(unit->ChangeAtFrontPanel(address, 16, value));
    Tick("tmr_updatelstCommands");
  }

  /// Whether a value is chosen from a list, else it is a number with its two buttons.
  [[nodiscard]] bool ShowsList() {
    const bool list = Choices().isVisible();
    for (const char* name : {"txt_commandval", "cmd_commandMinus", "cmd_commandplus"}) {
      EXPECT_NE(Find<QWidget>(name)->isVisible(), list) << name;
    }
    return list;
  }
};

TEST_F(Editor, ListsTheParametersOfTheUnit) {
  StartAndOpen(35);
  EXPECT_EQ(List().currentRow(), -1);
  EXPECT_EQ(Line(131), "Resolution[1,1024] : NTSC / 60Hz");
  EXPECT_EQ(Line(259), "-");
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
    EXPECT_EQ(ShowsList(), entries > 0);
    EXPECT_EQ(entries > 0 ? Choices().currentText() : Value().text(), value);
    EXPECT_EQ(entries > 0 ? Choices().count() : 0, entries);
    EXPECT_EQ(panel->Editor().CurrentCommand(), address - kFirstAddress);
  }
  QTest::keyClick(&List(), Qt::Key_Up);  // the keyboard selects as the mouse does
  EXPECT_NE(panel->Editor().CurrentCommand(), 159 - kFirstAddress);
  EXPECT_TRUE(Written().empty());
}

TEST_F(Editor, EachWayOfChangingSendsAndStores) {
  OpenSettled();
  struct Case {
    int address;
    std::int32_t before;
    std::string act;  ///< a button, keys for a list, else what is typed
    Texts sent;
    std::int32_t stored;
  };
  const Case cases[] = {
      {159, 50, "cmd_commandplus", {"10 09F 000033"}, 51},
      {222, -120, "cmd_commandMinus", {"10 0DE FFFF88"}, -120},  // the limit is sent again
      {315, 300, "cmd_commandplus", {"10 13B 0000EB"}, 235},
      {159, 50, "48.5\r", {"10 09F 000030"}, 48},
      {159, 50, "1001\r", {}, 50},
      {222, 0, "-120\r", {"10 0DE FFFF88"}, -120},
      {159, 50, "77", {}, 50},
      {266, 0, "down", {"10 10A 000001"}, 1},
      {130, 80, "up", {"10 082 000040"}, 64},
      {131, 4, "down", {"10 083 000006"}, 5},  // counted from 1 on the line
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.address) + " " + row.act);
    ChangeAtUnit(row.address, row.before);
    Select(row.address);
    if (row.act.starts_with("cmd")) {
      Press(row.act.c_str());
    } else if (ShowsList()) {
      QTest::keyClick(&Choices(), row.act == "up" ? Qt::Key_Up : Qt::Key_Down);
    } else {
      Type(row.act.c_str());
    }
    EXPECT_EQ(Sent(), row.sent);
    EXPECT_EQ(Recorded(row.address), row.stored);
    EXPECT_EQ(unit->Value(row.address, 16), row.stored);
    EXPECT_EQ(Tick("tmr_updatelstCommands"), !row.sent.empty());
    if (!ShowsList() && !row.sent.empty()) {
      EXPECT_EQ(Value().text(), QString::number(row.stored));
    }
  }
}

TEST_F(Editor, PerSourceParametersNameTheSetupSource) {
  OpenSettled();
  for (const auto& [source, address, sent] :
       {std::tuple{16, 182, "10 0B6"}, {48, 185, "30 0B9"}, {80, 159, "10 09F"}}) {
    ChangeAtUnit(278, source);
    Select(address);
    ShowsList() ? QTest::keyClick(&Choices(), Qt::Key_Down) : Press("cmd_commandplus");
    EXPECT_EQ(Sent().at(0).substr(0, 6), sent);
  }
}

TEST_F(Editor, BurstOfChangesLeadsToOneRebuild) {
  OpenSettled();
  Select(159);
  QTimer& timer = *Form().tmr_updatelstCommands;
  EXPECT_EQ(timer.interval(), 1000);
  const QSignalSpy rebuilt(List().model(), &QAbstractItemModel::modelReset);
  Press("cmd_commandplus");
  constexpr int kPause = 150;
  constexpr int kInaccuracy = 50;  // of such a timer
  QTest::qWait(kPause);
  Press("cmd_commandplus");
  EXPECT_LT(timer.remainingTime(), timer.interval() - kPause + kInaccuracy) << "is not restarted";
  EXPECT_EQ(rebuilt.count(), 0);
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  EXPECT_EQ(rebuilt.count(), 1);
  EXPECT_FALSE(timer.isActive());
  EXPECT_EQ(List().currentRow(), LineOf(159));
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
  EXPECT_EQ(Value().text(), "7");
  EXPECT_EQ(Line(159), "Zoom Pan H[0,100] : 20");
  QTest::keyClicks(&Value(), "5\r");
  EXPECT_EQ(Sent(), Texts{"10 09F 00004B"});
  ChangeAtUnit(159, 30);
  EXPECT_EQ(Value().text(), "30");

  Select(266);
  Choices().showPopup();
  ChangeAtUnit(266, 2);
  EXPECT_TRUE(Choices().view()->isVisible());
  EXPECT_EQ(Choices().currentIndex(), 0);
  Choices().hidePopup();
}

}  // namespace
}  // namespace kalde2
