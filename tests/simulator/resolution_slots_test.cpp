#include "simulator/resolution_slots.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

namespace kalde2 {
namespace {

TEST(ResolutionSlots, TheBuiltInTableIsPlausibleToItsEnd) {
  const std::vector<ResolutionSlot> slots = BuiltInResolutions(255);
  ASSERT_EQ(slots.size(), 255U);
  EXPECT_EQ(slots.front().name, "NTSC / 60Hz");
  EXPECT_EQ(slots[25].name, "1024 x 768i 43Hz");
  EXPECT_EQ(slots[26].name, "1024 x 768 59.94Hz");
  EXPECT_EQ(slots[46].name, "1280 x 768 60Hz Rb");
  EXPECT_EQ(slots[105].name, "2048 x 1536 60Hz");
  std::set<std::string> names;
  for (const ResolutionSlot& slot : slots) {
    names.insert(slot.name);
    EXPECT_LE(slot.name.size(), 24U) << slot.name;
    EXPECT_GT(slot.h_total, slot.width + slot.h_sync) << slot.name;
    EXPECT_GT(slot.v_total, slot.height + slot.v_sync) << slot.name;
    EXPECT_GT(slot.h_freq, 10'000U) << slot.name;
    EXPECT_LT(slot.h_freq, 200'000U) << slot.name;
  }
  EXPECT_EQ(names.size(), slots.size());
  EXPECT_EQ(BuiltInResolutions(0).size(), 0U);
}

class ResolutionFile : public testing::Test {
 protected:
  void Write(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }
  void TearDown() override { std::filesystem::remove(path_); }

  const std::string path_ =
      (std::filesystem::temp_directory_path() /
       ("kalde2-slots-" +
        std::string(testing::UnitTest::GetInstance()->current_test_info()->name())))
          .string();
  const std::string header_ =
      "Resolution Data File\r\n                        1\r\n2008 - 8 - 1\r\n\r\nName\r\n\r\n";
};

TEST_F(ResolutionFile, IsServedWithoutTheEmptyEntryOfThePanel) {
  const std::string empty = std::string(34, ' ') + "0       0       0\r\n";
  Write(header_ + empty +
        "My wall                   RU      1280    1024    63981   0       1688    1066    "
        "112     3       248     38      NP      \r\n");
  const ResolutionReading reading = ReadResolutionSlots(path_);
  ASSERT_EQ(reading.resolutions.size(), 1U) << reading.problem;
  const ResolutionSlot& slot = reading.resolutions.front();
  EXPECT_EQ(slot.name, "My wall");
  EXPECT_EQ(slot.flags, 0x11);
  EXPECT_EQ(slot.width, 1280);
  EXPECT_EQ(slot.height, 1024);
  EXPECT_EQ(slot.h_freq, 63981U);
  EXPECT_EQ(slot.h_total, 1688);
  EXPECT_EQ(slot.v_total, 1066);
  EXPECT_EQ(slot.h_sync, 112);
  EXPECT_EQ(slot.v_sync, 3);
  EXPECT_EQ(slot.h_pos, 248);
  EXPECT_EQ(slot.v_pos, 38);
  EXPECT_EQ(slot.sync_code, 1);
}

TEST_F(ResolutionFile, IsRefusedWhenItIsNoneOrTooLong) {
  EXPECT_NE(ReadResolutionSlots(path_).problem, "");
  Write("");
  EXPECT_NE(ReadResolutionSlots(path_).problem, "");
  std::string text = header_;
  for (int i = 0; i < 256; ++i) text += "x\r\n";
  Write(text);
  EXPECT_NE(ReadResolutionSlots(path_).problem, "");
}

}  // namespace
}  // namespace kalde2
