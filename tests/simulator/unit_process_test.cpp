// The program kalde2-unit as its users meet it: a process, a link, a terminal device, signals.

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QSerialPort>
#include <QTemporaryDir>
#include <csignal>

#include "tests/support/unit_process.h"

namespace kalde2 {
namespace {

constexpr int kPatience = 5000;
const QByteArray kTypeQuery = "F84104100C499\r";
const QByteArray kType = "FC4104100C4000023FC\r";

/// What comes for a request, which is of the product type unless told otherwise, at a rate.
QByteArray Ask(qint32 baud = QSerialPort::Baud57600, const QByteArray& request = kTypeQuery) {
  QSerialPort line(QFile::symLinkTarget(UnitProcess::Link()));
  line.setBaudRate(baud);
  EXPECT_TRUE(line.open(QIODevice::ReadWrite)) << line.errorString().toStdString();
  line.write(request);
  line.waitForBytesWritten(kPatience);
  constexpr int kQuiet = 300;
  QByteArray reply;
  while (!reply.endsWith('\r') && line.waitForReadyRead(kQuiet)) reply += line.readAll();
  return reply;
}

QByteArray AskType(qint32 baud) {
  return Ask(baud);
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
    EXPECT_FALSE(QFileInfo(UnitProcess::Link()).isSymLink());
  }
}

TEST(UnitProgram, SaysWhatWouldHaveBeenRightAndNeverOverwritesALink) {
  QDir().mkpath(QFileInfo(UnitProcess::Link()).path());
  QFile::link("/dev/pts/99999", UnitProcess::Link());
  const std::pair<QStringList, QByteArray> cases[] = {
      {{"--prot", "2"}, "The options are --port NUMBER, --type NUMBER"},
      {{"2"}, "\"2\" is no option. The options are --port NUMBER"},
      {{"--sources", "16,x"}, "numbers of 0..255 with commas between them, or none"},
      {{"--replay", "no/trace"}, "cannot read no/trace"},
      {{"--replay", KALDE2_UNIT}, "1: a trace begins with \"kalde2-trace\""},
      {{"--fault", "loud"}, "no fault \"loud\"; there are silent, silent-for=N"},
      {{"--fault", "refuse=Zoom Tan H"}, "use refuse=ADDRESS"},
      {{},
       "which is gone; for a second unit use --port 2; if no unit uses it, remove it: rm '" +
           UnitProcess::Link().toLocal8Bit() + "'"},
  };
  for (const auto& [options, right] : cases) {
    QProcess unit;
    unit.setProcessChannelMode(QProcess::MergedChannels);
    unit.start(KALDE2_UNIT, options);
    EXPECT_EQ(ExitCode(unit), 1);
    EXPECT_TRUE(unit.readAll().contains(right)) << right.toStdString();
  }
  EXPECT_EQ(QFile::symLinkTarget(UnitProcess::Link()), "/dev/pts/99999");
  QFile::remove(UnitProcess::Link());
}

TEST(UnitProgram, AnswersAsARecordedOneAndRefusesWhatWasNeverAsked) {
  const QTemporaryDir folder;
  const QByteArray type22 = "FC4104100C4000016EF\r";
  QFile trace(folder.filePath("trace"));
  ASSERT_TRUE(trace.open(QIODevice::WriteOnly));
  trace.write("kalde2-trace 1\n");
  // Silent at first, then of type 22, and a slot of the bytes that control the flow.
  trace.write("1 -> " + kTypeQuery.toHex(' ') + "\n2 -> " + kTypeQuery.toHex(' ') + '\n');
  trace.write("3 <- " + type22.toHex(' ') + "\n4 -> 53 07 A2 01 00 00 00 00 3F\n");
  trace.write("5 <- 53 02 11 13\n");
  trace.close();
  UnitProcess unit({"--replay", trace.fileName(), "--fault", "late=50"});
  EXPECT_EQ(Ask(), "");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Ask(), type22);
  EXPECT_TRUE(unit.Says("Product type [196] is 22"));
  EXPECT_EQ(Ask(QSerialPort::Baud57600, QByteArray("S\x07\xA2\x01\0\0\0\0?", 9)),
            QByteArray("S\x02\x11\x13"));
  EXPECT_EQ(Ask(QSerialPort::Baud57600, "F841041010AE0\r"), "F0000\r");
  EXPECT_TRUE(unit.Says("WRONG: reads Lock mode [266], which was never recorded"));
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
