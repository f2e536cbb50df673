#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace kalde2 {

/// Ring buffer of the characters that arrive while no transaction waits, and the cutting of frames
/// out of it. One element holds one character or nothing. A frame runs from an "F" to the next
/// carriage return; a frame that wraps around the end and has another "F" in it comes out with that
/// part twice, which is intended.
class ReceiveRing {
 public:
  static constexpr int kElements = 402;  ///< elements 400 and 401 are only ever read
  static constexpr int kWrap = 400;      ///< the writer wraps here

  /// Stores the characters of one receive event and one empty element behind them.
  void Store(std::string_view text);

  /// Forgets everything: what is there belongs to a unit that is gone.
  void Clear() { *this = {}; }

  /// True when there is something to look for frames in: the timer that cuts them is wanted.
  [[nodiscard]] bool HasData() const { return write_index_ != read_index_; }

  /// Cuts out the next complete frame, "\r" included, and empties its elements so that it is never
  /// seen again. nullopt where no frame is complete yet.
  [[nodiscard]] std::optional<std::string> NextFrame();

  /// True when the frame cut out last ended the last event's text. The sum is not wrapped: with a
  /// read index of 398 or 399 this stays false until the read index moves on, which is intended.
  [[nodiscard]] bool IsDrained() const { return write_index_ == read_index_ + 2; }

  [[nodiscard]] int RxWriteIndex() const { return write_index_; }
  [[nodiscard]] int RxReadIndex() const { return read_index_; }

 private:
  struct Scan;

  bool Collect(int from, int last, Scan& scan) const;
  void Search(int from, int last, Scan& scan) const;
  void Empty(int from, int to);

  std::array<std::optional<char>, kElements> rx_buffer_{};
  int write_index_ = 0;
  int read_index_ = 0;
};

}  // namespace kalde2
