#include "simulator/front_panel.h"

#include <gtest/gtest.h>

namespace kalde2 {
namespace {

class FrontPanelTest : public testing::Test {
 protected:
  /// What a line brings: the frame that is sent, or else the text.
  std::string Told(std::string_view line) {
    const FrontPanelResult result = panel_.Execute(line);
    return result.frame.empty() ? result.text : result.frame;
  }
  bool Tells(std::string_view line, std::string_view text) {
    return Told(line).find(text) != std::string::npos;
  }

  SimulatedUnit unit_{{}};
  FrontPanel panel_{unit_};
};

TEST_F(FrontPanelTest, TakesNamesWhereItTakesAddresses) {
  const std::string pan_is_80 = "F441041009F00005084\r";
  EXPECT_EQ(Told("set 159 80"), pan_is_80);
  EXPECT_EQ(Told("  set zoom  PAN h 0x50\r"), pan_is_80);
  EXPECT_EQ(Told("get Zoom Pan H"), "80");
  EXPECT_EQ(Told("get Zoom"), "100") << "the same beginning";
  EXPECT_EQ(Told("set Swap Fore / Background 1 17"), "F4411410144000001DC\r");
  EXPECT_EQ(Told("fault refuse=Zoom Pan H"), "faults: refuse=159");
  EXPECT_EQ(Told("fault ignore=autoset"), "faults: refuse=159\nignore=254");

  EXPECT_EQ(Told("set Hue 5 48"), "F44304100BA00000574\r");
  EXPECT_EQ(Told("get hue 48"), "5");
  EXPECT_EQ(Told("get hue"), "0") << "of the source that is set up";
}

TEST_F(FrontPanelTest, ListsWhatTheUnitHolds) {
  (void)Told("set Lock mode 2");
  EXPECT_EQ(Told("list LOCK"),
            "  266  Lock mode                2 (Lock+Mix)\n"
            "  329  Lock source              16 (RGB 1)");
  (void)Told("source 48");
  (void)Told("set hue -7");
  EXPECT_EQ(Told("list hue"), "  186  Hue                      -7  [-90..90]  of source 48");
  EXPECT_TRUE(Tells("list", "  196  Product type             35\n"));
  for (const int address : unit_.Words().NamedAddresses()) {
    EXPECT_EQ(unit_.FindAddress(unit_.Words().Name(address)), address) << "no name twice";
  }
}

TEST_F(FrontPanelTest, SaysWhatWouldHaveBeenRight) {
  const std::pair<const char*, const char*> cases[] = {
      {"lits", "no command \"lits\"; try help"},
      {"get", "use: get PARAMETER [SOURCE]"},
      {"set Zoom", "use: set PARAMETER VALUE [SOURCE]"},
      {"set Zom 100 16", "no parameter \"Zom\"; use an address of 130..413 or a name"},
      {"get 129", "no parameter \"129\""},
      {"set Zoom full", "a value is -8388608..8388607, not \"full\""},
      {"set Product type 22", "Product type can only be read"},
      {"source 256", "a source is 0..255; fitted: 16 (RGB 1), 17 (RGB 2), 48 (CV 1)"},
      {"list nothing of this", "no parameter has \"nothing of this\" in its name"},
      {"fault loud", "there are silent, silent-for=N"},
      {"fault late", "use late=MS"},
      {"fault refuse=Zom", "ADDRESS is 130..413 or the name of a parameter"},
      {"baud fast", "a rate is 1..4000000 bits a second, or any"},
  };
  for (const auto& [line, right] : cases) EXPECT_TRUE(Tells(line, right)) << Told(line);
  EXPECT_EQ(Told("?"), Told("help"));
  EXPECT_EQ(panel_.Execute("exit").order, LineOrder::kQuit);
}

}  // namespace
}  // namespace kalde2
