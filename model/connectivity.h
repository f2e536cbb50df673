#pragma once

#include <array>
#include <cstdint>

#include "link/mod_comms.h"
#include "link/mod_datatypes.h"
#include "model/progress.h"
#include "model/transfer_report.h"

namespace kalde2 {

/// What the unit reports of one source.
struct SourceInfoRecord {
  std::int16_t SourceCode = 0;  ///< value of address 404
  std::int16_t NameIndex =
      255;  ///< value of address 405: index into `InputNames`, 255 = not fitted
};

inline constexpr int kSources = 256;
inline constexpr std::int16_t kNotFitted = 255;

/// The inputs of the connected unit, by source number 0..255: below 32 RGB and DVI, above video.
struct Connectivity {
  std::array<SourceInfoRecord, kSources> SourceInfo;
  std::array<Bool16, kSources> SourceFitted;

  /// @throws Fault for a source number outside 0..255
  [[nodiscard]] bool IsFitted(int source) const;
};

/// Reads the connectivity from the unit.
class ConnectivityReader {
 public:
  ConnectivityReader(Connectivity& connectivity, CommandLink& link, Progress& progress)
      : connectivity_(connectivity), link_(link), progress_(progress) {}

  /// Asks for the four ranges of sources that a unit can have. `DetectionInProgress` is raised from
  /// the start to the end. A source that stays silent looks fitted (its record is all zeros), and
  /// one that refuses gets the previous answer; both are the unit's known behaviour, and the report
  /// tells of them. A failure, the closing of the port for one, ends the read at once, without an
  /// end of the progress: the sources read so far keep their values.
  /// @param product_type not looked at: all products are read alike
  TransferReport ReadConnectivity(std::int32_t product_type);

 private:
  void Reset();
  void ReadSource(int source, TransferReport& report);

  Connectivity& connectivity_;
  CommandLink& link_;
  Progress& progress_;
};

}  // namespace kalde2
