// How the program starts and ends, what an idle panel costs, and that what one side changes reaches
// the other.

#include <QDir>
#include <csignal>
#include <sstream>

#include "adapters/end_signals.h"
#include "files/mod_resolutions.h"
#include "tests/adapters/test_line.h"
#include "tests/support/e2e_fixture.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

/// A folder in which no settings can be stored: a file stands where it would be.
QString NoFolder() {
  QFile file(QDir::current().filePath("no_folder"));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  return file.fileName();
}

/// Whether a process has a handler for a signal.
bool Catches(pid_t process, int number) {
  std::istringstream status(ReadText("/proc/" + std::to_string(process) + "/status"));
  for (std::string word; status >> word;) {
    if (word == "SigCgt:" && status >> word)
      return std::stoull(word, nullptr, 16) >> (number - 1) & 1;
  }
  return false;
}

TEST(PanelProgram, RunsSilentlyAndStoresWhatExitStoresOnEverySignalThatWasNotIgnored) {
  const QTemporaryDir folder;
  const std::tuple<int, int, QString> cases[] = {{SIGTERM, SIGHUP, folder.filePath("a")},
                                                 {SIGHUP, 0, folder.filePath("b")},
                                                 {SIGINT, 0, folder.filePath("c")},
                                                 {SIGTERM, 0, NoFolder()}};
  for (const auto& [end_signal, ignored, settings] : cases) {
    SCOPED_TRACE(end_signal);
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", settings);
    environment.insert("LC_ALL", "C.UTF-8");  // Qt complains of others
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.setChildProcessModifier([end = end_signal, kept_out = ignored] {
      signal(end, SIG_DFL);  // a test in the background is started with some ignored
      if (kept_out != 0) signal(kept_out, SIG_IGN);
    });
    program.start(KALDE2_PANEL, QStringList());
    ASSERT_TRUE(program.waitForStarted());
    const auto panel = static_cast<pid_t>(program.processId());
    EXPECT_TRUE(
        QTest::qWaitFor([&, number = end_signal] { return Catches(panel, number); }, 20'000));
    EXPECT_FALSE(program.waitForFinished(200)) << "it should run until it is ended";
    if (ignored != 0) kill(panel, ignored);
    EXPECT_FALSE(program.waitForFinished(200));
    kill(panel, end_signal);
    ASSERT_TRUE(program.waitForFinished(20'000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    // What the headless display itself has to say.
    QByteArray output = program.readAll();
    output.replace("This plugin does not support propagateSizeHints()\n", "");
    EXPECT_EQ(output.toStdString(), "");
    const std::string stored = ReadText(settings.toStdString() + "/KALDE2/KALDE2.conf");
    EXPECT_EQ(stored.find("Serial%20Port=1") != std::string::npos, settings != NoFolder());
  }
}

TEST_F(EndToEnd, ASignalEndsWhateverRunsOrIsOpen) {
  const std::function<void()> moments[] = {
      [] { Rest(100ms); },
      [this] { Choose("mnu_clone_read"); },
      [this] { Choose("mnu_about"), Choose("cmd_function_strore"); },
      [this] { Choose("mnu_file_save"); },
  };
  const QString lock = "/var/lock/LCK..";
  for (const auto& moment : moments) {
    ASSERT_NO_FATAL_FAILURE(StartAndOpen());
    const QString device =
        QString::fromStdString(panel->ports.DeviceFor(1)).mid(5).replace('/', '_');
    EXPECT_TRUE(QFile::exists(lock + device));
    Form().txt_port->setText("9");
    const EndSignals signals_to_end;
    QObject::connect(&signals_to_end, &EndSignals::Raised, [this] {
      Window().Form_Unload();
      if (QWidget* const box = QApplication::activeModalWidget()) box->close();
    });
    answers = false;
    unit->Command("fault late=100");
    QTimer::singleShot(50ms, [] { raise(SIGTERM); });
    moment();
    EXPECT_TRUE(Becomes([this] { return panel->ends > 0; }));
    answers = true;
    EXPECT_EQ(panel->ends, 1);
    EXPECT_FALSE(panel->port.PortOpen() || QFile::exists(lock + device));
    EXPECT_EQ(panel->settings.GetSetting("Tessaly", "Serial Port", ""), "9");
    panel->settings.SaveSetting("Tessaly", "Serial Port", "1");
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
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());

  unit->Command("set 266 2\nset 178 200\nset 159 30");
  EXPECT_TRUE(Becomes([this] {
    const auto lines = Form().lst_commands->findItems("Lock mode", Qt::MatchStartsWith);
    return Find<QRadioButton>("opt_lockmix")->isChecked() &&
           Form().Slider("slide_ymax")->Value() == 200 &&
           Form().Pad("arr_zoompan")->valueX() == 30 && !lines.isEmpty() &&
           lines.front()->text() == "Lock mode : Lock+Mix";
  }));
  EXPECT_TRUE(unit->Requests().isEmpty());
}

TEST_F(EndToEnd, WhatCameInASleepIsNoReply) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  constexpr std::int16_t kAutoset = 254;
  CommandLink& link = panel->window.UnitSession().Link();
  for (int round = 0; round < 3; ++round) {
    unit->Command("set 159 " + QByteArray::number(42 + round));
    EXPECT_EQ(unit->Value(159), 42 + round);  // it has been sent
    panel->clock.Sleep(200ms);
    for (int read = 0; read < 2; ++read) {
      const ReplyRecord reply = link.SendParameter(kRead, kFirstSourceCode, 0, kAutoset);
      EXPECT_TRUE(reply.Valid);
      EXPECT_EQ(reply.Address, kAutoset);
      EXPECT_EQ(reply.Value, 0);
    }
  }
}

TEST_F(EndToEnd, AClickOnASlowLineIsOneRequestAndALimitIsShownOnRelease) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  unit->Command("fault late=400");
  ASSERT_TRUE(unit->Says("faults: "));
  cpvSlider& zoom = *Form().Slider("slide_zoom");
  const QPoint right_end(zoom.width() * 2 / 3, zoom.height() / 2);
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
    QTimer::singleShot(100ms, [&] { QTest::mouseRelease(&zoom, button, {}, right_end); });
    QTest::mousePress(&zoom, button, {}, right_end);
    Rest(1s);
    EXPECT_EQ(unit->Requests().size(), 1);
    EXPECT_FALSE(zoom.isHeld());
    EXPECT_EQ(unit->Value(134), zoom.Value());
  }
  const QPoint handle(zoom.height() / 2, zoom.height() / 2);
  zoom.setValue(100);
  QTest::mousePress(&zoom, Qt::LeftButton, {}, handle);
  QTest::mouseMove(&zoom, handle + QPoint(30, 0));
  unit->Command("set 134 150");
  Rest(800ms);
  EXPECT_GT(zoom.Value(), 150) << "not under the hand";
  QTest::mouseRelease(&zoom, Qt::LeftButton, {}, handle + QPoint(30, 0));
  EXPECT_EQ(zoom.Value(), 150);
}

TEST_F(EndToEnd, ADoubleClickOnOpenPortOpensOnce) {
  StartUnit();
  StartPanel();
  Rest(100ms);  // the device's name moves the button
  QPushButton& button = *Form().Cmd_openclose;
  QWindow* const window = Window().windowHandle();
  const QPoint middle = button.mapTo(&Window(), button.rect().center());
  // The toolkit itself finds the second click, which comes behind the opening.
  QTest::mouseDClick(window, Qt::LeftButton, {}, middle);
  ExpectShowsOpen();
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
  QCoreApplication::sendEvent(&button, &held);
  ExpectShowsOpen();
  QTest::mouseClick(window, Qt::LeftButton, {}, middle);
  ExpectShowsClosed();
}

TEST_F(EndToEnd, AFetchBringsEverySlotWholeIntoTheFile) {
  constexpr std::size_t kSlots = 255;
  // Words of the bytes that stop and start a line.
  constexpr std::int16_t kA = 0x1111, kB = 0x1113, kC = 0x1311, kD = 0x1313;
  ResolutionTable table;
  table.Reset(0);
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    table.Append(
        {"Slot " + std::to_string(slot), "RYCIU", kA, kB, kC, 0, kD, kA, kB, kC, kD, kA, "NP"});
  }
  std::ofstream file("table.txt", std::ios::binary);
  WriteResolutions(file, table);
  file.close();
  ASSERT_NO_FATAL_FAILURE(
      StartAndOpen({"--resolutions", QFileInfo("table.txt").absoluteFilePath()}));
  Choose("mnu_function_refreshRes");
  EXPECT_EQ(ReadText("resdata.txt"), ReadText("table.txt"));
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());

  StartPanel();
  QFile::remove("resdata.txt");
  const QComboBox& list = *Form().cbo_resolution;
  ASSERT_EQ(list.count(), kSlots + 1);
  EXPECT_EQ(list.itemText(0), QString(26, ' '));
  for (int i = 1; i < list.count(); ++i) {
    EXPECT_EQ(list.itemText(i).trimmed(), QString("Slot %1").arg(i - 1));
    EXPECT_EQ(list.itemData(i), i + 1);
  }
}

}  // namespace
}  // namespace kalde2
