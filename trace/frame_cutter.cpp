#include "trace/frame_cutter.h"

#include "link/frame_codec.h"

namespace kalde2 {
namespace {
constexpr char kFrameStart = 'F';
constexpr char kFrameEnd = '\r';
constexpr std::size_t kLongestFrame = 64;  // three times what any unit or panel sends
}  // namespace

std::vector<FrameCutter::Piece> FrameCutter::Put(std::string_view bytes) {
  pending_ += bytes;
  std::vector<Piece> pieces;
  while (!pending_.empty()) {
    const std::size_t stray = Start();
    const std::size_t whole = stray > 0 ? 0 : WholeLength();
    const bool is_endless = pending_.front() == kFrameStart && pending_.size() > kLongestFrame;
    if (stray + whole == 0 && !is_endless) break;
    const std::size_t length = stray + whole > 0 ? stray + whole : pending_.size();
    pieces.push_back({pending_.substr(0, length), whole > 0});
    pending_.erase(0, length);
  }
  return pieces;
}

/// How many bytes stand ahead of what may be the start of a frame or packet.
std::size_t FrameCutter::Start() const {
  std::size_t start = 0;
  for (; start < pending_.size(); ++start) {
    if (pending_[start] == kFrameStart) break;
    // A packet has one byte at least behind its length.
    const bool is_packet = start + 1 == pending_.size() || pending_[start + 1] != '\0';
    if (pending_[start] == kPacketStart && is_packet) break;
  }
  return start;
}

/// Length of the frame or packet at the start, 0 while it is not complete.
std::size_t FrameCutter::WholeLength() const {
  if (pending_.front() == kPacketStart) return CountedPacket(pending_).size();
  return pending_.find(kFrameEnd) + 1;  // 0 where there is none
}

}  // namespace kalde2
