#include "link/frame_codec.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "link/fault.h"
#include "link/numbers.h"
#include "link/text_functions.h"

namespace kalde2 {
namespace {

using namespace std::string_literals;

TEST(FrameCodec, BuildsRequests) {
  const struct {
    ParameterRequest request;
    std::string_view frame;
  } cases[] = {
      {{false, 0x10, 2, 0x10A}, "F041041010A00000262\r"},
      {{false, 0x10, 0x1234567, 0x87}, "F0410410087234567AB\r"},
      // The unit counts resolutions from 1: writes are one up, reads carry no value.
      {{false, 0x10, 4, 131}, "F0410410083000005DD\r"},
      {{false, 0x10, -1, 131}, "F0410410083000000D8\r"},
      {{true, 0x10, 4, 131}, "F841041008358\r"},
      // The high digit is never more than 1, and the low ones are not padded.
      {{true, 0x10, 0, 512}, "F8410410100D6\r"},
      {{true, 0x10, 0, 8}, "F841041008DD\r"},
      {{true, 0x05, 0, 0xD8, 0x7, 3}, "F8405730D811\r"},
  };
  for (const auto& [request, frame] : cases) {
    EXPECT_EQ(HexToWire(BuildRequest(request)), frame);
  }
}

TEST(FrameCodec, ChecksumKeepsTheLastTwoDigitsOfA16BitSum) {
  const std::string longest = "F" + std::string(2 * 128, 'F');  // 128 * 255 = 0x7F80
  for (const auto& [frame, sum] : {std::pair{"F05"s, "5"}, {"F??10", "10"}, {longest, "80"}}) {
    EXPECT_EQ(FrameChecksum(TextToHex(frame)), TextToHex(sum));
  }
  EXPECT_THROW((void)FrameChecksum(TextToHex(longest + "FF")), Fault);
}

TEST(FrameCodec, DecodesRepliesByPosition) {
  const struct {
    std::string_view reply;
    std::tuple<int, int, int, int, int> fields;  // address, index, source, group, value
  } cases[] = {
      {"F441041010A000002A2\r", {266, 0, 16, 65, 2}},
      {"F4430410087FFFFFF00\r", {135, 0, 48, 65, -1}},
      {"F4430FFA087001001??\r", {135, 10, 48, 255, 4097}},
      {"F4410410087001002??\r", {135, 0, 16, 65, -16773118}},
      {"F4410410083000005??\r", {131, 0, 16, 65, 4}},
      {"F4410410083001002??\r", {131, 0, 16, 65, 4097}},  // one down before the sign is looked at
      {"F441041020A000002??\r", {267, 0, 16, 65, 2}},     // 2 + 255 + 0x0A
      {"F44x?41z00A00x002??\r", {10, 0, 0, 65, 0}},       // what is no hex gives 0
      {"F4410410\r", {0, 0, 16, 65, 0xF44104 - 0x1000000}},  // the shortest that holds a value
  };
  for (const auto& [reply, fields] : cases) {
    ReplyRecord record;
    DecodeReply(reply, record);
    const auto& [group, index, address, value, source, valid] = record;
    EXPECT_EQ(std::tuple(address, index, source, group, value), fields) << reply;
  }
  ReplyRecord record;
  for (const auto* reply : {"", "\r", "F441234\r"}) EXPECT_THROW(DecodeReply(reply, record), Fault);
}

TEST(FrameCodec, TellsRefusalsAndCompletePackets) {
  for (const auto* error : {"F0000\r", "xF0000\r"}) EXPECT_TRUE(IsErrorReply(error));
  for (const auto* normal : {"F0000AB\r", "F000\r"}) EXPECT_FALSE(IsErrorReply(normal));

  const std::string longest = "S\xFF" + std::string(255, 'S');
  EXPECT_EQ(CountedPacket(longest), longest);
  for (const auto& packet : {"S\1A"s, "xS\1A"s, "\1xS\1AS\1B"s}) {
    EXPECT_EQ(CountedPacket(packet), "S\1A");
  }
  // Three characters at least.
  for (const auto& part : {""s, "\1A"s, "S\0"s, "S\0AB"s, "S\2A"s, "xS\3AB"s}) {
    EXPECT_EQ(CountedPacket(part), "");
  }
}

TEST(TextFunctions, HexAndBinaryForms) {
  EXPECT_EQ(HexToText("4G41E"), "\0A"s);
  EXPECT_EQ(TwoHexDigits(0x1A2), "A2");
  EXPECT_EQ(TextToTwoHexCodes(" 1AB "), "4142");
  EXPECT_EQ(TextToTwoHexCodes(""), "30");
  const std::pair<const char*, const char*> binary[] = {
      {"1", "00000001"}, {"2", "00000010"},  {"3", "00000011"},   {"7FFE", "11111110"},
      {"", "00000000"},  {"0G", "00000000"}, {"FFFF", "00000-11"}};
  for (const auto& [hex, digits] : binary) EXPECT_EQ(HexToBinary(hex), digits) << hex;
  EXPECT_THROW((void)HexToBinary("10000"), Fault);
}

TEST(Numbers, NumberAtTheStartOfAText) {
  const std::pair<const char*, double> cases[] = {
      {"  12abc", 12}, {"-90", -90},    {"+5", 5}, {"1.5e2x", 150}, {"-.5", -.5},
      {"&H30", 48},    {" &hffG", 255}, {"&H", 0}, {"", 0},         {"abc", 0},
      {"inf", 0},      {"nan", 0},      {"-", 0},  {"+-5", 0},      {".", 0}};
  for (const auto& [text, value] : cases) EXPECT_EQ(NumericValue(text), value) << text;
  for (const auto* text : {"-1", " 1", "0x1", "123456789"}) EXPECT_EQ(HexValue(text), 0u) << text;
}

}  // namespace
}  // namespace kalde2
