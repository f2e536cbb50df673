#include "simulator/resolution_slots.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

TEST(ResolutionSlots, TheBuiltInTableIsPlausibleToItsEnd) {
  const std::vector<ResolutionSlot> slots = BuiltInResolutions(255);
  ASSERT_EQ(slots.size(), 255U);
  EXPECT_EQ(slots.front().name, "NTSC / 60Hz");
  EXPECT_EQ(slots[105].name, "2048 x 1536 60Hz");
  std::set<std::string> names;
  for (const ResolutionSlot& slot : slots) {
    EXPECT_TRUE(names.insert(slot.name).second && slot.name.size() <= 24U) << slot.name;
    EXPECT_GT(slot.h_total, slot.width + slot.h_sync) << slot.name;
    EXPECT_GT(slot.v_total, slot.height + slot.v_sync) << slot.name;
    EXPECT_TRUE(slot.h_freq > 10'000U && slot.h_freq < 200'000U) << slot.name;
  }
}

TEST(ResolutionFile, IsRefusedWhenItIsNoneOrTooLong) {
  const TempFolder folder;
  EXPECT_NE(ReadResolutionSlots("table.txt").problem, "") << "there is no file";
  std::string too_long =
      "Resolution Data File\r\n                        1\r\n2008 - 8 - 1\r\n\r\nName\r\n\r\n";
  for (int i = 0; i < 256; ++i) too_long += "x\r\n";
  for (const std::string& text : {std::string(), too_long}) {
    WriteText("table.txt", text);
    EXPECT_NE(ReadResolutionSlots("table.txt").problem, "");
  }
}

}  // namespace
}  // namespace kalde2
