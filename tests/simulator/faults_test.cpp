#include "simulator/faults.h"

#include <gtest/gtest.h>

#include "simulator/paced_queue.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

constexpr int kAddress = 266;
const std::string kReply = "F441041010A000002A2\r";
const std::string kNoise = "\x80~#\xFE?";

struct Expected {
  int after;
  std::string bytes;
  bool hang_up = false;
};

void ExpectActions(const std::vector<LineAction>& actions, const std::vector<Expected>& expected,
                   const std::string& context) {
  ASSERT_EQ(actions.size(), expected.size()) << context;
  for (std::size_t i = 0; i < actions.size(); ++i) {
    EXPECT_EQ(actions[i].after, milliseconds(expected[i].after)) << context;
    EXPECT_EQ(actions[i].bytes, expected[i].bytes) << context;
    EXPECT_EQ(actions[i].hang_up, expected[i].hang_up) << context;
  }
}

FaultPlan PlanOf(const std::vector<std::string>& faults) {
  FaultPlan plan;
  for (const std::string& fault : faults) EXPECT_EQ(plan.Add(fault), std::nullopt) << fault;
  return plan;
}

TEST(FaultPlan, MakesOfAReplyWhatItsNameSays) {
  struct Case {
    std::vector<std::string> faults;
    std::vector<Expected> actions;
  };
  const Case cases[] = {
      {{}, {{0, kReply}}},
      {{"silent"}, {}},
      {{"ignore=0x10A"}, {}},
      {{"ignore=267"}, {{0, kReply}}},
      {{"late=300"}, {{300, kReply}}},
      {{"split=50"}, {{0, "F441041010"}, {50, "A000002A2\r"}}},
      {{"split=1200,3"}, {{0, "F44104"}, {1200, "1010A00"}, {2400, "0002A2\r"}}},
      {{"late=10", "split=5"}, {{10, "F441041010"}, {15, "A000002A2\r"}}},
      {{"noise-before"}, {{0, kNoise + kReply}}},
      {{"noise-inside"}, {{0, "F441041010" + kNoise + "A000002A2\r"}}},
      {{"noise-after"}, {{0, kReply + kNoise}}},
      {{"error-reply"}, {{0, "F0000\r"}}},
      {{"refuse=100", "refuse=266"}, {{0, "F0000\r"}}},
      {{"refuse=267"}, {{0, kReply}}},
      {{"short-frame"}, {{0, "F4410\r"}}},
      {{"short-frame=12"}, {{0, "F441041010A\r"}}},
      {{"wrong-address"}, {{0, "F441041010B000002A3\r"}}},
      {{"flow-bytes"},
       {{0,
         "\x13"
         "F441041010"
         "\x11"
         "A000002A2\r"}}},
      {{"stray-xoff"}, {{0, kReply + "\x13"}}},
      {{"hang-up-before=1"}, {{0, "", true}}},
      {{"hang-up-during=1"}, {{0, "F441041010"}, {100, "", true}}},
      {{"hang-up-after=1", "late=20"}, {{20, kReply}, {120, "", true}}},
      {{"silent", "hang-up-after=1"}, {{100, "", true}}},
  };
  for (const Case& item : cases) {
    FaultPlan plan = PlanOf(item.faults);
    ExpectActions(plan.Deliver(kReply, kAddress), item.actions,
                  testing::PrintToString(item.faults));
  }
}

TEST(FaultPlan, CountsRequestsFromTheMomentOfItsSetting) {
  FaultPlan plan = PlanOf({"silent-for=2", "error-reply=1", "hang-up-before=4"});
  ExpectActions(plan.Deliver(kReply, kAddress), {}, "first");
  ExpectActions(plan.Deliver(kReply, kAddress), {}, "second");
  ExpectActions(plan.Deliver(kReply, kAddress), {{0, "F0000\r"}}, "third");
  ExpectActions(plan.Deliver(kReply, kAddress), {{0, "", true}}, "fourth");
  EXPECT_EQ(plan.Describe(), "none");
}

TEST(FaultPlan, IsReplacedClearedAndRefusedByItsText) {
  FaultPlan plan = PlanOf({"late=100", "late=200"});
  ExpectActions(plan.Deliver(kReply, kAddress), {{200, kReply}}, "the later setting holds");
  for (const char* text : {"", "loud", "late", "late=", "late=x", "late=1,2", "late=0", "late=-5",
                           "split=1,2,3", "silent=1", "silent-for", "late=99999999999"}) {
    EXPECT_NE(plan.Add(text), std::nullopt) << text;
  }
  EXPECT_EQ(plan.Describe(), "late=200");
  EXPECT_EQ(plan.Add("none"), std::nullopt);
  EXPECT_EQ(plan.Describe(), "none");
}

TEST(FaultPlan, KeepsAShortenedPacketCompleteByItsLength) {
  FaultPlan plan = PlanOf({"short-packet=5", "short-frame=4", "wrong-address"});
  ExpectActions(plan.Deliver("S\x06"
                             "abcdef",
                             -1),
                {{0,
                  "S\x03"
                  "abc"}},
                "packet");
}

TEST(FaultPlan, GivesTheRateOfUnaskedFrames) {
  EXPECT_EQ(FaultPlan().UnaskedPeriod(), std::nullopt);
  EXPECT_EQ(PlanOf({"unasked=50"}).UnaskedPeriod(), milliseconds(20));
  EXPECT_EQ(PlanOf({"unasked=1000000000"}).UnaskedPeriod(), std::chrono::microseconds(100));
}

TEST(PacedQueue, LetsCharactersThroughAtTenBitsEach) {
  const PacedQueue::Clock::time_point start{};
  PacedQueue queue(9600);
  queue.Put("abcd", start);
  EXPECT_EQ(queue.Take(start), "");
  EXPECT_EQ(queue.NextDue(), start + std::chrono::nanoseconds(std::chrono::seconds(10)) / 9600);
  EXPECT_EQ(queue.Take(start + milliseconds(3)), "ab");
  queue.Put("e", start + milliseconds(3));
  EXPECT_EQ(queue.Take(start + milliseconds(5)), "cd") << "the fifth waits for the fourth";
  EXPECT_EQ(queue.Take(start + milliseconds(6)), "e");
  EXPECT_EQ(queue.NextDue(), std::nullopt);

  PacedQueue unpaced;
  unpaced.Put("abc", start);
  EXPECT_EQ(unpaced.Take(start), "abc");
}

}  // namespace
}  // namespace kalde2
