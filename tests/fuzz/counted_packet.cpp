/// A transaction and the unit's answer to it, arriving in pieces. The first character is the gap
/// between pieces in units of 20 ms, the second "P" for a counted packet (else a text reply); "|"
/// parts the pieces.

#include "link/frame_codec.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
void FuzzOne(std::string_view input) {
  constexpr std::size_t kHead = 2;
  if (input.size() < kHead) return;
  const std::chrono::milliseconds gap{20 * static_cast<unsigned char>(input[0])};
  LinkFixture panel;
  std::chrono::milliseconds at{0};
  for (const std::string_view piece : Pieces(input.substr(kHead), '|')) {
    panel.clock.After(at, [&panel, piece] { panel.port.Receive(piece); });
    at += gap;
  }
  std::string reply;
  if (input[1] == 'P') {
    const bool answered = panel.link.SendAndReceiveCounted("S?", reply, kReplyTimeout, false);
    Require(!answered || CountedPacket(reply) == reply, "a packet is taken whole, and alone");
    Require(panel.port.handshaking.back() == Handshaking::kRtsXonXoff, "flow control is back");
  } else {
    const bool answered = panel.link.SendAndReceive("4646", "\r", reply, kReplyTimeout, true);
    Require(answered == (reply.find('\r') != std::string::npos), "a text reply ends with its end");
  }
  Require(!panel.port.written.empty() && panel.port.written.size() <= kAttempts,
          "a request is sent one to three times");
  Require(panel.clock.Monotonic() <= at + kAttempts * kReplyTimeout, "a wait ends in time");
  Require(!panel.link.IsWaiting(), "no wait is left");
}

}  // namespace kalde2
