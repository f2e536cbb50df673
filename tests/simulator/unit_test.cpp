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
      {"F84104100D800AD\r", "16 characters instead of 14"},
      {"F841041008156\r", "no address 129"},
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
