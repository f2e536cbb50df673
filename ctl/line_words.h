#pragma once

#include <optional>
#include <string>

#include "simulator/unit_words.h"
#include "trace/frame_cutter.h"
#include "trace/trace_file.h"

namespace kalde2 {

/// What goes over a line, in words. The reading is the simulated unit's, which is strict: it tells
/// what is wrong with a frame. The product, which gives the names, is learnt from the line.
class LineWords {
 public:
  LineWords() { LearnProduct(0); }

  /// For example "sets Lock mode [266] to 2 (Lock+Mix)".
  [[nodiscard]] std::string Of(Direction direction, const FrameCutter::Piece& piece);

 private:
  [[nodiscard]] std::string OfRequest(std::string_view bytes) const;
  void LearnProduct(std::int32_t product_type);

  ParamCatalogue catalogue_;
  std::optional<UnitWords> words_;
};

}  // namespace kalde2
