#include "link/receive_ring.h"

#include <gtest/gtest.h>

#include <vector>

namespace kalde2 {
namespace {

/// A ring whose last frame ended in element `end` (5 or more), with nothing behind it.
ReceiveRing RingReadUpTo(int end) {
  ReceiveRing ring;
  ring.Store("F1\r");
  EXPECT_TRUE(ring.NextFrame());
  ring.Store("F" + std::string(static_cast<std::size_t>(end - 5), '.') + "\r");
  EXPECT_TRUE(ring.NextFrame());
  EXPECT_EQ(ring.RxReadIndex(), end);
  return ring;
}

std::vector<std::string> AllFrames(ReceiveRing& ring) {
  std::vector<std::string> frames;
  while (auto frame = ring.NextFrame()) frames.push_back(std::move(*frame));
  return frames;
}

using Frames = std::vector<std::string>;

TEST(ReceiveRing, CutsFramesOutOfNoiseAndJoinsPieces) {
  ReceiveRing ring;
  EXPECT_FALSE(ring.HasData());
  ring.Store("x\rF1\rF2\r");
  EXPECT_TRUE(ring.HasData());
  EXPECT_EQ(ring.NextFrame(), "F1\r");
  EXPECT_FALSE(ring.IsDrained());
  EXPECT_EQ(ring.NextFrame(), "F2\r");
  EXPECT_TRUE(ring.IsDrained());
  for (const auto* piece : {"F44", "", "1041010A"}) {
    ring.Store(piece);
    EXPECT_EQ(ring.NextFrame(), std::nullopt);
    EXPECT_FALSE(ring.IsDrained());
  }
  ring.Store("000002A2\r");
  EXPECT_EQ(ring.NextFrame(), "F441041010A000002A2\r");
}

TEST(ReceiveRing, FramesWrapAroundTheEnd) {
  // From the last frame's end in the middle to the carriage return itself being the last element.
  for (int end = 380; end < ReceiveRing::kWrap; ++end) {
    ReceiveRing ring = RingReadUpTo(end);
    ring.Store("F123");
    EXPECT_EQ(AllFrames(ring), Frames{}) << end;
    ring.Store("456789\rF0\r");
    EXPECT_EQ(AllFrames(ring), (Frames{"F123456789\r", "F0\r"})) << end;
  }
}

TEST(ReceiveRing, SecondStartInsideAWrappedFrameRepeatsThatPart) {
  ReceiveRing ring = RingReadUpTo(394);  // the next event begins at 396
  ring.Store("F1F23\r");
  EXPECT_EQ(AllFrames(ring), Frames{"F1F2F23\r"});
  ring.Store("F1F23\r");
  EXPECT_EQ(AllFrames(ring), Frames{"F1F23\r"});
}

TEST(ReceiveRing, NeverCutsAFrameTwice) {
  ReceiveRing ring;
  Frames sent;
  Frames cut;
  for (int i = 0; i < 500; ++i) {  // many laps, in events of one, two and three frames
    std::string event;
    for (int n = 0; n <= i % 3; ++n) {
      sent.push_back("F" + std::to_string(i) + "." + std::to_string(n) + "\r");
      event += sent.back();
    }
    ring.Store(event);
    for (auto& frame : AllFrames(ring)) cut.push_back(std::move(frame));
  }
  EXPECT_EQ(cut, sent);
}

TEST(ReceiveRing, IsNotDrainedWithTheReadIndexAtTheEnd) {
  EXPECT_TRUE(RingReadUpTo(397).IsDrained());
  for (const int end : {398, 399}) {
    ReceiveRing ring = RingReadUpTo(end);
    EXPECT_FALSE(ring.IsDrained());
    EXPECT_EQ(ring.NextFrame(), std::nullopt);
    EXPECT_FALSE(ring.IsDrained());
    ring.Store("F1\r");
    EXPECT_EQ(AllFrames(ring), Frames{"F1\r"});
    EXPECT_TRUE(ring.IsDrained());
  }
}

}  // namespace
}  // namespace kalde2
