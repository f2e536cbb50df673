#include "adapters/end_signals.h"

namespace kalde2 {

// Programs with windows are asked by messages to them, which Qt passes on.
EndSignals::EndSignals() = default;
EndSignals::~EndSignals() = default;

}  // namespace kalde2
