#include "session/operator_queue.h"

#include <algorithm>

#include "link/fault.h"
#include "link/scoped_flag.h"

namespace kalde2 {

bool OperatorQueue::HasKept(std::string_view control) const {
  return std::ranges::any_of(kept_, [control](const Task& kept) {
    return kept.control.starts_with(control) &&
           (kept.control.size() == control.size() || kept.control[control.size()] == kPartMark);
  });
}

void OperatorQueue::Abandon() {
  kept_.clear();
  abandoned_ = running_;
}

void OperatorQueue::Submit(Task task) {
  if (IsBulk()) return;
  if (task.note) task.note();
  if (running_) {
    Keep(std::move(task));
    return;
  }
  Run(task);
  RunKept();
}

void OperatorQueue::Keep(Task task) {
  const auto same = std::ranges::find(kept_, task.control, &Task::control);
  if (same != kept_.end()) {
    *same = std::move(task);
  } else {
    kept_.push_back(std::move(task));
  }
}

void OperatorQueue::Run(const Task& task) {
  const ScopedFlag running(running_);
  const ScopedFlag in_bulk(bulk_, task.bulk);
  try {
    task.job();
  } catch (const Fault&) {
    // Ends this job only.
  }
  abandoned_ = false;
}

void OperatorQueue::RunKept() {
  while (!kept_.empty()) {
    NoteKept();
    const Task next = std::move(kept_.front());
    kept_.pop_front();
    Run(next);
  }
}

void OperatorQueue::NoteKept() const {
  for (const Task& kept : kept_) {
    try {
      if (kept.note) kept.note();
    } catch (const Fault&) {
      // The others are noted all the same.
    }
  }
}

}  // namespace kalde2
