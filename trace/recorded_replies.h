#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "trace/trace_file.h"

namespace kalde2 {

/// What a unit answers to a request that it does not take.
inline constexpr std::string_view kRefusal = "F0000\r";

/// What a recorded unit has answered. A request is a frame ("F" to "\r") or a packet ("S", a length
/// byte, as many bytes) to the unit; its reply is all that came back before the next one, faults
/// and silence included, however long it took. Two things are no part of it:
///  - frames that the unit sent unasked. They look like the answer to a write; so, where the answer
///    itself is there, every other frame of that kind is left out.
///  - the silence behind a request that the trace ends with: the reply may have come later.
class RecordedReplies {
 public:
  explicit RecordedReplies(const std::vector<TraceEvent>& events);

  /// The first recorded reply to the same request that has not been given yet, later the last one;
  /// empty for silence.
  /// @return nullopt for a request that was never recorded
  [[nodiscard]] std::optional<std::string> Next(std::string_view request);

 private:
  struct Replies {
    std::vector<std::string> in_order;
    std::size_t given = 0;
  };

  void Keep(const std::string& request, std::string_view came);

  std::map<std::string, Replies, std::less<>> by_request_;
};

}  // namespace kalde2
