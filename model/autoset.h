#pragma once

#include <array>
#include <chrono>

#include "link/clock.h"
#include "link/mod_comms.h"
#include "model/progress.h"
#include "model/transfer_report.h"

namespace kalde2 {

/// What the unit finds by itself.
inline constexpr std::array kAutosetAdjustments = {address::kLeftShift, address::kTopShift,
                                                   address::kRightShift, address::kBottomShift,
                                                   address::kInputPixelPhase};

/// Lets the unit adjust itself to its RGB sources and reads back what it found.
class Autoset {
 public:
  Autoset(Exchanger& link, Clock& clock, Progress& progress)
      : link_(link), clock_(clock), progress_(progress) {}

  /// Starts the unit's autoset, asks once a second, 21 times at most, whether it has finished, and
  /// reads the five adjustments. Sleeps between the questions: nothing else is served then. When
  /// the port is closed meanwhile, it ends there.
  /// @return what became of the reading of the adjustments
  TransferReport Run();

 private:
  [[nodiscard]] Answer Ask(Address address);
  [[nodiscard]] bool AwaitEnd();
  void ReadAdjustments(TransferReport& report);
  void SleepFor(std::chrono::milliseconds duration);

  Exchanger& link_;
  Clock& clock_;
  Progress& progress_;
};

}  // namespace kalde2
