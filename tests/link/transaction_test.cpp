#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_literals;

constexpr std::string_view kReply = "F441041010A000002A2\r";
constexpr std::string_view kRequest = "F041041010A00000262\r";
constexpr milliseconds kSecond{1000};

class Transaction : public testing::Test, public LinkFixture {
 protected:
  Transaction() { LoadProduct(23); }

  ReplyRecord WriteLockMode() { return link.SendParameter(kWrite, 0x10, 2, 266); }

  /// The unit answers the n-th request (from 1) and no other.
  void AnswerOnly(int nth) {
    port.on_write = [this, nth](std::string_view) {
      return port.written.size() == static_cast<std::size_t>(nth) ? std::string(kReply) : "";
    };
  }

  /// Something to tell "a record of zeros" from "the last reply".
  void LeaveALastReply() {
    link.ParseReply("F4410410087000050??\r");
    display.log.clear();
  }
};

bool IsZero(const ReplyRecord& record) {
  return !record.Valid && record.Group == 0 && record.Address == 0 && record.Value == 0 &&
         record.Source == 0;
}

TEST_F(Transaction, AnsweredRequestIsDecodedAndApplied) {
  port.Receive("F4410410087000050??\r");  // what waits from before is thrown away
  AnswerOnly(1);
  const ReplyRecord record = WriteLockMode();
  EXPECT_THAT(port.written, ElementsAre(kRequest));
  EXPECT_TRUE(record.Valid && record.Address == 266 && record.Value == 2);
  EXPECT_THAT(display.log, ElementsAre("lock 2", "refresh on"));
  EXPECT_FALSE(link.CommsBusy());
  EXPECT_EQ(clock.Monotonic(), milliseconds(0));
}

TEST_F(Transaction, SilentUnitIsAskedThreeTimesAndLeavesTheLinkBusy) {
  LeaveALastReply();
  clock.After(milliseconds(500), [&] { EXPECT_TRUE(link.CommsBusy() && link.IsWaiting()); });
  EXPECT_TRUE(IsZero(WriteLockMode()));
  EXPECT_THAT(port.written, ElementsAre(kRequest, kRequest, kRequest));
  EXPECT_EQ(clock.Monotonic(), 3 * kSecond);
  EXPECT_TRUE(link.CommsBusy());
  EXPECT_FALSE(link.IsWaiting());
  AnswerOnly(4);
  EXPECT_TRUE(WriteLockMode().Valid);
  EXPECT_FALSE(link.CommsBusy());
}

TEST_F(Transaction, ClosedPortLeavesTheLinkBusy) {
  LeaveALastReply();
  clock.After(milliseconds(100), [&] { port.Close(); });
  EXPECT_TRUE(IsZero(WriteLockMode()));  // closed in the wait
  EXPECT_EQ(clock.Monotonic(), milliseconds(100));
  EXPECT_TRUE(link.CommsBusy());
  EXPECT_FALSE(link.IsWaiting());
  link.SetCommsBusy(false);
  EXPECT_TRUE(IsZero(WriteLockMode()));
  EXPECT_TRUE(link.CommsBusy());
  EXPECT_THAT(port.written, SizeIs(1));
}

TEST_F(Transaction, PiecesRestartTheTimeout) {
  clock.After(milliseconds(999), [&] { port.Receive(kReply.substr(0, 8)); });
  clock.After(milliseconds(1998), [&] { port.Receive(kReply.substr(8, 1)); });
  clock.After(milliseconds(2997), [&] { port.Receive(kReply.substr(9)); });
  EXPECT_TRUE(WriteLockMode().Valid);
  EXPECT_THAT(port.written, SizeIs(1));
}

TEST_F(Transaction, GapOfASecondSendsAgainAndForgetsThePieces) {
  clock.After(milliseconds(500), [&] { port.Receive(kReply.substr(0, 8)); });
  AnswerOnly(2);
  const ReplyRecord record = WriteLockMode();
  EXPECT_TRUE(record.Valid);
  EXPECT_EQ(record.Address, 266);
  EXPECT_THAT(port.written, ElementsAre(kRequest, kRequest));
  EXPECT_EQ(clock.Monotonic(), milliseconds(1500));
}

TEST_F(Transaction, DeadlinePastTheFullHourIsNeverReached) {
  clock.SetMillisecondOfHour(milliseconds(3'598'999));  // the second send comes a second later
  clock.After(std::chrono::minutes(100), [&] { port.Receive(kReply); });
  EXPECT_TRUE(WriteLockMode().Valid);
  EXPECT_THAT(port.written, SizeIs(2));
}

