#include "session/session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/unit.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Ending = OpenResult::Ending;

/// A session without a window, with a simulated unit at the other end.
class SessionTest : public testing::Test, private SessionEvents {
 protected:
  void ConnectUnit(int type) {
    unit = std::make_unique<SimulatedUnit>(
        UnitOptions{.product_type = type, .fitted_sources = {16, 48}});
    port.on_write = [this](std::string_view frame) {
      std::string answer;
      for (const LineAction& action : unit->Receive(frame)) answer += action.bytes;
      return answer;
    };
  }

  Ending Open() { return session.Open("57600", "1").ending; }

  FakePort port;
  FakeClock clock;
  FakeDisplay display;
  FakeProgress progress;
  OperatorQueue queue;
  Session session{port, clock, display, display, queue, *this};
  std::unique_ptr<SimulatedUnit> unit;
  std::vector<std::string> told;

 private:
  void PortOpened() override { told.emplace_back("open"); }
  void UnitFound(const Product& product) override { told.emplace_back(product.model_code); }
  void UnaskedArrived() override { told.emplace_back("unasked"); }
  void PortLost(const std::string& reason) override { told.push_back(reason); }
  void ShowStatus(const std::string& /*text*/) override {}
};

TEST_F(SessionTest, OpeningAsksForTheTypeAndChangesNothing) {
  port.Close();
  ConnectUnit(63);
  EXPECT_EQ(Open(), Ending::kOpened);
  EXPECT_TRUE(session.UnitConnected());
  EXPECT_EQ(session.ProductType(), 63);
  EXPECT_THAT(told, ElementsAre("open", "K2-6355"));
  EXPECT_THAT(port.written, ElementsAre("F84104100C499\r"));

  const TransferReport report = session.LoadTables(progress);
  EXPECT_TRUE(report.is_complete && report.asked == 118 && report.skipped.empty());
  for (const std::string& frame : port.written) EXPECT_EQ(frame.substr(0, 3), "F84");
  EXPECT_EQ(session.Unit().value_names.Item(kMainInputList, 1), "CV 1,48");

  port.Arrive(unit->ChangeAtFrontPanel(159, 16, 42));
  EXPECT_TRUE(session.ProcessUnasked());
  EXPECT_EQ(session.Unit().values.GetParamValue(IndexOf(159)), 42);
  port.HangUp();
  EXPECT_FALSE(session.UnitConnected());
  EXPECT_THAT(told, ElementsAre("open", "K2-6355", "unasked", "hung up"));
}

TEST_F(SessionTest, AnOpeningThatFailsSaysHowAndLeavesThePortClosed) {
  EXPECT_EQ(session.Open("57600", "99999").text, "There is no serial port 99999 on this computer");
  EXPECT_THAT(told, IsEmpty());
  clock.After(std::chrono::milliseconds(100), [this] { session.Close(); });
  EXPECT_EQ(Open(), Ending::kClosedMeanwhile);
  EXPECT_FALSE(session.UnitConnected());
}

}  // namespace
}  // namespace kalde2
