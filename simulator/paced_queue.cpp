#include "simulator/paced_queue.h"

#include <algorithm>

namespace kalde2 {

void PacedQueue::SetBaud(int baud) {
  constexpr std::chrono::nanoseconds kTenBits = std::chrono::seconds(10);
  character_time_ = baud > 0 ? kTenBits / baud : std::chrono::nanoseconds(0);
}

void PacedQueue::Put(std::string_view bytes, Clock::time_point now) {
  Clock::time_point due = characters_.empty() ? now : std::max(now, characters_.back().due);
  for (const char code : bytes) {
    due += character_time_;
    characters_.push_back({due, code});
  }
}

std::string PacedQueue::Take(Clock::time_point now) {
  std::string bytes;
  while (!characters_.empty() && characters_.front().due <= now) {
    bytes += characters_.front().code;
    through_ = characters_.front().due;
    characters_.pop_front();
  }
  return bytes;
}

std::optional<PacedQueue::Clock::time_point> PacedQueue::NextDue() const {
  if (characters_.empty()) return std::nullopt;
  return characters_.front().due;
}

}  // namespace kalde2
