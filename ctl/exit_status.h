#pragma once

#include <string>

#include "link/fault.h"

namespace kalde2 {

/// How a command ended, as the shell is told.
enum class ExitStatus : int {
  kDone = 0,
  kDifferent = 1,      ///< differences were found, or values not taken
  kUsage = 2,          ///< wrong usage, or a file that cannot be read or written
  kPort = 3,           ///< the port cannot be opened, or its line went away
  kNoUnit = 4,         ///< no unit answers, or one that cannot do this
  kRefused = 5,        ///< the unit refused a request
  kInterrupted = 130,  ///< by Ctrl+C, or another signal to end
};

/// Ends a command before its end: with this status and one line for the user, which tells the cure.
class CommandFault : public Fault {
 public:
  CommandFault(ExitStatus status, const std::string& what) : Fault(what), status_(status) {}

  [[nodiscard]] ExitStatus Status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace kalde2
