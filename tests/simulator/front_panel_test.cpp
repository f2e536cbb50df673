#include "simulator/front_panel.h"

#include <gtest/gtest.h>

namespace kalde2 {
namespace {

TEST(FrontPanel, ChangesValuesAndSaysSoOnTheLine) {
  SimulatedUnit unit({});
  FrontPanel panel(unit);
  struct Case {
    const char* command;
    const char* frame;
  };
  const Case cases[] = {
      {"set 266 2", "F441041010A000002A2\r"},
      {"  set 0x18E   1\r", "F441041018E00000125\r"},
      {"set 131 4", "F44104100830000051D\r"},      // the line carries one more
      {"set 185 40 48", "F44304100B900002896\r"},  // for one source
      {"source 64", "F4410410116000040EC\r"},
      {"set 185 -1", "F44404100B9FFFFFF7B\r"},  // for the source just chosen
  };
  for (const Case& item : cases) EXPECT_EQ(panel.Execute(item.command).frame, item.frame);
  EXPECT_EQ(panel.Execute("get 266").text, "2");
  EXPECT_EQ(panel.Execute("get 131").text, "4");
  EXPECT_EQ(panel.Execute("get 185 48").text, "40");
  EXPECT_EQ(panel.Execute("get 185").text, "-1");
  EXPECT_EQ(panel.Execute("get 278").text, "64");
}

TEST(FrontPanel, RefusesWhatItCannotDoAndSendsNothing) {
  SimulatedUnit unit({});
  FrontPanel panel(unit);
  for (const char* command : {"jump", "set", "set 266", "set 129 1", "set 414 1", "set 266 x",
                              "set 266 8388608", "set 185 1 256", "set 185 1 2 3", "get 1",
                              "source -1", "source 256", "baud fast", "fault loud", "quit now"}) {
    const FrontPanelResult result = panel.Execute(command);
    EXPECT_NE(result.text, "") << command;
    EXPECT_EQ(result.frame, "") << command;
    EXPECT_EQ(result.order, LineOrder::kNone) << command;
  }
  EXPECT_EQ(panel.Execute("").text, "");
}

TEST(FrontPanel, SwitchesFaultsAndTheLine) {
  SimulatedUnit unit({});
  FrontPanel panel(unit);
  (void)panel.Execute("fault silent");
  EXPECT_TRUE(unit.Receive("F84104100C499\r").empty());
  (void)panel.Execute("fault none");
  EXPECT_EQ(unit.Receive("F84104100C499\r").size(), 1U);
  EXPECT_EQ(panel.Execute("baud 9600").baud, 9600);
  EXPECT_EQ(panel.Execute("baud any").order, LineOrder::kSetBaud);
  EXPECT_EQ(panel.Execute("hang-up").order, LineOrder::kHangUp);
  EXPECT_EQ(panel.Execute("replug").order, LineOrder::kReplug);
  EXPECT_EQ(panel.Execute("quit").order, LineOrder::kQuit);
}

}  // namespace
}  // namespace kalde2
