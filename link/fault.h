#pragma once

#include <stdexcept>
#include <string>

namespace kalde2 {

/// The one fault type of the system: an index outside its table, a number that does not fit its
/// width, a line of a file that cannot be read, the use of a closed port. Where a step is described
/// as skipped or ended by a fault, this is what is thrown and caught. Outcomes that an operation is
/// expected to have (time-out, refusal, cancel) are values, never a Fault.
class Fault : public std::runtime_error {
 public:
  explicit Fault(const std::string& what) : std::runtime_error(what) {}
};

}  // namespace kalde2
