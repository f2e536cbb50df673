#include "trace/replay_port.h"

#include "link/fault.h"

namespace kalde2 {

std::optional<std::string> ReplayPort::Open(const PortSetup& /*setup*/) {
  is_open_ = true;
  return std::nullopt;
}

void ReplayPort::Close() {
  is_open_ = false;
  waiting_.clear();
  (void)requests_.TakeRest();
}

void ReplayPort::Output(std::string_view text) {
  RequireOpen();
  for (const FrameCutter::Piece& piece : requests_.Put(text)) {
    if (!piece.is_whole) continue;
    const std::optional<std::string> reply = replies_.Next(piece.bytes);
    if (!reply) unknown_(piece.bytes);
    waiting_ += reply.value_or(std::string(kRefusal));
  }
}

std::string ReplayPort::Input() {
  RequireOpen();
  return std::exchange(waiting_, {});
}

void ReplayPort::RequireOpen() const {
  if (!is_open_) throw Fault("the port is closed");
}

}  // namespace kalde2
