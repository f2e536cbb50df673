#include "simulator/unit.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace kalde2 {
namespace {

/// Everything that the unit sends about the bytes, in one piece.
std::string Answer(SimulatedUnit& unit, std::string_view bytes) {
  std::string reply;
  for (const LineAction& action : unit.Receive(bytes)) reply += action.bytes;
  return reply;
}

std::string Request(bool is_read, int source, int address, unsigned value = 0) {
  char body[32];
  if (is_read) {
    std::snprintf(body, sizeof body, "84%02X410%03X", source, address);
  } else {
    std::snprintf(body, sizeof body, "04%02X410%03X%06X", source, address, value);
  }
  return std::string("F") + body + BodyChecksum(body) + '\r';
}

std::int32_t ReadBack(SimulatedUnit& unit, int address, int source = 0x10) {
  const auto reply = ReadOwnReply(Answer(unit, Request(true, source, address)));
  EXPECT_TRUE(reply && reply->address == address && reply->source == source) << address;
  return reply ? reply->value : -1;
}

TEST(SimulatedUnit, AnswersInTheFrameLayoutOfTheLine) {
  struct Case {
    const char* request;
    const char* reply;
  };
  const Case cases[] = {
      {"F84104100C499\r", "FC4104100C4000023FC\r"},        // product type 35
      {"F84104100D8AD\r", "FC4104100D800006A57\r"},        // 106 resolutions
      {"F84104100D8??\r", "FC4104100D800006A57\r"},        // the same as a count query
      {"F041041010A00000262\r", "F441041010A000002A2\r"},  // a write
      {"F841041010AE0\r", "FC41041010A00000222\r"},        // read back
      {"F0410410087FFFFFFD9\r", "F4410410087FFFFFF19\r"},  // -1
      {"F0410410083000005DD\r", "F44104100830000051D\r"},  // resolution 4 goes as 5
      {"F841041008358\r", "FC4104100830000059D\r"},        // and comes as 5
  };
  SimulatedUnit unit({});
  for (const Case& item : cases) EXPECT_EQ(Answer(unit, item.request), item.reply);
  EXPECT_EQ(unit.Value(131, 0x10), 4);
  EXPECT_EQ(unit.Value(135, 0x10), -1);
  EXPECT_EQ(unit.ProblemCount(), 0);
}

TEST(SimulatedUnit, RefusesAndReportsWhatIsWrong) {
  struct Case {
    const char* request;
    const char* problem;
  };
  const Case cases[] = {
      {"F84104100D8AE\r", "checksum \"AE\" instead of \"AD\""},
      {"F84104100C4??\r", "checksum \"??\""},  // only the count query goes without
      {"F84104100d8AD\r", "\"d\" is no hex digit"},
      {"F84104200D8AD\r", "group \"42\""},
      {"F84104110D8BD\r", "index \"1\""},
      {"F84104120D8CD\r", "index \"2\""},
      {"F84104102D8AF\r", "address digit \"2\""},
      {"F55104100D8AD\r", "command \"55\""},
      {"F84104100D800AD\r", "16 characters instead of 14"},
      {"F041041010A0002A2\r", "18 characters instead of 20"},
      {"F84\r", "not a request"},
      {"F84104100055\r", "not a request"},
      {"F84104100816\r", "not a request"},
      {"F841041008156\r", "no address 129"},
      {"F841041019E74\r", "no address 414"},
  };
  std::string problem;
  SimulatedUnit unit({}, [&](std::string_view, const std::string& meaning, bool is_problem) {
    if (is_problem) problem = meaning;
  });
  for (const Case& item : cases) {
    problem.clear();
    EXPECT_EQ(Answer(unit, item.request), "F0000\r") << item.request;
    EXPECT_NE(problem.find(item.problem), std::string::npos) << item.request << ": " << problem;
  }
  EXPECT_EQ(unit.ProblemCount(), static_cast<int>(std::size(cases)));
}

TEST(SimulatedUnit, FindsRequestsInAnyPortionsAndBetweenNoise) {
  SimulatedUnit unit({});
  EXPECT_EQ(Answer(unit, "F84104"), "");
  EXPECT_TRUE(unit.HasPartialRequest());
  EXPECT_EQ(Answer(unit, "100C499"), "");
  EXPECT_EQ(Answer(unit, "\rF84104100C499\r"), "FC4104100C4000023FC\rFC4104100C4000023FC\r");
  EXPECT_EQ(Answer(unit, "\x11\x13"), "");
  EXPECT_EQ(unit.ProblemCount(), 0) << "flow control of the computer is no fault of the panel";

  EXPECT_EQ(Answer(unit, "x?SaF84104100C499\r"), "FC4104100C4000023FC\r");
  EXPECT_EQ(unit.ProblemCount(), 1);
  EXPECT_EQ(Answer(unit, "F8410"), "");
  unit.DropPartialRequest();
  EXPECT_EQ(Answer(unit, "F84104100C499\r"), "FC4104100C4000023FC\r");
  EXPECT_EQ(unit.ProblemCount(), 2);
}

TEST(SimulatedUnit, KeepsValuesPerSourceOnlyWhereTheProductDoes) {
  SimulatedUnit unit({});
  EXPECT_EQ(Answer(unit, Request(false, 0x30, 185, 40)).substr(0, 3), "F44");
  EXPECT_EQ(ReadBack(unit, 185, 0x30), 40);
  EXPECT_EQ(ReadBack(unit, 185, 0x40), 90);
  EXPECT_EQ(ReadBack(unit, 185, 0x00), 90);
  (void)Answer(unit, Request(false, 0x30, 266, 1));
  EXPECT_EQ(ReadBack(unit, 266, 0x10), 1);
}

TEST(SimulatedUnit, TellsItsFittedInputs) {
  SimulatedUnit unit({});
  struct Case {
    int source;
    int name_index;
  };
  for (const Case& item :
       {Case{16, 0}, {17, 1}, {18, 255}, {48, 48}, {64, 64}, {80, 80}, {90, 255}}) {
    EXPECT_EQ(ReadBack(unit, 405, item.source), item.name_index);
    EXPECT_EQ(ReadBack(unit, 404, item.source), item.source);
  }
  UnitOptions bare;
  bare.fitted_sources.clear();
  SimulatedUnit bare_unit(bare);
  for (int source = 0; source < 256; ++source) EXPECT_EQ(ReadBack(bare_unit, 405, source), 255);
}

TEST(SimulatedUnit, AutosetIsBusyForSomeReadsAndThenHasAdjusted) {
  SimulatedUnit unit({});
  EXPECT_EQ(ReadBack(unit, 254), 0);
  const std::int32_t left = ReadBack(unit, 182);
  const std::int32_t phase = ReadBack(unit, 145);
  (void)Answer(unit, Request(false, 0x10, 254, 1));
  EXPECT_EQ(ReadBack(unit, 254), 1);
  EXPECT_EQ(ReadBack(unit, 254), 1);
  EXPECT_EQ(ReadBack(unit, 182), left) << "still busy";
  EXPECT_EQ(ReadBack(unit, 254), 1);
  EXPECT_EQ(ReadBack(unit, 254), 0);
  EXPECT_NE(ReadBack(unit, 182), left);
  EXPECT_NE(ReadBack(unit, 145), phase);
  EXPECT_EQ(ReadBack(unit, 182, 0x30), left) << "other sources stay";

  // However often it runs, it stays in the ranges.
  for (int i = 0; i < 200 * 4; ++i) {
    if (i % 4 == 0) (void)Answer(unit, Request(false, 0x10, 254, 1));
    (void)ReadBack(unit, 254);
  }
  EXPECT_LE(ReadBack(unit, 182), 120);
  EXPECT_LE(ReadBack(unit, 145), 31);
}

TEST(SimulatedUnit, ResetsStoresAndRefusesWritesToWhatItOnlyTells) {
  SimulatedUnit unit({});
  (void)Answer(unit, Request(false, 0x10, 266, 2));
  EXPECT_EQ(Answer(unit, Request(false, 0x10, 200, 1)).substr(0, 3), "F44");
  EXPECT_EQ(ReadBack(unit, 266), 2);
  EXPECT_EQ(Answer(unit, Request(false, 0x10, 241, 1)).substr(0, 3), "F44");
  EXPECT_EQ(ReadBack(unit, 266), 0);
  for (const int address : {196, 216, 404, 405}) {
    EXPECT_EQ(Answer(unit, Request(false, 0x10, address, 1)), "F0000\r") << address;
  }
}

TEST(SimulatedUnit, StartsWithValuesInTheRangesOfEveryProduct) {
  for (std::int32_t type = 22; type <= 71; ++type) {
    UnitOptions options;
    options.product_type = type;
    SimulatedUnit unit(options);
    EXPECT_EQ(ReadBack(unit, 196), type);
    for (const std::int16_t index : unit.Catalogue().ActiveParams()) {
      const ParamRecord& record = unit.Catalogue().Record(index);
      if (record.HasList) continue;
      const std::int32_t value = unit.Value(index + 130, 0x10);
      EXPECT_TRUE(value >= record.MinValue && value <= record.MaxValue) << type << record.Name;
    }
  }
}

TEST(SimulatedUnit, ExplainsFramesInTheWordsOfThePanel) {
  std::string meaning;
  SimulatedUnit unit({}, [&](std::string_view, const std::string& text, bool) { meaning = text; });
  EXPECT_EQ(unit.DescribeReply("F441041010A000002A2\r"), "Lock mode [266] is 2 (Lock+Mix)");
  EXPECT_EQ(unit.DescribeReply("F4410410116000030DC\r"), "Setup Source [278] is 48 (CV 1)");
  EXPECT_EQ(unit.DescribeReply("F0000\r"), "refused");
  (void)Answer(unit, Request(false, 0x30, 185, 181));
  EXPECT_EQ(meaning, "sets Saturation [185] of source 48 to 181, outside 0..180");
}

TEST(SimulatedUnit, AnswersSlotQueriesWithWholePackets) {
  SimulatedUnit unit({});
  // Slot 19, whose number is a flow-control character: 800 x 600 at 75 Hz.
  const std::string query("S\x07\xA2\x01\x13\0\0\0?", 9);
  const std::string names = Answer(unit, query);
  ASSERT_EQ(names.size(), 39U);
  EXPECT_EQ(names.substr(0, 8), std::string("S\x25\xA2\x01\x13\0\0\0", 8));
  EXPECT_EQ(names.substr(8, 24), "800 x 600 75Hz          ");
  EXPECT_EQ(names.substr(32), std::string("\x01\x1B\xB7\0\x71\x02\0", 7));  // R, 46875, 625, PP

  const std::string timing = Answer(unit, std::string("S\x07\xA2\x01\x13\0\x01\0?", 9));
  ASSERT_EQ(timing.size(), 26U);
  EXPECT_EQ(timing.substr(0, 8), std::string("S\x18\xA2\x01\x13\0\x01\0", 8));
  EXPECT_EQ(timing.substr(16, 4), std::string("\x20\x03\x58\x02", 4));  // 800 by 600

  EXPECT_EQ(Answer(unit, std::string("S\x07\xA2\x01\x6A\0\0\0?", 9)), "") << "slot 106 of 106";
  EXPECT_EQ(Answer(unit, std::string("S\x07\xA2\x01\x01\0\x02\0?", 9)), "") << "there is no page 2";
  EXPECT_EQ(unit.ProblemCount(), 2);
}

}  // namespace
}  // namespace kalde2
