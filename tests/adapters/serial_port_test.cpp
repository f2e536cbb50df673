#include "adapters/qt_serial_port.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

#include "adapters/qt_clock.h"
#include "link/fault.h"
#include "tests/adapters/test_line.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;
using namespace std::chrono_literals;

class FakeDirectory : public PortDirectory {
 public:
  [[nodiscard]] QString DeviceFor(int number) const override { return devices.value(number); }
  [[nodiscard]] QStringList PresentPorts() const override { return {}; }

  QMap<int, QString> devices;
};

class Recorder : public PortListener {
 public:
  void MSComm1_OnComm() override { ++events; }
  void PortLost(const std::string& reason) override {
    ++losses;
    was_closed = !port->PortOpen();
    EXPECT_NE(reason, "");
  }

  SerialPort* port = nullptr;
  int events = 0;
  int losses = 0;
  bool was_closed = false;
};

class QtSerialPortTest : public testing::Test {
 protected:
  QtSerialPortTest() {
    directory_.devices[1] = QString::fromStdString(line_.Device());
    recorder_.port = &port_;
    port_.SetListener(&recorder_);
  }

  [[nodiscard]] static tcflag_t Software(const TestLine& line) {
    return line.Settings().c_iflag & (IXON | IXOFF | IXANY);
  }

  /// Reads until `size` characters are there or a second has passed.
  std::string ReadAtLeast(std::size_t size) {
    std::string text;
    const auto deadline = clock_.Monotonic() + 1s;
    while (text.size() < size && clock_.Monotonic() < deadline) {
      text += port_.Input();
      if (text.size() < size) clock_.ServeEvents(deadline - clock_.Monotonic());
    }
    return text;
  }

  TestLine line_;
  FakeDirectory directory_;
  Recorder recorder_;
  QtClock clock_;
  QtSerialPort port_{directory_};
};

TEST_F(QtSerialPortTest, OpensWithBothFlowControlsAndIsUselessClosed) {
  ASSERT_EQ(port_.Open({.settings = "38400,N,8,1"}), std::nullopt);
  const termios settings = line_.Settings();
  EXPECT_EQ(cfgetospeed(&settings), speed_t{B38400});
  EXPECT_EQ(settings.c_cflag & (CSIZE | PARENB | CSTOPB), tcflag_t{CS8});
  EXPECT_NE(settings.c_cflag & CRTSCTS, 0U);
  EXPECT_EQ(Software(line_), tcflag_t{IXON | IXOFF});
  EXPECT_NE(port_.findChild<QSerialPort*>("MSComm1"), nullptr);

  port_.Close();
  port_.Close();
  EXPECT_FALSE(port_.PortOpen());
  EXPECT_THROW(port_.Output("x"), Fault);
  EXPECT_THROW((void)port_.Input(), Fault);
  port_.SetHandshaking(Handshaking::kRts);
  EXPECT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
}

TEST_F(QtSerialPortTest, SaysWhyItDoesNotOpen) {
  for (const char* settings : {"0,N,8,1", ",N,8,1", "57600", "57600,N,9,1", "57600,X,8,1"}) {
    EXPECT_NE(port_.Open({.settings = settings}), std::nullopt) << settings;
  }
  EXPECT_EQ(port_.Open({.settings = "57600,N,8,1", .comm_port = 7}),
            "There is no serial port 7 on this computer");
  EXPECT_FALSE(port_.PortOpen());

  QTemporaryDir folder;
  const QString link = folder.filePath("1");
  ASSERT_TRUE(QFile::link(directory_.devices[1], link));
  FakeDirectory through_link;
  through_link.devices[1] = link;
  QtSerialPort second(through_link);
  ASSERT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
  EXPECT_EQ(second.Open({.settings = "57600,N,8,1"}),
            link.toStdString() + " is in use by another program");
  EXPECT_TRUE(port_.PortOpen());
}

