#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/frame_codec.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using testing::IsEmpty;

/// The unit's reply to a write: the request with command "44".
std::string Reply(std::int16_t source, std::int16_t address, std::int32_t value,
                  std::int16_t group = kParameterGroup, std::int16_t index = kParameterIndex) {
  std::string reply = HexToWire(BuildRequest({false, source, value, address, group, index}));
  reply[1] = '4';
  return reply;
}

class ApplyReply : public testing::Test, public LinkFixture {
 protected:
  ApplyReply() { LoadProduct(27); }

  bool Parse(const std::string& reply) {
    link.ParseReply(reply);
    return link.LastReply().Valid;
  }
};

TEST_F(ApplyReply, PerSourceValueGoesToTheSourceOfTheReply) {
  const std::int16_t slots[] = {138, 182, 183, 184, 185, 186, 187, 188,
                                193, 197, 198, 199, 208, 222, 223};
  const std::int16_t codes[] = {16, 17, 18, 48, 49, 50, 64, 65, 66};
  for (int slot = 0; slot < 15; ++slot) {
    for (int column = 0; column < 9; ++column) {
      const std::int32_t value = slots[slot] * 10 + column;
      EXPECT_TRUE(Parse(Reply(codes[column], slots[slot], value)));
      EXPECT_EQ(values.SourceValue(slot, column), value) << slots[slot];
    }
  }
  EXPECT_TRUE(Parse(Reply(99, 185, 7)));  // an unknown source counts as the first
  EXPECT_EQ(values.SourceValue(4, 0), 7);
}

TEST_F(ApplyReply, SourceLossGoesToTheColumnThatElement278Holds) {
  values.SetParamValue(278, 7);
  EXPECT_TRUE(Parse(Reply(0x12, 163, 4)));
  EXPECT_EQ(values.SourceValue(15, 7), 4);
  values.SetParamValue(278, 256);
  EXPECT_FALSE(Parse(Reply(0x12, 163, 4)));
}

TEST_F(ApplyReply, FaultsLeaveTheReplyInvalidAndOtherGroupsTheValuesAlone) {
  display.faulty = 159;
  for (const auto& reply : {Reply(0x10, 129, 50), Reply(0x10, 159, 50), Reply(0x10, 414, 50)}) {
    EXPECT_FALSE(Parse(reply)) << reply;
  }
  EXPECT_TRUE(Parse(Reply(0x10, 159, 51, 0x42, 0)));
  EXPECT_TRUE(Parse(Reply(0x10, 159, 51, 0x41, 1)));
  EXPECT_FALSE(Parse("F44\r"));
  EXPECT_EQ(values.ParamValue(29), 50);  // stored ahead of being shown
  EXPECT_THAT(display.log, IsEmpty());
}

}  // namespace
}  // namespace kalde2
