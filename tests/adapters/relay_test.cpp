#include "adapters/relay.h"

#include <gtest/gtest.h>

#include <QSerialPort>
#include <QTest>

#include "adapters/qt_serial_port.h"
#include "tests/adapters/test_line.h"

namespace kalde2 {
namespace {

/// A panel's port, a relay, and the line of a unit.
class RelayTest : public testing::Test {
 protected:
  RelayTest() {
    directory_.line = &unit_;
    EXPECT_EQ(port_.Open({.settings = "57600,N,8,1", .handshaking = Handshaking::kRts}),
              std::nullopt);
    panel_.setPortName(QString::fromStdString(terminal_->Device()));
    EXPECT_TRUE(panel_.open(QIODevice::ReadWrite)) << panel_.errorString().toStdString();
  }

  /// Reads until as much has come, and tells whether it is this.
  template <typename Read>
  [[nodiscard]] static bool Gets(std::string_view bytes, Read read) {
    std::string got;
    return QTest::qWaitFor([&] { return (got += read()).size() >= bytes.size(); }) && got == bytes;
  }
  [[nodiscard]] bool UnitGets(std::string_view bytes) {
    return Gets(bytes, [this] { return unit_.Receive({}); });
  }
  [[nodiscard]] bool PanelGets(std::string_view bytes) {
    return Gets(bytes, [this] { return panel_.readAll().toStdString(); });
  }

  TestLine unit_;
  struct : PortDirectory {
    [[nodiscard]] std::string DeviceFor(int /*number*/) const override { return line->Device(); }
    [[nodiscard]] std::vector<NumberedPort> PresentPorts() const override { return {}; }
    TestLine* line = nullptr;
  } directory_;
  QtSerialPort port_{directory_};
  std::unique_ptr<PseudoTerminal> terminal_ = PseudoTerminal::Open().terminal;
  QSerialPort panel_;
  int losses_ = 0;
  std::string reason_;
  Relay relay_{*terminal_,
               port_,
               {[this] { ++losses_; }, [this](const std::string& reason) { reason_ = reason; }}};
};

TEST_F(RelayTest, PassesEveryByteBothWaysInOrder) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  for (int size = 1; size < 8; ++size, bytes += bytes.substr(0, 256)) {
    panel_.write(bytes.data(), static_cast<qint64>(bytes.size()));
    EXPECT_TRUE(UnitGets(bytes));
    EXPECT_TRUE(unit_.Send(bytes));
    EXPECT_TRUE(PanelGets(bytes));
  }
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
  const std::string unit_device = unit_.Device();
  unit_.HangUp();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !reason_.empty(); }));
  EXPECT_EQ(reason_, unit_device + " is gone");
}

}  // namespace
}  // namespace kalde2
