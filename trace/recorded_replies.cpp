#include "trace/recorded_replies.h"

#include <algorithm>

#include "link/frame_codec.h"
#include "trace/frame_cutter.h"

namespace kalde2 {
namespace {

constexpr char kFrameEnd = '\r';

/// From its start to "\r"; empty where it does not stand in the text as a whole.
std::string_view FindFrame(std::string_view text, std::string_view start) {
  const std::size_t from = std::min(text.find(start), text.size());
  const std::size_t end = text.find(kFrameEnd, from);
  return end == std::string_view::npos ? std::string_view{} : text.substr(from, end + 1 - from);
}

/// The answer itself among what has come for a request; empty where it is not there.
std::string_view FindAnswer(std::string_view request, std::string_view came) {
  if (request.starts_with(kPacketStart)) return CountedPacket(came);
  // It begins like the request, source and address included, but for the command: "F84" or "F04".
  constexpr std::size_t kCommand = 1;
  constexpr std::size_t kThroughAddress = 11;
  std::string start(request.substr(0, kThroughAddress));
  start[kCommand] = start[kCommand] == '8' ? 'C' : '4';
  const std::string_view answer = FindFrame(came, start);
  return answer.empty() ? FindFrame(came, kRefusal) : answer;
}

std::string WithoutUnaskedFrames(std::string_view text) {
  constexpr std::string_view kUnaskedStart = "F44";
  constexpr std::size_t kUnaskedLength = 20;
  FrameCutter cutter;
  std::string kept;
  for (const FrameCutter::Piece& piece : cutter.Put(text)) {
    const bool is_unasked =
        piece.bytes.starts_with(kUnaskedStart) && piece.bytes.size() == kUnaskedLength;
    if (!is_unasked) kept += piece.bytes;
  }
  return kept + cutter.TakeRest();
}

std::string ReplyIn(std::string_view request, std::string_view came) {
  const std::string_view answer = FindAnswer(request, came);
  if (answer.empty()) return std::string(came);
  const auto before = static_cast<std::size_t>(answer.data() - came.data());
  return WithoutUnaskedFrames(came.substr(0, before)) + std::string(answer) +
         WithoutUnaskedFrames(came.substr(before + answer.size()));
}

}  // namespace

RecordedReplies::RecordedReplies(const std::vector<TraceEvent>& events) {
  FrameCutter cutter;
  std::string request;  // none yet
  std::string came;
  for (const TraceEvent& event : events) {
    if (event.direction == Direction::kFromUnit) {
      came += event.bytes;
      continue;
    }
    for (const FrameCutter::Piece& piece : cutter.Put(event.bytes)) {
      if (!piece.is_whole) continue;
      if (!request.empty()) Keep(request, came);
      request = piece.bytes;
      came.clear();
    }
  }
  if (!request.empty() && !came.empty()) Keep(request, came);
}

void RecordedReplies::Keep(const std::string& request, std::string_view came) {
  by_request_[request].in_order.push_back(ReplyIn(request, came));
}

std::optional<std::string> RecordedReplies::Next(std::string_view request) {
  const auto found = by_request_.find(request);
  if (found == by_request_.end()) return std::nullopt;
  auto& [in_order, given] = found->second;
  return in_order[std::min(given++, in_order.size() - 1)];
}

}  // namespace kalde2
