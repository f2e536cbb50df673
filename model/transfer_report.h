#pragma once

#include <vector>

#include "link/mod_comms.h"

namespace kalde2 {

/// What became of the requests of a transfer.
struct TransferReport {
  /// A request without an answer.
  struct Skipped {
    Address address;
    std::int16_t source;  ///< as it was asked for: a source code, or a source number for inputs
    Outcome outcome;
  };

  int asked = 0;
  int answered = 0;
  std::vector<Skipped> skipped;
  bool is_complete = false;  ///< false when the port was closed or a fault ended it before its end

  /// Counts a request. @return its outcome
  Outcome Count(const ParameterRequest& request, Outcome outcome) {
    ++asked;
    if (outcome == Outcome::kAnswered) {
      ++answered;
    } else {
      skipped.push_back({request.address, request.source, outcome});
    }
    return outcome;
  }
};

}  // namespace kalde2
