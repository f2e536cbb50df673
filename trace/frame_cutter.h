#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kalde2 {

/// Cuts one direction of a line into frames ("F" to "\r"), length-prefixed packets ("S", a length
/// byte, as many bytes) and what stands between them.
class FrameCutter {
 public:
  struct Piece {
    std::string bytes;
    bool is_whole;  ///< a frame or packet; else bytes that belong to none

    bool operator==(const Piece&) const = default;
  };

  /// Takes bytes in any portions. @return the pieces that they complete
  [[nodiscard]] std::vector<Piece> Put(std::string_view bytes);

  /// The beginning of a piece whose rest is not coming any more; may be empty.
  [[nodiscard]] std::string TakeRest() { return std::exchange(pending_, {}); }

 private:
  [[nodiscard]] std::size_t Start() const;
  [[nodiscard]] std::size_t WholeLength() const;

  std::string pending_;
};

}  // namespace kalde2