TEST_F(QtSerialPortTest, NamesTheGroupThatMayUseTheDevice) {
  ASSERT_EQ(chmod(line_.Device().c_str(), 0), 0);
  constexpr uid_t kNobody = 65534;
  const uid_t user = geteuid();
  // Nothing is forbidden to root.
  ASSERT_EQ(user == 0 ? setresuid(kNobody, kNobody, 0) : 0, 0);
  const std::optional<std::string> problem = port_.Open({.settings = "57600,N,8,1"});
  ASSERT_EQ(user == 0 ? setresuid(0, 0, 0) : 0, 0);
  ASSERT_TRUE(problem.has_value());
  EXPECT_NE(problem->find('"' + QFileInfo(directory_.devices[1]).group().toStdString() + '"'),
            std::string::npos)
      << *problem;
}

TEST_F(QtSerialPortTest, CarriesTextBothWays) {
  ASSERT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
  port_.Output("F84100000C40000\r");
  EXPECT_EQ(line_.Receive(0ms), "F84100000C40000\r") << "must be on the line when Output returns";
  ASSERT_TRUE(line_.Send("F4410400\r"));
  EXPECT_EQ(ReadAtLeast(9), "F4410400\r");
  EXPECT_GE(recorder_.events, 1);
  EXPECT_EQ(port_.Input(), "");
}

TEST_F(QtSerialPortTest, PassesEveryByteWhileSoftwareFlowControlIsSuspended) {
  ASSERT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
  port_.SetHandshaking(Handshaking::kRts);
  EXPECT_EQ(Software(line_), 0U);
  EXPECT_NE(line_.Settings().c_cflag & CRTSCTS, 0U);
  std::string packet;
  for (int code = 0; code < 256; ++code) packet += static_cast<char>(code);
  ASSERT_TRUE(line_.Send(packet));
  EXPECT_EQ(ReadAtLeast(packet.size()), packet);
  port_.Output(packet);
  EXPECT_EQ(line_.Receive(100ms), packet);
  port_.SetHandshaking(Handshaking::kRtsXonXoff);
  EXPECT_EQ(Software(line_), tcflag_t{IXON | IXOFF});
}

TEST_F(QtSerialPortTest, StoppedLineHoldsTextUntilSoftwareFlowControlIsSuspended) {
  ASSERT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
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

TEST_F(QtSerialPortTest, LossClosesOnceWithoutSpinning) {
  const auto wait_for_reply = [&] {
    QTimer::singleShot(30ms, qApp, [&] { line_.HangUp(); });
    port_.Output("F\r");
    EXPECT_THROW((void)ReadAtLeast(1), Fault);
  };
  const auto write_after_hang_up = [&] {
    line_.HangUp();
    EXPECT_THROW(port_.Output("F\r"), Fault);
    EXPECT_EQ(recorder_.losses, 0) << "never from within a call";
  };
  const auto do_nothing = [&] { line_.HangUp(); };
  for (const std::function<void()>& lose :
       {std::function<void()>(do_nothing), std::function<void()>(wait_for_reply),
        std::function<void()>(write_after_hang_up)}) {
    line_.Reopen();
    directory_.devices[1] = QString::fromStdString(line_.Device());
    recorder_.losses = 0;
    ASSERT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
    const auto cpu_before = CpuTime();
    lose();
    QTest::qWait(300);
    EXPECT_LT(CpuTime() - cpu_before, 60ms);
    EXPECT_EQ(recorder_.losses, 1);
    EXPECT_TRUE(recorder_.was_closed);
  }
}

TEST_F(QtSerialPortTest, LossOfAnEarlierOpeningLeavesTheNextAlone) {
  ASSERT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
  line_.HangUp();
  EXPECT_THROW(port_.Output("F\r"), Fault);
  line_.Reopen();
  directory_.devices[1] = QString::fromStdString(line_.Device());
  ASSERT_EQ(port_.Open({.settings = "57600,N,8,1"}), std::nullopt);
  QTest::qWait(50);
  EXPECT_TRUE(port_.PortOpen());
  EXPECT_EQ(recorder_.losses, 0);
}

}  // namespace
}  // namespace kalde2
