#include <QSocketNotifier>

#include "adapters/end_signals.h"
#include "adapters/signal_pipe.h"

namespace kalde2 {
namespace {

/// The pipe, and under it who reads it, who therefore goes first.
struct PipeReader : SignalPipe, QSocketNotifier {
  explicit PipeReader(QObject* parent)
      : SignalPipe(Ignored::kStays), QSocketNotifier(Descriptor(), Read, parent) {}
};

}  // namespace

EndSignals::EndSignals() {
  auto* const reader = new PipeReader(this);
  connect(reader, &QSocketNotifier::activated, this, [this, reader] {
    reader->Drain();
    emit Raised();
  });
}

EndSignals::~EndSignals() = default;

}  // namespace kalde2
