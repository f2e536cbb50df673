// How the program starts and ends, what an idle panel costs, and that what one side changes reaches
// the other.

#include "tests/adapters/test_line.h"
#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

TEST(PanelProgram, StartsSilentlyAndEndsOnASignal) {
  // Also where no settings can be stored, for a file stands in place of their folder.
  QFile file(QDir::current().filePath("no_folder"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  for (const QString& settings : {QDir::currentPath(), file.fileName()}) {
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", settings);
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(KALDE2_PANEL, QStringList());
    ASSERT_TRUE(program.waitForStarted());
    EXPECT_FALSE(program.waitForFinished(1000)) << "it should run until it is ended";
    program.terminate();
    EXPECT_TRUE(program.waitForFinished(2000));
    // What the headless display itself has to say.
    QByteArray output = program.readAll();
    output.replace("This plugin does not support propagateSizeHints()\n", "");
    EXPECT_EQ(output.toStdString(), "");
  }
}

TEST_F(EndToEnd, TakesNoCpuClosedOpenOrWaitingForASilentUnit) {
  const auto cpu_time_of = [](const std::function<void()>& rest) {
    const auto before = CpuTime();
    rest();
    return CpuTime() - before;
  };
  StartUnit({"--fault", "silent"});
  StartPanel();
  Rest(200ms);
  EXPECT_LT(cpu_time_of([] { Rest(2s); }), 20ms) << "closed";

  std::chrono::microseconds before{};
  std::chrono::microseconds after{};
  QTimer::singleShot(500ms, [&] { before = CpuTime(); });
  QTimer::singleShot(2500ms, [&] { after = CpuTime(); });
  Press("Cmd_openclose");
  EXPECT_LT(after - before, 20ms) << "waiting";
  EXPECT_EQ(Boxes().size(), 1);
  EXPECT_EQ(unit->Requests().filter("F84104100C499").size(), 3);

  unit->Command("fault none");
  Press("Cmd_openclose");
  ExpectShowsOpen();
  EXPECT_TRUE(Becomes([this] { return !Form().tmr_updatelstCommands->isActive(); }));
  EXPECT_LT(cpu_time_of([] { Rest(2s); }), 20ms) << "open";
}

TEST_F(EndToEnd, WhatOneSideChangesReachesTheOther) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  SelectLine("Back Y");
  QTest::keyClicks(Form().txt_commandval, "\b\b77\r");
  EXPECT_EQ(unit->Value(315), 77);
  cpvSlider& zoom = *Form().Slider("slide_zoom");
  const int y = zoom.height() / 2;
  QTest::mousePress(&zoom, Qt::LeftButton, {}, {8, y});
  for (int x = 8; x < zoom.width() / 2; x += 4) QTest::mouseMove(&zoom, {x, y});
  QTest::mouseRelease(&zoom, Qt::LeftButton, {}, {zoom.width() / 2, y});
  EXPECT_GT(zoom.Value(), 100);
  EXPECT_EQ(unit->Value(134), zoom.Value());
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());

  unit->Command("set 266 2\nset 178 200\nset 159 30");
  EXPECT_TRUE(Becomes([this] {
    const auto lines = Form().lst_commands->findItems("Lock mode", Qt::MatchStartsWith);
    return Find<QRadioButton>("opt_lockmix")->isChecked() &&
           Form().Slider("slide_ymax")->Value() == 200 && Form().arr_zoompan->valueX() == 30 &&
           !lines.isEmpty() && lines.front()->text() == "Lock mode : Lock+Mix";
  }));
  EXPECT_TRUE(unit->Requests().isEmpty());
}

}  // namespace
}  // namespace kalde2
