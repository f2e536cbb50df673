#include "link/receive_ring.h"

namespace kalde2 {
namespace {
constexpr char kFrameStart = 'F';
constexpr char kFrameEnd = '\r';
}  // namespace

/// What one search has found so far.
struct ReceiveRing::Scan {
  std::string message;
  bool started = false;
  int end = -1;  ///< element of the carriage return, -1 while the frame is not complete

  [[nodiscard]] bool IsComplete() const { return end >= 0; }
};

void ReceiveRing::Store(std::string_view text) {
  const auto advance = [this] { write_index_ = write_index_ + 1 == kWrap ? 0 : write_index_ + 1; };
  for (const char c : text) {
    rx_buffer_[static_cast<std::size_t>(write_index_)] = c;
    advance();
  }
  rx_buffer_[static_cast<std::size_t>(write_index_)].reset();
  advance();
}

/// Appends the elements `from` to `last` up to a carriage return. True when one was found.
bool ReceiveRing::Collect(int from, int last, Scan& scan) const {
  for (int i = from; i <= last; ++i) {
    const auto& element = rx_buffer_[static_cast<std::size_t>(i)];
    if (!element) continue;
    scan.message += *element;
    if (*element == kFrameEnd) {
      scan.end = i;
      return true;
    }
  }
  return false;
}

/// Collects from each "F" in `from` to `last` until a frame is complete. What an "F" without an end
/// brought is kept.
void ReceiveRing::Search(int from, int last, Scan& scan) const {
  for (int i = from; i <= last; ++i) {
    if (rx_buffer_[static_cast<std::size_t>(i)] != kFrameStart) continue;
    scan.started = true;
    if (Collect(i, last, scan)) return;
  }
}

std::optional<std::string> ReceiveRing::NextFrame() {
  Scan scan;
  Search(read_index_, kWrap, scan);
  if (!scan.IsComplete()) {
    if (scan.started) {
      Collect(0, write_index_, scan);
    } else {
      Search(0, write_index_, scan);
    }
  }
  if (!scan.IsComplete()) return std::nullopt;
  Empty(read_index_, scan.end);
  read_index_ = scan.end;
  return std::move(scan.message);
}

void ReceiveRing::Empty(int from, int to) {
  for (int i = from; i != to; i = i >= kWrap ? 0 : i + 1) {
    rx_buffer_[static_cast<std::size_t>(i)].reset();
  }
  rx_buffer_[static_cast<std::size_t>(to)].reset();
}

}  // namespace kalde2
