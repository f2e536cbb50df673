#include "link/receive_ring.h"

#include <gtest/gtest.h>

#include <vector>

namespace kalde2 {
namespace {

using Frames = std::vector<std::string>;

Frames AllFrames(ReceiveRing& ring) {
  Frames frames;
  while (auto frame = ring.NextFrame()) frames.push_back(std::move(*frame));
  return frames;
}

TEST(ReceiveRing, CutsEveryFrameOnceWhereverItMeetsTheEnd) {
  ReceiveRing ring;
  std::vector<bool> met(ReceiveRing::kWrap);
  for (int i = 0; i < 5000; ++i) {  // laps that begin at every element
    const std::string frame = "F" + std::to_string(i) + "\r";
    ring.Store(frame.substr(0, 2));
    EXPECT_EQ(ring.NextFrame(), std::nullopt);
    EXPECT_FALSE(ring.IsDrained());
    ring.Store(frame.substr(2) + "noise F.\r");
    EXPECT_EQ(AllFrames(ring), (Frames{frame, "F.\r"}));
    const int end = ring.RxReadIndex();
    EXPECT_EQ(ring.IsDrained(), end < 398) << end;  // the writer has wrapped, the sum does not
    met[static_cast<std::size_t>(end)] = true;
  }
  EXPECT_EQ(met, std::vector<bool>(ReceiveRing::kWrap, true));
}

TEST(ReceiveRing, SecondStartInsideAWrappedFrameRepeatsThatPart) {
  ReceiveRing ring;
  ring.Store("F" + std::string(393, '.') + "\r");  // the next event begins at 396
  EXPECT_TRUE(ring.NextFrame());
  ring.Store("F1F23\r");
  EXPECT_EQ(AllFrames(ring), Frames{"F1F2F23\r"});
  ring.Store("F1F23\r");
  EXPECT_EQ(AllFrames(ring), Frames{"F1F23\r"});
}

}  // namespace
}  // namespace kalde2
