#include "simulator/faults.h"

#include <gtest/gtest.h>

#include <sstream>

#include "simulator/paced_queue.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

constexpr int kAddress = 266;
const std::string kReply = "F441041010A000002A2\r";
const std::string kNoise = "\x80~#\xFE?";

FaultPlan PlanOf(const std::vector<std::string>& faults) {
  FaultPlan plan;
  for (const std::string& fault : faults) EXPECT_EQ(plan.Add(fault), std::nullopt) << fault;
  return plan;
}

/// What happens about a reply: "AFTER:BYTES" or "AFTER:hang up", with blanks between them.
std::string Told(FaultPlan& plan, const std::string& reply = kReply) {
  std::string text;
  for (const LineAction& action : plan.Deliver(reply, kAddress)) {
    if (!text.empty()) text += ' ';
    text += std::to_string(action.after.count()) + ':';
    text += action.hang_up ? "hang up" : action.bytes;
  }
  return text;
}

TEST(FaultPlan, MakesOfAReplyWhatItsNameSays) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, "0:" + kReply},
      {{"silent"}, ""},
      {{"ignore=0x10A", "error-reply"}, ""},
      {{"ignore=267", "refuse=267"}, "0:" + kReply},
      {{"split=1200,3"}, "0:F44104 1200:1010A00 2400:0002A2\r"},
      {{"late=10", "split=5"}, "10:F441041010 15:A000002A2\r"},
      {{"noise-before"}, "0:" + kNoise + kReply},
      {{"noise-inside"}, "0:F441041010" + kNoise + "A000002A2\r"},
      {{"noise-after"}, "0:" + kReply + kNoise},
      {{"error-reply"}, "0:F0000\r"},
      {{"refuse=130", "refuse=266"}, "0:F0000\r"},
      {{"short-frame=12"}, "0:F441041010A\r"},
      {{"wrong-address"}, "0:F441041010B000002A3\r"},
      {{"flow-bytes"},
       "0:\x13"
       "F441041010\x11"
       "A000002A2\r"},
      {{"stray-xoff"}, "0:" + kReply + "\x13"},
      {{"hang-up-during=1"}, "0:F441041010 100:hang up"},
      {{"hang-up-after=1", "late=20"}, "20:" + kReply + " 120:hang up"},
      {{"late=100", "late=200"}, "200:" + kReply},
  };
  for (const auto& [faults, told] : cases) {
    FaultPlan plan = PlanOf(faults);
    EXPECT_EQ(Told(plan), told) << testing::PrintToString(faults);
  }
  FaultPlan plan = PlanOf({"short-packet=5", "short-frame=4", "wrong-address"});
  EXPECT_EQ(Told(plan, "S\6abcdef"), "0:S\3abc") << "complete by its own length";
}

TEST(FaultPlan, CountsRequestsFromTheMomentOfItsSetting) {
  FaultPlan plan = PlanOf({"silent-for=2", "error-reply=1", "hang-up-before=4"});
  for (const char* told : {"", "", "0:F0000\r", "0:hang up"}) EXPECT_EQ(Told(plan), told);
  EXPECT_EQ(plan.Describe(), "none");
}

TEST(FaultPlan, RefusesWhatIsNoFault) {
  FaultPlan plan = PlanOf({"silent", "none", "late=200"});
  for (const char* text :
       {"", "loud", "late", "late=", "late=x", "late=1,2", "late=0", "late=-5", "split=1,2,3",
        "silent=1", "late=99999999999", "split=1,", "refuse=129", "ignore=414"}) {
    EXPECT_NE(plan.Add(text), std::nullopt) << text;
  }
  EXPECT_EQ(plan.Describe(), "late=200");
}

TEST(FaultPlan, ListsWhatIsInForceAsItCanBeTypedBack) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"split=10,3"}, "split=10,3"},
      {{"split=10"}, "split=10,2"},
      {{"error-reply"}, "error-reply"},
      {{"error-reply=7"}, "error-reply=7"},
      {{"short-frame", "short-packet=9"}, "short-frame=6\nshort-packet=9"},
      {{"refuse=0x10A", "refuse=130", "silent"}, "refuse=266\nrefuse=130\nsilent"},
  };
  for (const auto& [faults, listed] : cases) {
    EXPECT_EQ(PlanOf(faults).Describe(), listed);
    std::istringstream lines(listed);
    FaultPlan again;
    for (std::string line; std::getline(lines, line);) EXPECT_EQ(again.Add(line), std::nullopt);
    EXPECT_EQ(again.Describe(), listed);
  }
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
}

}  // namespace
}  // namespace kalde2
