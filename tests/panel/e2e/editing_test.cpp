// What the operator changes reaches the unit, what the unit changes reaches the window.

#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

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
  EXPECT_EQ(Writes(), QStringList("1041013B000010")) << "clamped to 16, sent once";
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
}

}  // namespace
}  // namespace kalde2
