#include "model/connectivity.h"

#include <string>
#include <string_view>

#include "link/fault.h"
#include "link/numbers.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

constexpr std::int16_t kSourceCodeAddress = 404;
constexpr std::int16_t kNameIndexAddress = 405;

constexpr int kBarMaximum = 255;

/// The finished bar stays in view this long.
constexpr milliseconds kShowResult{2000};

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

ConnectivityReader::ConnectivityReader(Connectivity& connectivity, CommandLink& link, Clock& clock,
                                       ProgressView& progress, RefreshTimer& refresh)
    : connectivity_(connectivity),
      link_(link),
      clock_(clock),
      progress_(progress),
      refresh_(refresh) {}

void ConnectivityReader::ReadConnectivity(std::int32_t /*product_type*/) try {
  const DetectionPhase detection(link_);
  refresh_.Disable();
  progress_.Show();
  progress_.SetCaption("Reading Connectivity... ");
  progress_.SetRange(0, kBarMaximum);
  Reset();
  for (const SourceRange& range : kRanges) {
    for (int source = range.first; source <= range.last; ++source) {
      progress_.SetCaption(std::string(range.caption) + std::to_string(source - range.shown_from));
      progress_.SetValue(source);
      ReadSource(source);
    }
  }
  progress_.SetValue(kBarMaximum);
  ServeFor(kShowResult);
  progress_.Hide();
} catch (const Fault&) {
  // Ends here without a message; the progress window stays.
}

/// All sources but the last: 255 keeps what it has, which is intended.
void ConnectivityReader::Reset() {
  for (std::size_t source = 0; source < kSources - 1; ++source) {
    connectivity_.SourceInfo[source] = {};
    connectivity_.SourceFitted[source] = false;
  }
}

void ConnectivityReader::ReadSource(int source) {
  const auto read = [&](std::int16_t address) {
    const std::int32_t value =
        link_.SendParameter(kRead, static_cast<std::int16_t>(source), 0, address).Value;
    // On a port that was closed meanwhile every source would look fitted.
    if (!link_.PortOpen()) throw Fault("the port was closed");
    return value;
  };
  // Both are read before either is stored: a source that is half read keeps its reset values.
  const std::int32_t source_code = read(kSourceCodeAddress);
  const std::int32_t name_index = read(kNameIndexAddress);
  const SourceInfoRecord info{NarrowToInt16(source_code), NarrowToInt16(name_index)};
  connectivity_.SourceInfo[static_cast<std::size_t>(source)] = info;
  connectivity_.SourceFitted[static_cast<std::size_t>(source)] = info.NameIndex != kNotFitted;
}

void ConnectivityReader::ServeFor(milliseconds duration) {
  const milliseconds end = clock_.Monotonic() + duration;
  for (milliseconds left = duration; left > milliseconds::zero(); left = end - clock_.Monotonic()) {
    clock_.ServeEvents(left);
  }
}

}  // namespace kalde2
