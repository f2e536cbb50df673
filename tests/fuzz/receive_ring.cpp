/// Unasked frames: "|" ends a receive event, "~" is a tick of the timer that cuts frames out.

#include "link/receive_ring.h"

#include "tests/fuzz/fuzz_target.h"

namespace kalde2 {
namespace {

bool Tick(ReceiveRing& ring) {
  const std::optional<std::string> frame = ring.NextFrame();
  if (!frame) return false;
  Require(frame->front() == 'F', "a frame begins with an F");
  Require(frame->find('\r') == frame->size() - 1, "a frame ends at its first carriage return");
  return true;
}

}  // namespace

void FuzzOne(std::string_view input) {
  ReceiveRing ring;
  for (const std::string_view between_ticks : Pieces(input, '~')) {
    for (const std::string_view event : Pieces(between_ticks, '|')) ring.Store(event);
    Require(ring.RxWriteIndex() >= 0 && ring.RxWriteIndex() < ReceiveRing::kWrap,
            "the writer stays in the ring");
    Tick(ring);
    Require(ring.RxReadIndex() >= 0 && ring.RxReadIndex() < ReceiveRing::kElements,
            "the reader stays in the ring");
  }
  int frames = 0;
  while (Tick(ring)) Require(++frames < ReceiveRing::kElements, "the ring runs dry");
}

}  // namespace kalde2
