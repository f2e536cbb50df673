#include "panel/shown_progress.h"

#include <chrono>

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

/// The finished bar stays in view this long.
constexpr milliseconds kShowResult{2000};

}  // namespace

void ShownProgress::End(bool is_complete) {
  if (is_complete) ShowResult();
  window_.Hide();
}

void ShownProgress::ShowResult() {
  if (result_ == Result::kStaysServed) {
    const milliseconds end = clock_.Monotonic() + kShowResult;
    for (milliseconds left = kShowResult; left > milliseconds::zero();
         left = end - clock_.Monotonic()) {
      clock_.ServeEvents(left);
    }
  } else if (result_ == Result::kStaysSlept) {
    window_.PaintNow();
    clock_.Sleep(kShowResult);
    // What the operator did in the sleep still meets a running operation.
    clock_.ServeEvents(milliseconds::zero());
  }
}

}  // namespace kalde2
