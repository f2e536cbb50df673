#include "simulator/unit.h"

#include <gtest/gtest.h>

namespace kalde2 {
namespace {

class SimulatedUnitTest : public testing::Test {
 protected:
  /// Everything that the unit sends about the bytes, in one piece.
  std::string Answer(std::string_view bytes) {
    std::string reply;
    for (const LineAction& action : unit_.Receive(bytes)) reply += action.bytes;
    return reply;
  }

  /// A request from its body, which is the frame without "F" at the start and checksum at the end.
  std::string Request(const std::string& body) {
    return Answer('F' + body + BodyChecksum(body) + '\r');
  }

  /// Reads a parameter by the three digits of its address.
  std::int32_t Read(const std::string& address, const std::string& source = "10") {
    return ReadOwnReply(Request("84" + source + "410" + address)).value().value;
  }

  std::string meaning_;
  SimulatedUnit unit_{{},
                      [this](std::string_view, const std::string& text, bool) { meaning_ = text; }};
};

TEST_F(SimulatedUnitTest, AnswersInTheFrameLayoutOfTheLine) {
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"F84104100C499\r", "FC4104100C4000023FC\r"},        // product type 35
      {"F84104100D8??\r", "FC4104100D800006A57\r"},        // 106 resolutions, a count query
      {"F041041010A00000262\r", "F441041010A000002A2\r"},  // a write
      {"F841041010AE0\r", "FC41041010A00000222\r"},        // read back
      {"F0410410087FFFFFFD9\r", "F4410410087FFFFFF19\r"},  // -1
      {"F0410410083000005DD\r", "F44104100830000051D\r"},  // resolution 4 goes as 5
      {"F841041008358\r", "FC4104100830000059D\r"},        // and comes as 5
  };
  for (const auto& [request, reply] : kCases) EXPECT_EQ(Answer(request), reply);
  EXPECT_EQ(unit_.ProblemCount(), 0);
}

TEST_F(SimulatedUnitTest, RefusesAndReportsWhatIsWrong) {
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"F84104100D8AE\r", "checksum \"AE\" instead of \"AD\""},
      {"F84104100C4??\r", "checksum \"??\""},  // only the count query goes without
      {"F84104100d8AD\r", "\"d\" is no hex digit"},
      {"F84104200D8AD\r", "group \"42\""},
      {"F84104110D8BD\r", "index \"1\""},
      {"F84104102D8AF\r", "address digit \"2\""},
      {"F55104100D8AD\r", "command \"55\""},
      {"F84104100D800AD\r", "16 characters instead of 14"},
      {"F041041010A0002A2\r", "18 characters instead of 20"},
      {"F84\r", "not a request"},
      {"F841041008156\r", "no address 129"},
      {"F841041019E74\r", "no address 414"},
  };
  for (const auto& [request, problem] : kCases) {
    EXPECT_EQ(Answer(request), "F0000\r") << request;
    EXPECT_NE(meaning_.find(problem), std::string::npos) << request << ": " << meaning_;
  }
  EXPECT_EQ(unit_.ProblemCount(), static_cast<int>(std::size(kCases)));
}

TEST_F(SimulatedUnitTest, FindsRequestsInAnyPortionsAndBetweenNoise) {
  constexpr const char* kReply = "FC4104100C4000023FC\r";
  EXPECT_EQ(Answer("F84104"), "");
  EXPECT_EQ(Answer("100C499\r\x11\x13"), kReply);
  EXPECT_EQ(unit_.ProblemCount(), 0) << "flow control of the computer is no fault of the panel";
  EXPECT_EQ(Answer("x?SaF84104100C499\r"), kReply);
  EXPECT_EQ(unit_.ProblemCount(), 1);
  EXPECT_EQ(Answer("F8410"), "");
  unit_.DropPartialRequest();
  EXPECT_EQ(Answer("F84104100C499\r"), kReply);
  EXPECT_EQ(unit_.ProblemCount(), 2);
}

TEST_F(SimulatedUnitTest, AutosetIsBusyForSomeReadsAndThenHasAdjusted) {
  const std::int32_t left = Read("0B6");
  Request("04104100FE000001");
  EXPECT_EQ(Read("0FE"), 1);
  EXPECT_EQ(Read("0FE"), 1);
  EXPECT_EQ(Read("0B6"), left) << "still busy";
  EXPECT_EQ(Read("0FE"), 1);
  EXPECT_EQ(Read("0FE"), 0);
  EXPECT_NE(Read("0B6"), left);
  EXPECT_EQ(Read("0B6", "30"), left) << "other sources stay";
}

TEST_F(SimulatedUnitTest, ResetsAndRefusesWritesToWhatItOnlyTells) {
  Request("041041010A000002");
  Request("04104100C8000001");
  EXPECT_EQ(Read("10A"), 2) << "it stores";
  Request("04104100F1000001");
  EXPECT_EQ(Read("10A"), 0);
  for (const char* address : {"0C4", "0D8", "194", "195"}) {
    EXPECT_EQ(Request(std::string("0410410") + address + "000001"), "F0000\r") << address;
  }
}

TEST(SimulatedUnit, StartsWithValuesInTheRangesOfEveryProduct) {
  for (std::int32_t type = 22; type <= 71; ++type) {
    const SimulatedUnit unit({.product_type = type});
    for (const std::int16_t index : unit.Catalogue().ActiveParams()) {
      const ParamRecord& record = unit.Catalogue().Record(index);
      const std::int32_t value = unit.Value(index + 130, 0x10);
      EXPECT_TRUE(record.HasList || (value >= record.MinValue && value <= record.MaxValue))
          << type << record.Name;
    }
  }
}

TEST_F(SimulatedUnitTest, ExplainsFramesInTheWordsOfThePanel) {
  EXPECT_EQ(unit_.DescribeReply("F441041010A000002A2\r"), "Lock mode [266] is 2 (Lock+Mix)");
  EXPECT_EQ(unit_.DescribeReply("F4410410116000030DC\r"), "Setup Source [278] is 48 (CV 1)");
  EXPECT_EQ(unit_.DescribeReply("F0000\r"), "refused");
  Request("04304100B90000B5");
  EXPECT_EQ(meaning_, "sets Saturation [185] of source 48 to 181, outside 0..180");
}

TEST_F(SimulatedUnitTest, AnswersSlotQueriesWithWholePackets) {
  using namespace std::string_literals;
  // Slot 19, whose number is a flow-control character: 800 x 600 at 75 Hz.
  EXPECT_EQ(Answer("S\x07\xA2\x01\x13\0\0\0?"s),
            "S\x25\xA2\x01\x13\0\0\0"
            "800 x 600 75Hz          "
            "\x01\x1B\xB7\0\x71\x02\0"s);
  EXPECT_EQ(Answer("S\x07\xA2\x01\x6A\0\0\0?"s), "") << "slot 106 of 106";
  EXPECT_EQ(Answer("S\x07\xA2\x01\x01\0\x02\0?"s), "") << "there is no page 2";
  EXPECT_EQ(unit_.ProblemCount(), 2);
}

}  // namespace
}  // namespace kalde2
