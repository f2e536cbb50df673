#pragma once

#include <utility>

#include "link/fault.h"

namespace kalde2 {

/// Runs one statement of a procedure that goes on after errors: a fault skips what is left of it.
template <typename Statement>
void SkipOnFault(Statement&& statement) {
  try {
    std::forward<Statement>(statement)();
  } catch (const Fault&) {
    // The next statement of the caller runs.
  }
}

}  // namespace kalde2
