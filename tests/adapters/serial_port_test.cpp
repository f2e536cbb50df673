#include "adapters/qt_serial_port.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSysInfo>
#include <QTest>
#include <QTimer>
#include <cerrno>
#include <functional>

#include "adapters/qt_clock.h"
#include "link/fault.h"
#include "tests/adapters/test_line.h"
#include "tests/support/ordinary_user.h"

namespace kalde2 {
namespace {

using namespace std::chrono_literals;

/// A line on port 1, and what is told of it.
class QtSerialPortTest : public testing::Test, public PortListener {
 protected:
  QtSerialPortTest() { port_.SetListener(this); }

  void MSComm1_OnComm() override { ++events_; }
  void PortLost(const std::string& reason) override {
    ++losses_;
    EXPECT_FALSE(port_.PortOpen());
    EXPECT_EQ(reason, line_.Device() + " is gone");
  }

  void OpenNewLine() {
    line_.Reopen();
    directory_.device = QString::fromStdString(line_.Device());
    ASSERT_EQ(port_.Open(kSetup), std::nullopt);
  }

  [[nodiscard]] tcflag_t SoftwareFlowControl() const {
    return line_.Settings().c_iflag & (IXON | IXOFF | IXANY);
  }

  /// Reads until `size` characters are there or a second passes without any.
  std::string ReadAtLeast(std::size_t size) {
    std::string text;
    while (text.size() < size) {
      const auto before = clock_.Monotonic();
      clock_.ServeEvents(1s);
      if (clock_.Monotonic() - before >= 1s) break;
      text += port_.Input();
    }
    return text;
  }

  static inline const PortSetup kSetup{.settings = "57600,N,8,1"};

  struct : PortDirectory {
    std::string DeviceFor(int number) const override {
      return number == 1 ? device.toStdString() : "";
    }
    std::vector<NumberedPort> PresentPorts() const override { return {}; }

