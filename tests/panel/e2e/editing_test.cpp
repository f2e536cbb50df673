// What the operator changes reaches the unit, what the unit changes reaches the window.

#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

class EndToEndEditing : public EndToEnd {
 protected:
  /// The bodies of the write requests since the last call, without start and checksum.
  QStringList Writes() {
    QStringList bodies;
    for (const QString& request : unit->Requests()) {
      EXPECT_FALSE(request.contains("WRONG")) << request.toStdString();
      if (request.startsWith("F04")) bodies << request.mid(3, 14);
    }
    return bodies;
  }

  QString LineText(const QString& start) const {
    const auto lines = Form().lst_commands->findItems(start, Qt::MatchStartsWith);
    return lines.isEmpty() ? QString() : lines.front()->text();
  }
};

TEST_F(EndToEndEditing, EveryKindOfControlReachesTheUnitAtOnce) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());

  SelectLine("Back Y");
  Press("cmd_commandplus");
  EXPECT_EQ(Writes(), QStringList("10410"
                                  "13B"
                                  "000010"))
      << "clamped to 16, sent once";
  EXPECT_EQ(unit->Value(315), 16);
  QTest::keyClicks(Form().txt_commandval, "\b\b77\r");
  EXPECT_EQ(unit->Value(315), 77);
  SelectLine("Flip");
  QTest::keyClick(Form().cbo_command, Qt::Key_Down);
  EXPECT_EQ(unit->Value(149), 1);
  EXPECT_TRUE(Becomes([this] {
    return LineText("Back Y") == "Back Y[16,235] : 77" && LineText("Flip") == "Flip : Horiz";
  }));

  (void)Writes();
  QTest::keyClick(Form().cbo_program, Qt::Key_Down);
  EXPECT_EQ(Writes(), QStringList({"10410082000011", "10410116000011"}));
  QTest::keyClick(Form().Slider("slide_ymax"), Qt::Key_Right);
  EXPECT_EQ(unit->Value(178), 33);
  auto* const right = Form().arr_zoompan->findChild<QWidget*>("pic_arrow_2");
  QTest::mouseClick(right, Qt::LeftButton);
  EXPECT_EQ(unit->Value(159), 1);
  Press("opt_lockmix");
  EXPECT_EQ(unit->Value(266), 2);

  cpvSlider& zoom = *Form().Slider("slide_zoom");
  const int y = zoom.height() / 2;
  QTest::mousePress(&zoom, Qt::LeftButton, {}, {8, y});
  for (int x = 8; x < zoom.width() / 2; x += 4) QTest::mouseMove(&zoom, {x, y});
  QTest::mouseRelease(&zoom, Qt::LeftButton, {}, {zoom.width() / 2, y});
  EXPECT_GT(zoom.Value(), 100);
  EXPECT_EQ(unit->Value(134), zoom.Value());
}

TEST_F(EndToEndEditing, AFrontPanelChangeShows) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  unit->Command("set 266 2\nset 178 200\nset 159 30\nset 295 1");
  EXPECT_TRUE(Becomes([this] {
    return Find<QRadioButton>("opt_lockmix")->isChecked() &&
           Form().Slider("slide_ymax")->Value() == 200 && Form().arr_zoompan->valueX() == 30 &&
           Form().chk_keyenable->isChecked() && LineText("Lock mode") == "Lock mode : Lock+Mix" &&
           LineText("Zoom Pan H") == "Zoom Pan H[0,100] : 30";
  }));
  EXPECT_EQ(Writes(), QStringList());

  unit->Command("fault unasked=50");
  Rest(500ms);
  Press("opt_lockoff");
  EXPECT_EQ(unit->Value(266), 0) << "a stream of frames keeps nothing from going out";
}

TEST_F(EndToEndEditing, FaultsOfTheLineLoseNoChange) {
  struct Case {
    const char* fault;
    int sends;
  };
  const Case cases[] = {{"split=400,3", 1},   {"noise-before", 1},  {"noise-inside", 1},
                        {"noise-after", 1},   {"short-frame=7", 1}, {"wrong-address", 1},
                        {"error-reply=1", 1}, {"silent-for=1", 2},  {"late=1200", 2}};
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  SelectLine("Back U");
  int value = 16;
  for (const Case& faulty : cases) {
    SCOPED_TRACE(faulty.fault);
    (void)Writes();
    unit->Command(QByteArray("fault ") + faulty.fault);
    EXPECT_TRUE(unit->Says("faults: "));
    QTest::keyClicks(Form().txt_commandval, QString("\b\b\b%1\r").arg(++value));
    EXPECT_EQ(Writes().size(), faulty.sends);
    EXPECT_EQ(unit->Value(316), value);
    unit->Command("fault none");
    EXPECT_TRUE(unit->Says("faults: none"));
  }
  EXPECT_TRUE(Becomes([&] { return LineText("Back U").endsWith(QString::number(value)); }));
  EXPECT_EQ(Boxes(), QStringList());
}

TEST_F(EndToEndEditing, AStrayXoffStopsTheLineUntilTheNextOpening) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  unit->Command("fault stray-xoff");
  EXPECT_TRUE(unit->Says("faults: stray-xoff"));
  Press("chk_keyenable");
  EXPECT_EQ(unit->Value(295), 1);
  (void)Writes();
  Press("chk_swapforback");
  EXPECT_EQ(Writes(), QStringList());

  Press("Cmd_openclose");
  unit->Command("fault none");
  Press("Cmd_openclose");
  EXPECT_EQ(State(), "OPEN : K2-6350");
  (void)Writes();
  Press("chk_keyenable");
  EXPECT_EQ(Writes(), QStringList("10410127000000"));
}

}  // namespace
}  // namespace kalde2
