#pragma once

#include "link/clock.h"
#include "link/mod_comms.h"
#include "model/progress_view.h"

namespace kalde2 {

/// Lets the unit adjust itself to its RGB source and reads back what it found.
class Autoset {
 public:
  Autoset(CommandLink& link, Clock& clock, ProgressView& progress)
      : link_(link), clock_(clock), progress_(progress) {}

  /// Starts autoset, waits for it behind the progress window - bounded to about 22 seconds - and
  /// reads the five adjustments. The waits between the reads are plain sleeps: nothing else is
  /// served in them. When the port is closed meanwhile, it ends there.
  void Run();

 private:
  void AwaitEnd();
  void SleepFor(std::chrono::milliseconds duration);
  void ReadAdjustments();

  CommandLink& link_;
  Clock& clock_;
  ProgressView& progress_;
};

}  // namespace kalde2
