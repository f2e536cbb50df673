#include "panel/operator_queue.h"

#include <algorithm>

#include "link/fault.h"
#include "link/scoped_flag.h"

namespace kalde2 {

bool OperatorQueue::HasKept(std::string_view control) const {
  return std::ranges::any_of(kept_, [control](const Kept& kept) {
    return kept.control.starts_with(control) &&
           (kept.control.size() == control.size() || kept.control[control.size()] == kPartMark);
  });
}

void OperatorQueue::Abandon() {
  kept_.clear();
  abandoned_ = running_;
}

void OperatorQueue::Submit(std::string_view control, Job job, bool bulk) {
  if (IsBulk()) return;
  if (IsBusy()) {
    Keep(control, std::move(job), bulk);
    return;
  }
  Run(job, bulk);
  RunKept();
}

void OperatorQueue::Keep(std::string_view control, Job job, bool bulk) {
  const auto same = std::ranges::find(kept_, control, &Kept::control);
  if (same != kept_.end()) {
    same->job = std::move(job);
  } else {
    kept_.push_back({std::string(control), std::move(job), bulk});
  }
}

void OperatorQueue::Run(const Job& job, bool bulk) {
  const ScopedFlag running(running_);
  const ScopedFlag in_bulk(bulk_, bulk);
  try {
    job();
  } catch (const Fault&) {
    // Ends this job only.
  }
  abandoned_ = false;
}

void OperatorQueue::RunKept() {
  while (!kept_.empty()) {
    const Kept next = std::move(kept_.front());
    kept_.pop_front();
    Run(next.job, next.bulk);
  }
}

}  // namespace kalde2
