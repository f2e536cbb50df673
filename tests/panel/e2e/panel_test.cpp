// How the program starts and ends, what an idle panel costs, and that what one side changes reaches
// the other.

#include <QDir>
#include <QSettings>

#include "tests/adapters/test_line.h"
#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

/// A folder in which no settings can be stored: a file stands where it would be.
QString NoFolder() {
  QFile file(QDir::current().filePath("no_folder"));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  return file.fileName();
}

TEST(PanelProgram, StartsSilentlyAndEndsOnASignal) {
  QProcess program;
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert("XDG_CONFIG_HOME", NoFolder());
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

TEST_F(EndToEnd, RemembersThePortWhereItCanAndClosesInSilence) {
  const auto store_in = [](const QString& folder) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
  };
  for (const auto& [folder, number] : {std::pair{NoFolder(), "1"}, {QString("settings"), "7"}}) {
    store_in(QDir::current().absoluteFilePath(folder));
    StartPanel();
    Form().txt_port->setText("7");
    Window().close();
    EXPECT_EQ(panel->ends, 1);
    EXPECT_TRUE(Boxes().isEmpty());
    StartPanel();
    EXPECT_EQ(Form().txt_port->text().toStdString(), number);
  }
  store_in(QDir::currentPath());
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

TEST_F(EndToEnd, AFileTakesTheSettingsBackToTheUnit) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  unit->Command("set 315 77");
  Choose("mnu_clone_read");
  file_name = QDir::current().filePath("first");
  Choose("mnu_file_save");
  unit->Command("set 315 20");
  file_name += ".txt";
  Choose("mnu_file_load");
  EXPECT_EQ(Boxes(), QStringList({"plain, KALDE2 Control Panel: Settings saved to file",
                                  "plain, KALDE2 Control Panel: Loaded values from file"}));
  Choose("menu_clone_write");
  EXPECT_EQ(unit->Value(315), 77);
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
}

}  // namespace
}  // namespace kalde2
