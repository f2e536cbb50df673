/// Replies of the unit, one input one reply: decoding, and applying to the values.

#include "link/frame_codec.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/fake_link.h"

namespace kalde2 {

void FuzzOne(std::string_view input) {
  ReplyRecord record;
  const bool decoded = !IsFault([&] { DecodeReply(input, record); });
  constexpr std::int32_t kLowest = -16773118;
  constexpr std::int32_t kHighest = 4097;
  Require(record.Value >= kLowest && record.Value <= kHighest, "a value fits its range");

  LinkFixture panel;
  panel.LoadProduct(35);
  panel.link.ParseReply(input);
  const ReplyRecord& reply = panel.link.LastReply();
  Require(decoded || !reply.Valid, "what cannot be decoded is not valid");
  Require(reply.Address == record.Address && reply.Value == record.Value &&
              reply.Source == record.Source && reply.Group == record.Group,
          "a reply is decoded the same wherever it comes from");

  panel.link.SetDetectionInProgress(true);
  panel.display.log.clear();
  panel.link.ParseReply(input);
  Require(reply.Valid == decoded, "during detection every decoded reply is valid");
  Require(panel.display.log.empty(), "during detection nothing is shown");
}

}  // namespace kalde2
