// The program kalde2-unit as its users meet it: a process, a link, a terminal device, signals.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSerialPort>
#include <QTemporaryDir>
#include <csignal>

namespace kalde2 {
namespace {

constexpr int kPatience = 5000;

/// A kalde2-unit with a folder of its own for its links.
class UnitProgram : public testing::Test {
 protected:
  ~UnitProgram() override {
    unit_.kill();
    unit_.waitForFinished();
  }

  void Start(const QStringList& options) {
    qputenv("XDG_CONFIG_HOME", folder_.path().toLocal8Bit());
    unit_.setProcessChannelMode(QProcess::MergedChannels);
    said_.clear();
    unit_.start(KALDE2_UNIT, options);
  }
  /// Waits for a text behind the one that was waited for last.
  bool Says(const QByteArray& text) {
    said_ += unit_.readAll();
    while (!said_.contains(text) && unit_.waitForReadyRead(kPatience)) said_ += unit_.readAll();
    if (!said_.contains(text)) return false;
    said_.remove(0, said_.indexOf(text) + text.size());
    return true;
  }
  /// The reply to a query of the product type at a rate.
  QByteArray AskType(qint32 baud) { return Ask(kTypeQuery, baud); }

  /// What comes for a request.
  QByteArray Ask(const QByteArray& request, qint32 baud = QSerialPort::Baud57600) {
    QSerialPort line(QFile::symLinkTarget(link_));
    line.setBaudRate(baud);
    EXPECT_TRUE(line.open(QIODevice::ReadWrite)) << line.errorString().toStdString();
    line.write(request);
    line.waitForBytesWritten(kPatience);
    constexpr int kQuiet = 300;
    QByteArray reply;
    while (!reply.endsWith('\r') && line.waitForReadyRead(kQuiet)) reply += line.readAll();
    return reply;
  }
  /// The exit code, or -1 for a process that a signal ended or that does not end.
  int ExitCode() {
    const bool ended = unit_.waitForFinished(kPatience);
    return ended && unit_.exitStatus() == QProcess::NormalExit ? unit_.exitCode() : -1;
  }

  static inline const QByteArray kTypeQuery = "F84104100C499\r";
  static inline const QByteArray kType22 = "FC4104100C4000016EF\r";
  static inline const QByteArray kType = "FC4104100C4000023FC\r";
  int argc_ = 0;
  QCoreApplication application_{argc_, nullptr};
  QTemporaryDir folder_;
  const QString link_ = folder_.filePath("KALDE2/ports/1");
  QProcess unit_;
  QByteArray said_;
};

TEST_F(UnitProgram, LivesOnWithoutAFrontPanelAndRemovesItsLinkOnEverySignal) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Start({});
    ASSERT_TRUE(Says("ready: port 1 is /dev/"));
    EXPECT_TRUE(Says("enter port 1 and press \"Open Port\""));
    unit_.closeWriteChannel();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(AskType(QSerialPort::Baud57600), kType);
    EXPECT_TRUE(Says("reads Product type [196]"));
    ASSERT_GT(unit_.processId(), 0);  // kill() takes 0 for the tests themselves
    kill(static_cast<pid_t>(unit_.processId()), signal);
    EXPECT_EQ(ExitCode(), 0);
    EXPECT_FALSE(QFileInfo(link_).isSymLink());
  }
}

TEST_F(UnitProgram, NeverOverwritesALink) {
  QDir(folder_.path()).mkpath("KALDE2/ports");
  QFile::link("/dev/pts/99999", link_);
  Start({});
  EXPECT_TRUE(
      Says("which is gone; for a second unit use --port 2; if no unit uses it, remove it: rm '" +
           link_.toLocal8Bit() + "'"));
  EXPECT_EQ(ExitCode(), 1);
  EXPECT_EQ(QFile::symLinkTarget(link_), "/dev/pts/99999");
}

TEST_F(UnitProgram, SaysWhatWouldHaveBeenRight) {
  const std::pair<QStringList, QByteArray> cases[] = {
      {{"--prot", "2"}, "The options are --port NUMBER, --type NUMBER"},
      {{"2"}, "\"2\" is no option. The options are --port NUMBER"},
      {{"--sources", "16,x"}, "numbers of 0..255 with commas between them, or none"},
      {{"--replay", "no/trace"}, "cannot read no/trace"},
      {{"--replay", KALDE2_UNIT}, "1: a trace begins with \"kalde2-trace\""},
      {{"--fault", "loud"}, "no fault \"loud\"; there are silent, silent-for=N"},
      {{"--fault", "refuse=Zoom Tan H"}, "use refuse=ADDRESS"},
  };
  for (const auto& [options, right] : cases) {
    Start(options);
    EXPECT_TRUE(Says(right)) << right.toStdString();
    EXPECT_EQ(ExitCode(), 1);
  }
}

TEST_F(UnitProgram, AnswersAsARecordedOneAndRefusesWhatWasNeverAsked) {
  QFile trace(folder_.filePath("trace"));
  ASSERT_TRUE(trace.open(QIODevice::WriteOnly));
  trace.write("kalde2-trace 1\n");
  // Silent at first, then of type 22, and a slot of the bytes that control the flow.
  trace.write("1 -> " + kTypeQuery.toHex(' ') + "\n2 -> " + kTypeQuery.toHex(' ') + '\n');
  trace.write("3 <- " + kType22.toHex(' ') + "\n4 -> 53 07 A2 01 00 00 00 00 3F\n");
  trace.write("5 <- 53 02 11 13\n");
  trace.close();
  Start({"--replay", trace.fileName(), "--fault", "late=50"});
  ASSERT_TRUE(Says("ready"));
  EXPECT_EQ(AskType(QSerialPort::Baud57600), "");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(AskType(QSerialPort::Baud57600), kType22);
  EXPECT_TRUE(Says("Product type [196] is 22"));
  EXPECT_EQ(Ask(QByteArray("S\x07\xA2\x01\0\0\0\0?", 9)), QByteArray("S\x02\x11\x13"));
  EXPECT_EQ(Ask("F841041010AE0\r"), "F0000\r");
  EXPECT_TRUE(Says("WRONG: reads Lock mode [266], which was never recorded"));
}

TEST_F(UnitProgram, WithARateItIsPacedAndDeafToOtherRates) {
  Start({"--baud", "9600"});
  ASSERT_TRUE(Says("ready"));
  EXPECT_EQ(AskType(QSerialPort::Baud57600), "");
  EXPECT_TRUE(Says("not understood: the panel runs at 57600 baud"));
  const QDeadlineTimer length_of_34_characters(35);
  EXPECT_EQ(AskType(QSerialPort::Baud9600), kType);
  EXPECT_TRUE(length_of_34_characters.hasExpired());
}

TEST_F(UnitProgram, LosesWhatAPanelDoesNotReadAndStaysAlive) {
  Start({"--quiet", "--fault", "unasked=10000"});
  EXPECT_TRUE(Says("characters are lost"));
  unit_.write("fault none\n");
  EXPECT_TRUE(Says("faults: none"));
  unit_.write("quit\n");
  EXPECT_EQ(ExitCode(), 0);
}

}  // namespace
}  // namespace kalde2