TEST_F(Transaction, NestedOneSharesDeadlineFlagAndLastReply) {
  port.on_write = [this](std::string_view frame) {
    const bool is_inner = frame.substr(0, 3) == "F84";
    const bool is_resent = port.written.size() == 3;
    return is_inner ? "F4410410087000050??\r"s : is_resent ? std::string(kReply) : "";
  };
  clock.After(milliseconds(100), [&] {
    EXPECT_EQ(link.SendParameter(kRead, 0x10, 0, 135).Value, 80);
    EXPECT_FALSE(link.CommsBusy());
    EXPECT_TRUE(link.IsWaiting());
    EXPECT_EQ(link.LastReply().Address, 135);
  });
  EXPECT_EQ(WriteLockMode().Address, 266);
  EXPECT_THAT(port.written, SizeIs(3));
  EXPECT_EQ(clock.Monotonic(), milliseconds(1100));  // a second after the inner one's start
  EXPECT_FALSE(link.IsWaiting());
}

TEST_F(Transaction, RefusalKeepsThePreviousFields) {
  LeaveALastReply();
  port.on_write = [](std::string_view) { return "F0000\r"; };
  const ReplyRecord record = WriteLockMode();
  EXPECT_FALSE(record.Valid);
  EXPECT_EQ(record.Address, 135);
  EXPECT_EQ(record.Value, 80);
  EXPECT_FALSE(link.CommsBusy());
  EXPECT_THAT(display.log, IsEmpty());

  port.on_write = [](std::string_view) { return "?\r"; };  // not even a refusal
  EXPECT_FALSE(WriteLockMode().Valid);
  EXPECT_FALSE(link.CommsBusy());
}

TEST_F(Transaction, FrameAndTerminatorForms) {
  std::string reply;
  EXPECT_FALSE(link.SendAndReceive("", "\r", reply, kSecond, true));
  EXPECT_THAT(port.written, IsEmpty());
  port.on_write = [](std::string_view) { return "a\0b\r"s; };
  EXPECT_TRUE(link.SendAndReceive("414", "\r", reply, kSecond, true));  // a lone digit is sent too
  EXPECT_TRUE(link.SendAndReceive("414", "b\r", reply, kSecond, false));
  EXPECT_EQ(reply, "a\0b\r"s);
  // Without a terminator the reply ends where a read brought a 0 last.
  port.on_write = [](std::string_view) { return "a\0b"s; };
  clock.After(milliseconds(10), [&] { port.Receive("c\0"s); });
  EXPECT_TRUE(link.SendAndReceive("x", "", reply, kSecond, false));
  EXPECT_EQ(reply, "a\0bc\0"s);
  EXPECT_THAT(port.written, ElementsAre("A\4", "414", "x"));
}

class CountedTransaction : public Transaction {
 protected:
  bool Run(std::string_view frame = "47") {
    return link.SendAndReceiveCounted(frame, reply, kSecond, true);
  }
  std::string reply;
};

TEST_F(CountedTransaction, CollectsAPacketBehindNoise) {
  clock.After(milliseconds(10), [&] { port.Receive("noise"); });
  clock.After(milliseconds(900), [&] { port.Receive("S"); });
  clock.After(milliseconds(1800), [&] {
    EXPECT_THAT(port.handshaking, ElementsAre(Handshaking::kRts));
    port.Receive("\3\x11\x13");
  });
  clock.After(milliseconds(2700), [&] { port.Receive("S"); });
  EXPECT_TRUE(Run());
  EXPECT_EQ(reply, "S\3\x11\x13S");
  EXPECT_THAT(port.written, ElementsAre("G"));
  EXPECT_THAT(port.handshaking, ElementsAre(Handshaking::kRts, Handshaking::kRtsXonXoff));
}

TEST_F(CountedTransaction, NoiseInTheSameReadSpoilsThatAttempt) {
  port.on_write = [this](std::string_view) { return port.written.size() == 1 ? "xS\1A" : "S\1A"; };
  EXPECT_TRUE(Run());
  EXPECT_EQ(reply, "S\1A");
  EXPECT_THAT(port.written, SizeIs(2));
}

TEST_F(CountedTransaction, EmptyFrameOnlyListens) {
  clock.After(milliseconds(2500), [&] { port.Receive("S\1A"); });
  EXPECT_TRUE(Run(""));
  EXPECT_FALSE(Run(""));
  EXPECT_EQ(clock.Monotonic(), milliseconds(5500));
  EXPECT_THAT(port.written, IsEmpty());
}

TEST_F(CountedTransaction, FlowControlComesBackAfterAFault) {
  port.on_write = [](std::string_view) -> std::string { throw Fault("the line is gone"); };
  EXPECT_FALSE(Run());
  EXPECT_THAT(port.handshaking, ElementsAre(Handshaking::kRts, Handshaking::kRtsXonXoff));
  EXPECT_FALSE(link.IsWaiting());
}

}  // namespace
}  // namespace kalde2
