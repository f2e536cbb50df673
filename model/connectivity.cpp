#include "model/connectivity.h"

#include <string>
#include <string_view>

#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

constexpr int kBarMaximum = 255;

struct SourceRange {
  int first;
  int last;
  std::string_view caption;
  int shown_from;  ///< subtracted from the source number in the caption
};

// The two analog ranges count on from each other and the SDI range ends at 90: intended.
constexpr SourceRange kRanges[] = {
    {16, 31, "Reading Connectivity... RGB/DVI Sources ", 16},
    {48, 63, "Reading Connectivity... Analog Sources ", 48},
    {64, 79, "Reading Connectivity... Analog Sources ", 48},
    {80, 90, "Reading Connectivity... SDI Sources ", 80},
};

/// `DetectionInProgress` from the start of the reading to its end, whatever it was before.
class DetectionPhase {
 public:
  explicit DetectionPhase(CommandLink& link) : link_(link) { link_.SetDetectionInProgress(true); }
  ~DetectionPhase() { link_.SetDetectionInProgress(false); }
  DetectionPhase(const DetectionPhase&) = delete;
  DetectionPhase& operator=(const DetectionPhase&) = delete;

 private:
  CommandLink& link_;
};

}  // namespace

bool Connectivity::IsFitted(int source) const {
  if (source < 0 || source >= kSources) {
    throw Fault("source number " + std::to_string(source) + " is outside 0..255");
  }
  return SourceFitted[static_cast<std::size_t>(source)];
}

TransferReport ConnectivityReader::ReadConnectivity(std::int32_t /*product_type*/) {
  TransferReport report;
  try {
    const DetectionPhase detection(link_);
    progress_.Begin();
    progress_.SetCaption("Reading Connectivity... ");
    progress_.SetRange(0, kBarMaximum);
    Reset();
    for (const SourceRange& range : kRanges) {
      for (int source = range.first; source <= range.last; ++source) {
        const std::string number = std::to_string(source - range.shown_from);
        progress_.SetCaption(std::string(range.caption) + number);
        progress_.SetValue(source);
        ReadSource(source, report);
      }
    }
    progress_.SetValue(kBarMaximum);
    report.is_complete = true;
    progress_.End(true);
  } catch (const Fault&) {
    // Ends here, with the progress as it is.
  }
  return report;
}

/// All sources but the last: 255 keeps what it has, which is intended.
void ConnectivityReader::Reset() {
  for (std::size_t source = 0; source < kSources - 1; ++source) {
    connectivity_.SourceInfo[source] = {};
    connectivity_.SourceFitted[source] = false;
  }
}

void ConnectivityReader::ReadSource(int source, TransferReport& report) {
  const auto read = [&](Address address) {
    const ParameterRequest request = {
        .is_read = true, .source = static_cast<std::int16_t>(source), .address = address};
    const Answer answer = link_.Exchange(request);
    // On a port that was closed meanwhile every source would look fitted.
    if (report.Count(request, answer.outcome) == Outcome::kClosed) {
      throw Fault("the port was closed");
    }
    return answer.record.Value;
  };
  // Both are read before either is stored: a source that is half read keeps its reset values.
  const std::int32_t source_code = read(address::kSourceCode);
  const std::int32_t name_index = read(address::kNameIndex);
  const SourceInfoRecord info{NarrowToInt16(source_code), NarrowToInt16(name_index)};
  connectivity_.SourceInfo[static_cast<std::size_t>(source)] = info;
  connectivity_.SourceFitted[static_cast<std::size_t>(source)] = info.NameIndex != kNotFitted;
}

}  // namespace kalde2
