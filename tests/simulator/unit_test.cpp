#include "simulator/unit.h"

#include <gtest/gtest.h>

namespace kalde2 {
namespace {

TEST(SimulatedUnit, AnswersInTheFrameLayoutOfTheLine) {
  SimulatedUnit unit({});
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"F84104100C499\r", "FC4104100C4000023FC\r"},        // product type 35
      {"F84104100D8??\r", "FC4104100D800006A57\r"},        // 106 resolutions, a count query
      {"F041041010A00000262\r", "F441041010A000002A2\r"},  // a write
      {"F841041010AE0\r", "FC41041010A00000222\r"},        // read back
      {"F0410410087FFFFFFD9\r", "F4410410087FFFFFF19\r"},  // -1
      {"F0410410083000005DD\r", "F44104100830000051D\r"},  // resolution 4 goes as 5
      {"F841041008358\r", "FC4104100830000059D\r"},        // and comes as 5
  };
  for (const auto& [request, reply] : kCases) {
    const std::vector<LineAction> actions = unit.Receive(request);
    ASSERT_EQ(actions.size(), 1U) << request;
    EXPECT_EQ(actions[0].bytes, reply);
  }
  EXPECT_EQ(unit.ProblemCount(), 0);
}

}  // namespace
}  // namespace kalde2
