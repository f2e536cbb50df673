#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/frame_codec.h"
#include "link/source_codes.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kColumnElement = 278;

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
    display.log.clear();
    link.ParseReply(reply);
    return link.LastReply().Valid;
  }
};

TEST_F(ApplyReply, ShowsEachAddressInItsWay) {
  const struct {
    int address;
    std::int32_t value;
    std::vector<std::string> log;
  } cases[] = {
      {159, 50, {"value 159 50", "refresh on"}},
      {259, 300, {"value 259 300", "refresh on"}},
      {134, 150, {"value 259 150", "refresh on"}},  // overall scales move the horizontal controls
      {135, 80, {"value 260 80", "refresh on"}},
      {258, 0, {"aspect 0", "value 258 0", "refresh on"}},
      {258, -1, {"aspect 1", "value 258 -1", "refresh on"}},
      {266, 2, {"lock 2", "refresh on"}},
      {266, 7, {"lock 7", "refresh on"}},
  };
  for (const auto& [address, value, log] : cases) {
    EXPECT_TRUE(Parse(Reply(0x10, static_cast<std::int16_t>(address), value)));
    EXPECT_EQ(display.log, log);
    EXPECT_EQ(values.ParamValue(address - kFirstAddress), value);
  }
  // An overall scale becomes the horizontal one too.
  for (const int element : {4, 129}) EXPECT_EQ(values.ParamValue(element), 150);
  for (const int element : {5, 130}) EXPECT_EQ(values.ParamValue(element), 80);
}

TEST_F(ApplyReply, PerSourceValueGoesToTheSourceOfTheReply) {
  const std::pair<std::int16_t, int> slots[] = {
      {138, 0}, {182, 1}, {183, 2},  {184, 3},  {185, 4},  {186, 5},  {187, 6}, {188, 7},
      {193, 8}, {197, 9}, {198, 10}, {199, 11}, {208, 12}, {222, 13}, {223, 14}};
  const std::int16_t codes[] = {16, 17, 18, 48, 49, 50, 64, 65, 66};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(SourceIndexToCode(i), codes[i]);
  values.SetParamValue(kColumnElement, 200);
  for (const auto& [address, slot] : slots) {
    for (int column = 0; column < 9; ++column) {
      const std::int32_t value = address * 10 + column;
      EXPECT_TRUE(Parse(Reply(codes[column], address, value)));
      EXPECT_EQ(values.SourceValue(slot, column), value) << address;
    }
    EXPECT_EQ(values.SourceValue(slot, 200), 0) << address;
  }
  EXPECT_TRUE(Parse(Reply(99, 185, 7)));  // an unknown source counts as the first
  EXPECT_EQ(values.SourceValue(4, 0), 7);
}

TEST_F(ApplyReply, SourceLossGoesToTheColumnThatElement278Holds) {
  values.SetParamValue(ValueStore::kCurrentSource, 0x30);
  values.SetParamValue(kColumnElement, 7);
  EXPECT_TRUE(Parse(Reply(0x12, 163, 4)));
  EXPECT_EQ(values.SourceValue(15, 7), 4);
  EXPECT_EQ(values.GetParamValue(163 - 130), 0);  // which is read at the selected source
  values.SetSourceValue(15, 3, 2);
  EXPECT_EQ(values.GetParamValue(163 - 130), 2);

  values.SetParamValue(kColumnElement, 256);
  EXPECT_FALSE(Parse(Reply(0x12, 163, 4)));
  EXPECT_THAT(display.log, IsEmpty());
}

TEST_F(ApplyReply, FaultsLeaveTheReplyInvalid) {
  for (const int address : {129, 414, 511}) {
    EXPECT_FALSE(Parse(Reply(0x10, static_cast<std::int16_t>(address), 1))) << address;
    EXPECT_THAT(display.log, IsEmpty());
  }
  display.faulty = 159;
  EXPECT_FALSE(Parse(Reply(0x10, 159, 50)));
  EXPECT_EQ(values.ParamValue(29), 50);
  EXPECT_THAT(display.log, IsEmpty());
  EXPECT_FALSE(Parse("F44\r"));
}

TEST_F(ApplyReply, OtherGroupsAndDetectionAreLeftToTheCaller) {
  EXPECT_TRUE(Parse(Reply(0x10, 159, 50, 0x42, 0)));
  EXPECT_TRUE(Parse(Reply(0x10, 159, 50, 0x41, 1)));
  link.SetDetectionInProgress(true);
  EXPECT_TRUE(Parse(Reply(0x10, 159, 51)));
  EXPECT_EQ(link.LastReply().Value, 51);
  EXPECT_EQ(values.ParamValue(29), 0);
}

TEST_F(ApplyReply, StoreReadsTheSelectedSource) {
  values.SetSourceValue(4, 0, 11);
  values.SetSourceValue(4, 8, 22);
  EXPECT_EQ(values.GetParamValue(185 - 130), 11);
  EXPECT_EQ(values.ParamValue(ValueStore::kCurrentSource), 0x10);
  values.SetParamValue(ValueStore::kCurrentSource, 66);
  EXPECT_EQ(values.GetParamValue(185 - 130), 22);
  values.SetParamValue(ValueStore::kCurrentSource, 80);  // no code of the table
  EXPECT_EQ(values.GetParamValue(185 - 130), 11);

  LoadProduct(60);  // no parameters: nothing is per source any more
  values.SetParamValue(185 - 130, 33);
  EXPECT_EQ(values.GetParamValue(185 - 130), 33);
}

TEST_F(ApplyReply, StoreChecksItsBounds) {
  for (const int index : {-1, 284}) {
    EXPECT_THROW((void)values.GetParamValue(index), Fault);
    EXPECT_THROW(values.StoreParamValue(index, 0), Fault);
  }
  EXPECT_THROW((void)values.ParamValue(414), Fault);
  EXPECT_THROW((void)values.SourceValue(21, 0), Fault);
  EXPECT_THROW(values.SetSourceValue(20, 256, 1), Fault);
  for (const int index : {-1, 9}) EXPECT_EQ(SourceIndexToCode(index), 0);
}

}  // namespace
}  // namespace kalde2
