/// What a panel sends to the simulated unit; "|" parts the portions in which it arrives.

#include <memory>

#include "link/frame_codec.h"
#include "simulator/unit.h"
#include "tests/fuzz/fuzz_target.h"
#include "trace/trace_file.h"

namespace kalde2 {
namespace {

/// A parameter request that the unit takes is what the panel's own codec makes of its fields.
void RequireSameRequest(std::string_view frame) {
  const Reading<UnitRequest> reading = ReadRequest(frame);
  Require(reading.request.has_value() == reading.problem.empty(), "a request or a problem");
  if (!reading.request || reading.request->is_count_query) return;
  const UnitRequest& request = *reading.request;
  constexpr int kResolution = 131;  // counted from 1 on the line
  if (request.address < kFirstAddress || request.address == kResolution) return;
  const std::string hex = BuildRequest({.is_read = request.is_read,
                                        .source = static_cast<std::int16_t>(request.source),
                                        .value = request.value,
                                        .address = static_cast<std::int16_t>(request.address)});
  Require(HexToText(hex) == frame, "both codecs agree");
}

}  // namespace

void FuzzOne(std::string_view input) {
  RequireSameRequest(input);
  (void)ReadSlotQuery(input);
  (void)Printable(input);
  const auto unit = std::make_unique<SimulatedUnit>(UnitOptions{});
  for (const std::string_view portion : Pieces(input, '|')) {
    for (const LineAction& action : unit->Receive(portion)) {
      Require(action.bytes == kErrorReply || ReadOwnReply(action.bytes) ||
                  CountedPacket(action.bytes) == action.bytes,
              "a unit without faults answers in whole frames");
      Require(!unit->DescribeReply(action.bytes).empty(), "every answer has a meaning");
    }
  }
  unit->DropPartialRequest();
  Require(!unit->HasPartialRequest(), "nothing is left of a dropped request");
}

}  // namespace kalde2
