// The program kalde2-unit as its users meet it: a process, a link, a terminal device, signals.

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QSerialPort>
#include <csignal>

#include "tests/support/unit_process.h"

namespace kalde2 {
namespace {

constexpr int kPatience = 5000;
const QByteArray kType = "FC4104100C4000023FC\r";

/// The link of port 1.
QString Link() {
  return qEnvironmentVariable("XDG_CONFIG_HOME") + "/KALDE2/ports/1";
}

/// The reply to a query of the product type at a rate.
QByteArray AskType(qint32 baud) {
  QSerialPort line(QFile::symLinkTarget(Link()));
  line.setBaudRate(baud);
  EXPECT_TRUE(line.open(QIODevice::ReadWrite)) << line.errorString().toStdString();
  line.write("F84104100C499\r");
  line.waitForBytesWritten(kPatience);
  constexpr int kQuiet = 300;
  QByteArray reply;
  while (!reply.endsWith('\r') && line.waitForReadyRead(kQuiet)) reply += line.readAll();
  return reply;
}

/// The exit code, or -1 for a process that a signal ended or that does not end.
int ExitCode(QProcess& unit) {
  const bool ended = unit.waitForFinished(kPatience);
  return ended && unit.exitStatus() == QProcess::NormalExit ? unit.exitCode() : -1;
}

TEST(UnitProgram, LivesOnWithoutAFrontPanelAndRemovesItsLinkOnEverySignal) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    UnitProcess unit;
    EXPECT_TRUE(unit.Says("enter port 1 and press \"Open Port\""));
    unit.Process().closeWriteChannel();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(AskType(QSerialPort::Baud57600), kType);
    EXPECT_TRUE(unit.Says("reads Product type [196]"));
    ASSERT_GT(unit.Process().processId(), 0);  // kill() takes 0 for the tests themselves
    kill(static_cast<pid_t>(unit.Process().processId()), signal);
    EXPECT_EQ(ExitCode(unit.Process()), 0);
    EXPECT_FALSE(QFileInfo(Link()).isSymLink());
  }
}

TEST(UnitProgram, SaysWhatWouldHaveBeenRightAndNeverOverwritesALink) {
  QDir().mkpath(QFileInfo(Link()).path());
  QFile::link("/dev/pts/99999", Link());
  const std::pair<QStringList, QByteArray> cases[] = {
      {{"--prot", "2"}, "The options are --port NUMBER, --type NUMBER"},
      {{"2"}, "\"2\" is no option. The options are --port NUMBER"},
      {{"--sources", "16,x"}, "numbers of 0..255 with commas between them, or none"},
      {{"--fault", "loud"}, "no fault \"loud\"; there are silent, silent-for=N"},
      {{"--fault", "refuse=Zoom Tan H"}, "use refuse=ADDRESS"},
      {{},
       "which is gone; for a second unit use --port 2; if no unit uses it, remove it: rm '" +
           Link().toLocal8Bit() + "'"},
  };
  for (const auto& [options, right] : cases) {
    QProcess unit;
    unit.setProcessChannelMode(QProcess::MergedChannels);
    unit.start(KALDE2_UNIT, options);
    EXPECT_EQ(ExitCode(unit), 1);
    EXPECT_TRUE(unit.readAll().contains(right)) << right.toStdString();
  }
  EXPECT_EQ(QFile::symLinkTarget(Link()), "/dev/pts/99999");
  QFile::remove(Link());
}

TEST(UnitProgram, WithARateItIsPacedAndDeafToOtherRates) {
  UnitProcess unit({"--baud", "9600"});
  EXPECT_EQ(AskType(QSerialPort::Baud57600), "");
  EXPECT_TRUE(unit.Says("not understood: the panel runs at 57600 baud"));
  const QDeadlineTimer length_of_34_characters(35);
  EXPECT_EQ(AskType(QSerialPort::Baud9600), kType);
  EXPECT_TRUE(length_of_34_characters.hasExpired());
}

TEST(UnitProgram, LosesWhatAPanelDoesNotReadAndStaysAlive) {
  UnitProcess unit({"--quiet", "--fault", "unasked=10000"});
  EXPECT_TRUE(unit.Says("characters are lost"));
  unit.Command("fault none");
  EXPECT_TRUE(unit.Says("faults: none"));
  unit.Command("quit");
  EXPECT_EQ(ExitCode(unit.Process()), 0);
}

}  // namespace
}  // namespace kalde2