    QString device;
  } directory_;
  TestLine line_;
  QtClock clock_;
  QtSerialPort port_{directory_};
  int events_ = 0;
  int losses_ = 0;
};

TEST_F(QtSerialPortTest, OpensWithBothFlowControlsAndIsUselessClosed) {
  OpenNewLine();
  EXPECT_NE(port_.findChild<QObject*>("MSComm1"), nullptr);
  ASSERT_EQ(port_.Open({.settings = "38400,N,8,1"}), std::nullopt);
  const termios settings = line_.Settings();
  EXPECT_EQ(cfgetospeed(&settings), speed_t{B38400});
  EXPECT_EQ(settings.c_cflag & (CSIZE | PARENB | CSTOPB | CRTSCTS), tcflag_t{CS8 | CRTSCTS});
  EXPECT_EQ(SoftwareFlowControl(), tcflag_t{IXON | IXOFF});
  port_.Close();
  EXPECT_THROW(port_.Output("x"), Fault);
  EXPECT_THROW((void)port_.Input(), Fault);
}

TEST_F(QtSerialPortTest, SaysWhyItDoesNotOpen) {
  OpenNewLine();
  QtSerialPort second(directory_);
  EXPECT_EQ(second.Open(kSetup), line_.Device() + " is in use by another program");
  EXPECT_TRUE(port_.PortOpen());
  for (const char* settings : {"0,N,8,1", ",N,8,1", "57600", "57600,N,9,1", "57600,X,8,1"}) {
    EXPECT_NE(port_.Open({.settings = settings}), std::nullopt) << settings;
  }
  EXPECT_EQ(port_.Open({.settings = "57600,N,8,1", .comm_port = 7}),
            "There is no serial port 7 on this computer");
  ASSERT_EQ(chmod(line_.Device().c_str(), 0), 0);
  const OrdinaryUser user;
  EXPECT_EQ(port_.Open(kSetup), line_.Device() +
                                    " may only be used by the members of the group \"" +
                                    QFileInfo(directory_.device).group().toStdString() + '"');
  EXPECT_FALSE(port_.PortOpen());
}

TEST_F(QtSerialPortTest, NamesALockThatADeadProgramOfAnotherUserHasLeft) {
  OpenNewLine();
  port_.Close();
  QProcess program;
  program.start("true", QStringList());
  ASSERT_TRUE(program.waitForStarted());
  const QByteArray dead = QByteArray::number(program.processId());
  ASSERT_TRUE(program.waitForFinished());
  const QString path = QString("%1/LCK..%2")
                           .arg(QFileInfo("/var/lock").canonicalFilePath(),
                                directory_.device.mid(5).replace('/', '_'));
  QFile lock(path);
  ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
  lock.write(dead + "\ntrue\n" + QSysInfo::machineHostName().toLocal8Bit() + '\n');
  lock.close();
  std::optional<std::string> expected;  // a lock of one's own is taken over
  if (geteuid() == 0) {
    expected = line_.Device() + " is locked by " + path.toStdString() +
               ", whose owner no longer runs. To free it, type: sudo rm " + path.toStdString();
  }
  {
    const OrdinaryUser user;
    EXPECT_EQ(port_.Open(kSetup), expected);
  }
  port_.Close();
  QFile::remove(path);
}

TEST_F(QtSerialPortTest, PassesEveryByteWhileSoftwareFlowControlIsSuspended) {
  OpenNewLine();
  port_.SetHandshaking(Handshaking::kRts);
  EXPECT_EQ(SoftwareFlowControl(), 0U);
  EXPECT_NE(line_.Settings().c_cflag & CRTSCTS, 0U);
  std::string packet;
  for (int code = 0; code < 256; ++code) packet += static_cast<char>(code);
  ASSERT_TRUE(line_.Send(packet));
  EXPECT_EQ(ReadAtLeast(packet.size()), packet);
  EXPECT_GE(events_, 1);
  port_.Output(packet);
  EXPECT_EQ(line_.Receive(0ms), packet) << "must be on the line when Output returns";
  port_.SetHandshaking(Handshaking::kRtsXonXoff);
  EXPECT_EQ(SoftwareFlowControl(), tcflag_t{IXON | IXOFF});
}

TEST_F(QtSerialPortTest, StoppedLineHoldsTextUntilSoftwareFlowControlIsSuspended) {
  OpenNewLine();
  ASSERT_TRUE(line_.Send("\x13"));
  QTest::qWait(20);
  port_.Output("held ");
  QTest::qWait(50);
  EXPECT_EQ(line_.Receive(0ms), "");
  EXPECT_TRUE(port_.PortOpen()) << "a line that is stopped is not lost";
  port_.SetHandshaking(Handshaking::kRts);
  port_.Output("gone");
  EXPECT_EQ(line_.Receive(100ms), "held gone");
}

TEST_F(QtSerialPortTest, InputHasAllThatWaitsWithoutTheEventLoop) {
  OpenNewLine();
  const std::string frames(3000, 'F');
  for (const std::string& sent : {std::string("F441041010A000002A2\r"), frames, std::string()}) {
    ASSERT_TRUE(line_.Send(sent));
    clock_.Sleep(20ms);
    EXPECT_EQ(port_.Input(), sent);
  }
  clock_.ServeEvents(20ms);
  EXPECT_EQ(events_, 0) << "what has been read raises no receive event";
  ASSERT_TRUE(line_.Send("late"));
  EXPECT_EQ(ReadAtLeast(4), "late");
  EXPECT_EQ(events_, 1);
}

// The event loop tells of characters that a handler before has read already. QSerialPort then makes
// of an error what it finds in errno.
TEST_F(QtSerialPortTest, CharactersReadAheadOfTheirEventAreNoLoss) {
  for (const int left_behind : {0, EAGAIN, EIO}) {
    OpenNewLine();
    ASSERT_TRUE(line_.Send("first"));
    const auto read = [&] {
      EXPECT_EQ(port_.Input(), "first");
      errno = left_behind;
    };
    QMetaObject::invokeMethod(qApp, read, Qt::QueuedConnection);
    QTest::qWait(50);
    EXPECT_EQ(losses_, 0);
    ASSERT_TRUE(port_.PortOpen());
    ASSERT_TRUE(line_.Send("second"));
    EXPECT_EQ(ReadAtLeast(6), "second");
  }
}

TEST_F(QtSerialPortTest, LossClosesOnceWithoutSpinning) {
  const std::function<void()> ways[] = {[&] { line_.HangUp(); },
                                        [&] {
                                          QTimer::singleShot(30ms, qApp, [&] { line_.HangUp(); });
                                          EXPECT_THROW((void)ReadAtLeast(1), Fault);
                                        },
                                        [&] {
                                          line_.HangUp();
                                          EXPECT_THROW((void)port_.Input(), Fault);
                                          EXPECT_EQ(losses_, 0);
                                        },
                                        [&] {
                                          line_.HangUp();
                                          EXPECT_THROW(port_.Output("F\r"), Fault);
                                          EXPECT_EQ(losses_, 0) << "never from within a call";
                                        }};
  for (const auto& lose : ways) {
    OpenNewLine();
    losses_ = 0;
    const auto cpu_before = CpuTime();
    lose();
    QTest::qWait(300);
    EXPECT_LT(CpuTime() - cpu_before, 60ms);
    EXPECT_EQ(losses_, 1);
  }
  // The loss of an earlier opening leaves the next alone.
  losses_ = 0;
  OpenNewLine();
  ways[3]();
  OpenNewLine();
  QTest::qWait(50);
  EXPECT_TRUE(port_.PortOpen() && losses_ == 0);
}

}  // namespace
}  // namespace kalde2
