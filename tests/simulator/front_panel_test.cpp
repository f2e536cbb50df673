#include "simulator/front_panel.h"

#include <gtest/gtest.h>

namespace kalde2 {
namespace {

struct FrontPanelTest : testing::Test {
  SimulatedUnit unit{{}};
  FrontPanel panel{unit};
};

TEST_F(FrontPanelTest, ChangesValuesAndSaysSoOnTheLine) {
  constexpr std::pair<const char*, const char*> kFrames[] = {
      {"  set 0x10A   2\r", "F441041010A000002A2\r"},
      {"set 131 4", "F44104100830000051D\r"},      // the line carries one more
      {"set 185 40 48", "F44304100B900002896\r"},  // for one source
      {"source 64", "F4410410116000040EC\r"},
      {"set 185 -1", "F44404100B9FFFFFF7B\r"},  // for the source just chosen
  };
  for (const auto& [command, frame] : kFrames) EXPECT_EQ(panel.Execute(command).frame, frame);
  constexpr std::pair<const char*, const char*> kTexts[] = {
      {"get 266", "2"}, {"get 131", "4"}, {"get 185 48", "40"}, {"get 185", "-1"}};
  for (const auto& [command, text] : kTexts) EXPECT_EQ(panel.Execute(command).text, text);
}

TEST_F(FrontPanelTest, RefusesWhatItCannotDoAndSendsNothing) {
  for (const char* command : {"jump", "set 266", "set 129 1", "set 414 1", "set 266 x",
                              "set 266 8388608", "set 185 1 256", "set 185 1 2 3", "get 1",
                              "source -1", "source 256", "baud fast", "fault loud", "quit now"}) {
    const FrontPanelResult result = panel.Execute(command);
    EXPECT_TRUE(!result.text.empty() && result.frame.empty()) << command;
    EXPECT_EQ(result.order, LineOrder::kNone) << command;
  }
}

}  // namespace
}  // namespace kalde2
