#include "adapters/relay.h"

#include <gtest/gtest.h>

#include <QSerialPort>
#include <QTest>

#include "adapters/qt_serial_port.h"
#include "tests/adapters/test_line.h"
#include "trace/tracing_port.h"

namespace kalde2 {
namespace {

/// A panel's port, a relay, and the line of a unit.
class RelayTest : public testing::Test {
 protected:
  RelayTest() {
    EXPECT_EQ(port_.Open({.settings = "57600,N,8,1", .handshaking = Handshaking::kRts}),
              std::nullopt);
    panel_.setPortName(QString::fromStdString(terminal_->Device()));
    EXPECT_TRUE(panel_.open(QIODevice::ReadWrite)) << panel_.errorString().toStdString();
  }

  static std::string AllBytes() {
    std::string bytes;
    for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
    return bytes;
  }

  [[nodiscard]] bool UnitGets(std::string_view bytes) {
    std::string got;
    return QTest::qWaitFor([&] { return (got += unit_.Receive({})).size() >= bytes.size(); }) &&
           got == bytes;
  }

  [[nodiscard]] bool PanelGets(std::string_view bytes) {
    std::string got;
    const auto has_all = [&] {
      return (got += panel_.readAll().toStdString()).size() >= bytes.size();
    };
    return QTest::qWaitFor(has_all) && got == bytes;
  }

  struct Directory : PortDirectory {
    explicit Directory(std::string path) : device(std::move(path)) {}
    [[nodiscard]] std::string DeviceFor(int /*number*/) const override { return device; }
    [[nodiscard]] std::vector<NumberedPort> PresentPorts() const override { return {}; }
    std::string device;
  };

  TestLine unit_;
  Directory directory_{unit_.Device()};
  QtSerialPort port_{directory_};
  std::vector<TraceEvent> events_;
  TracingPort tracing_{port_, [this](const TraceEvent& event) { events_.push_back(event); }};
  std::unique_ptr<PseudoTerminal> terminal_ = PseudoTerminal::Open().terminal;
  QSerialPort panel_;
  int losses_ = 0;
  std::string reason_;
  Relay relay_{*terminal_,
               tracing_,
               {[this] { ++losses_; }, [this](const std::string& reason) { reason_ = reason; }}};
};

TEST_F(RelayTest, PassesEveryByteBothWaysInOrderAndTellsOfIt) {
  std::string bytes;
  for (int i = 0; i < 8; ++i) {
    bytes = AllBytes() + bytes;
    panel_.write(bytes.data(), static_cast<qint64>(bytes.size()));
    EXPECT_TRUE(UnitGets(bytes));
    EXPECT_TRUE(unit_.Send(bytes));
    EXPECT_TRUE(PanelGets(bytes));
  }
  std::string traced[2];
  std::chrono::microseconds last{0};
  for (const TraceEvent& event : events_) {
    traced[event.direction == Direction::kToUnit ? 0 : 1] += event.bytes;
    EXPECT_GE(event.time, std::exchange(last, event.time));
  }
  EXPECT_TRUE(traced[0] == traced[1] && traced[0].size() == 36 * 256U);
  EXPECT_EQ(losses_, 0);
}

TEST_F(RelayTest, LivesOnWithAPanelThatDoesNotReadOrGoesAndTellsWhenTheLineIsLost) {
  panel_.close();
  const std::string bytes(1000, 'F');
  EXPECT_TRUE(QTest::qWaitFor([&] { return unit_.Send(bytes) && losses_ > 0; }));
  const auto before = CpuTime();
  QTest::qWait(200);
  EXPECT_LT(CpuTime() - before, std::chrono::milliseconds(20));

  EXPECT_TRUE(panel_.open(QIODevice::ReadWrite));
  panel_.clear();
  panel_.write("F");
  EXPECT_TRUE(UnitGets("F"));
  unit_.HangUp();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !reason_.empty(); }));
  EXPECT_EQ(reason_, directory_.device + " is gone");
}

}  // namespace
}  // namespace kalde2
