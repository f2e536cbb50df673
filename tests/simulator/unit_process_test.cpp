// The program kalde2-unit as its users meet it: a process, a link, a terminal device, signals.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSerialPort>
#include <QTemporaryDir>
#include <csignal>

namespace kalde2 {
namespace {

constexpr int kPatience = 5000;
constexpr int kQuiet = 300;
const QByteArray kTypeQuery = "F84104100C499\r";
const QByteArray kTypeReply = "FC4104100C4000023FC\r";

/// What comes until `end` has come, or nothing more comes within the time.
QByteArray ReadUntil(QIODevice& device, const QByteArray& end, int patience = kPatience) {
  QByteArray text = device.readAll();
  while (!text.contains(end) && device.waitForReadyRead(patience)) text += device.readAll();
  return text;
}

/// The panel's end of the line.
class Line : public QSerialPort {
 public:
  explicit Line(const QString& link, qint32 baud = Baud57600)
      : QSerialPort(QFile::symLinkTarget(link)) {
    setBaudRate(baud);
    EXPECT_TRUE(open(ReadWrite)) << errorString().toStdString();
  }

  QByteArray Exchange(const QByteArray& request, int patience = kPatience) {
    write(request);
    waitForBytesWritten(kPatience);
    return ReadUntil(*this, "\r", patience);
  }
};

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
    unit_.start(KALDE2_UNIT, options);
  }
  bool Says(const QByteArray& text) { return ReadUntil(unit_, text).contains(text); }
  /// The exit code, or -1 for a process that a signal ended or that does not end.
  int ExitCode() {
    const bool ended = unit_.waitForFinished(kPatience);
    return ended && unit_.exitStatus() == QProcess::NormalExit ? unit_.exitCode() : -1;
  }

  int argc_ = 0;
  QCoreApplication application_{argc_, nullptr};
  QTemporaryDir folder_;
  const QString link_ = folder_.filePath("KALDE2/ports/1");
  QProcess unit_;
};

TEST_F(UnitProgram, ServesItsLinkAcrossReopeningAndRemovesItOnEverySignal) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Start({});
    ASSERT_TRUE(Says("ready: port 1 is /dev/"));
    unit_.closeWriteChannel();  // it lives on without a front panel
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Line(link_).Exchange(kTypeQuery), kTypeReply);
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
      Says("which is gone; if no unit uses it, remove it: rm '" + link_.toLocal8Bit() + "'"));
  EXPECT_EQ(ExitCode(), 1);
  EXPECT_EQ(QFile::symLinkTarget(link_), "/dev/pts/99999");
}

TEST_F(UnitProgram, RefusesOptionsThatItDoesNotUnderstand) {
  for (const char* option : {"--port=x", "--sources=16,300", "--baud=-1", "--fault=loud",
                             "--resolutions=256", "--resolutions=/nowhere", "extra"}) {
    Start({option});
    EXPECT_EQ(ExitCode(), 1) << option;
    EXPECT_FALSE(QFileInfo(link_).isSymLink()) << option;
  }
}

TEST_F(UnitProgram, WithARateItIsPacedAndDeafToOtherRates) {
  Start({"--baud", "9600"});
  ASSERT_TRUE(Says("ready"));
  EXPECT_EQ(Line(link_).Exchange(kTypeQuery, kQuiet), "");
  EXPECT_TRUE(Says("not understood: the panel runs at 57600 baud"));
  Line line(link_, QSerialPort::Baud9600);
  QElapsedTimer timer;
  timer.start();
  EXPECT_EQ(line.Exchange(kTypeQuery), kTypeReply);
  EXPECT_GE(timer.elapsed(), 35) << "34 characters of 10 bits";
}

TEST_F(UnitProgram, LosesWhatAPanelDoesNotReadAndStaysAlive) {
  Start({"--quiet", "--fault", "unasked=10000"});
  EXPECT_TRUE(Says("characters are lost"));
  unit_.write("fault none\n");
  EXPECT_TRUE(Says("faults: none"));
  Line line(link_);
  (void)ReadUntil(line, "\n", kQuiet);
  EXPECT_EQ(line.Exchange(kTypeQuery), kTypeReply);
  unit_.write("quit\n");
  EXPECT_EQ(ExitCode(), 0);
}

}  // namespace
}  // namespace kalde2
