#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string kReply = "F441041010A000002A2\r";
const std::string kShrinkReply = "F4410410087000050??\r";  // address 135, 80
constexpr std::string_view kRequest = "F041041010A00000262\r";
constexpr milliseconds kSecond{1000};

class Transaction : public testing::Test, public LinkFixture {
 protected:
  /// With something to tell "a record of zeros" from "the last reply".
  Transaction() {
    LoadProduct(23);
    link.ParseReply(kShrinkReply);
    display.log.clear();
  }

  ReplyRecord WriteLockMode() { return link.SendParameter(kWrite, 0x10, 2, 266); }

  /// Writes the lock mode in vain.
  void ExpectZeros() {
    const ReplyRecord record = WriteLockMode();
    EXPECT_TRUE(!record.Valid && record.Group == 0 && record.Address == 0 && record.Value == 0);
    EXPECT_TRUE(link.CommsBusy());
    EXPECT_FALSE(link.IsWaiting());
  }

  /// The unit answers the n-th request (from 1) and no other.
  void AnswerOnly(std::size_t nth) {
    port.on_write = [this, nth](auto) { return port.written.size() == nth ? kReply : ""; };
  }

  std::string reply;
};

TEST_F(Transaction, SilenceAndClosedPortLeaveTheLinkBusy) {
  clock.After(milliseconds(500), [&] { EXPECT_TRUE(link.CommsBusy() && link.IsWaiting()); });
  ExpectZeros();
  EXPECT_THAT(port.written, ElementsAre(kRequest, kRequest, kRequest));
  EXPECT_EQ(clock.Monotonic(), 3 * kSecond);
  AnswerOnly(4);
  EXPECT_TRUE(WriteLockMode().Valid);
  EXPECT_FALSE(link.CommsBusy());

  clock.After(milliseconds(100), [&] { port.Close(); });
  ExpectZeros();  // closed in the wait
  link.SetCommsBusy(false);
  ExpectZeros();
  EXPECT_THAT(port.written, SizeIs(5));
}

TEST_F(Transaction, PiecesRestartTheTimeoutUntilAGapForgetsThem) {
  clock.After(milliseconds(999), [&] { port.Receive(kReply.substr(0, 8)); });
  clock.After(milliseconds(1998), [&] { port.Receive(kReply.substr(8, 1)); });
  AnswerOnly(2);
  EXPECT_EQ(WriteLockMode().Address, 266);
  EXPECT_EQ(clock.Monotonic(), milliseconds(2998));
  EXPECT_THAT(port.written, SizeIs(2));
}

TEST_F(Transaction, DeadlinePastTheFullHourIsNeverReached) {
  clock.SetMillisecondOfHour(milliseconds(3'598'999));  // the second send comes a second later
  clock.After(std::chrono::minutes(100), [&] { port.Receive(kReply); });
  EXPECT_TRUE(WriteLockMode().Valid);
  EXPECT_THAT(port.written, SizeIs(2));
}

TEST_F(Transaction, NestedOneSharesDeadlineFlagAndLastReply) {
  port.on_write = [this](std::string_view frame) {
    if (frame.starts_with("F84")) return kShrinkReply;
    return port.written.size() == 3 ? kReply : "";
  };
  clock.After(milliseconds(100), [&] {
    EXPECT_EQ(link.SendParameter(kRead, 0x10, 0, 135).Value, 80);
    EXPECT_FALSE(link.CommsBusy());
    EXPECT_TRUE(link.IsWaiting());
    EXPECT_EQ(link.LastReply().Address, 135);
  });
  EXPECT_EQ(WriteLockMode().Address, 266);
  EXPECT_EQ(clock.Monotonic(), milliseconds(1100));  // a second after the inner one's start
}

TEST_F(Transaction, RefusalKeepsThePreviousFields) {
  port.on_write = [](auto) { return "F0000\r"; };
  const ReplyRecord record = WriteLockMode();
  EXPECT_TRUE(!record.Valid && record.Address == 135 && record.Value == 80);
  EXPECT_FALSE(link.CommsBusy());
  EXPECT_THAT(display.log, IsEmpty());
}

TEST_F(Transaction, AnObserverHearsOnceARequestWhetherTheUnitSpoke) {
  struct Observer : LinkObserver {
    void RequestEnded(bool answered) override { heard += answered ? '+' : '-'; }
    std::string heard;
  } observer;
  link.SetObserver(&observer);
  AnswerOnly(3);
  (void)WriteLockMode();
  port.on_write = [](auto) { return "F00001\r"; };
  (void)WriteLockMode();
  EXPECT_EQ(observer.heard, "++") << "a refusal is an answer";
  port.on_write = nullptr;
  (void)WriteLockMode();
  EXPECT_FALSE(link.SendAndReceiveCounted("47", reply, kSecond, true));
  EXPECT_EQ(observer.heard, "++--");
  EXPECT_FALSE(link.SendAndReceive("", "\r", reply, kSecond, true));
  EXPECT_FALSE(link.SendAndReceiveCounted("", reply, kSecond, true));
  clock.After(milliseconds(2999), [&] { port.Close(); });
  (void)WriteLockMode();
  (void)WriteLockMode();
  EXPECT_EQ(observer.heard, "++--") << "nothing was asked, or the port closed";
}

TEST_F(Transaction, CountedReplyIsCollectedBehindNoiseWithoutFlowControl) {
  clock.After(milliseconds(10), [&] { port.Receive("noise"); });
  clock.After(milliseconds(900), [&] { port.Receive("S"); });
  clock.After(milliseconds(1800), [&] {
    EXPECT_THAT(port.handshaking, ElementsAre(Handshaking::kRts));
    port.Receive("\3\x11\x13");
  });
  clock.After(milliseconds(2700), [&] { port.Receive("S"); });
  EXPECT_TRUE(link.SendAndReceiveCounted("47", reply, kSecond, true));
  EXPECT_EQ(reply, "S\3\x11\x13S");
  EXPECT_THAT(port.written, ElementsAre("G"));
  EXPECT_THAT(port.handshaking, ElementsAre(Handshaking::kRts, Handshaking::kRtsXonXoff));

  port.handshaking.clear();
  port.on_write = [](auto) -> std::string { throw Fault("the line is gone"); };
  EXPECT_FALSE(link.SendAndReceiveCounted("47", reply, kSecond, true));
  EXPECT_THAT(port.handshaking, ElementsAre(Handshaking::kRts, Handshaking::kRtsXonXoff));
}

TEST_F(Transaction, CountedReplyIsCutOutWhereverItsReadsAreCutAndAwaitedWithoutAFrame) {
  const std::string noisy = "x\1S\3\x11S\x13Sy";
  for (std::size_t cut = 0; cut <= noisy.size(); ++cut) {
    port.on_write = [&](auto) { return noisy.substr(0, cut); };
    clock.After(milliseconds(10), [&, cut] { port.Receive(noisy.substr(cut)); });
    EXPECT_TRUE(link.SendAndReceiveCounted("47", reply, kSecond, true));
    EXPECT_EQ(reply, "S\3\x11S\x13") << cut;
  }
  EXPECT_THAT(port.written, SizeIs(noisy.size() + 1));
  clock.After(milliseconds(2500), [&] { port.Receive("S\1A"); });
  EXPECT_TRUE(link.SendAndReceiveCounted("", reply, kSecond, true));
  EXPECT_THAT(port.written, SizeIs(noisy.size() + 1));
}

}  // namespace
}  // namespace kalde2
