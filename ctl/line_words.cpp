#include "ctl/line_words.h"

#include "model/mod_Producttypes.h"
#include "simulator/unit_addresses.h"
#include "simulator/unit_frames.h"

namespace kalde2 {

std::string LineWords::Of(Direction direction, const FrameCutter::Piece& piece) {
  if (!piece.is_whole) return "no whole frame";
  if (direction == Direction::kToUnit) return OfRequest(piece.bytes);
  const std::optional<UnitReply> reply = ReadOwnReply(piece.bytes);
  if (reply && reply->address == addresses::kProductType) LearnProduct(reply->value);
  return words_->OfReply(piece.bytes);
}

std::string LineWords::OfRequest(std::string_view bytes) const {
  if (bytes.front() == 'F') {
    const Reading<UnitRequest> reading = ReadRequest(bytes);
    return reading.request ? words_->OfRequest(*reading.request) : reading.problem;
  }
  const Reading<SlotQuery> reading = ReadSlotQuery(bytes);
  return reading.request ? UnitWords::OfSlotQuery(*reading.request) : reading.problem;
}

void LineWords::LearnProduct(std::int32_t product_type) {
  AddProductEntries(catalogue_, product_type);
  words_.emplace(catalogue_, product_type, std::vector<int>());
}

}  // namespace kalde2
