#include "session/operator_queue.h"

#include <algorithm>

#include "link/fault.h"
#include "link/scoped_flag.h"

namespace kalde2 {

bool OperatorQueue::HasKept(std::string_view control) const {
  return std::ranges::any_of(kept_, [control](const Task& kept) {
    return kept.control == control || std::ranges::find(kept.group, control) != kept.group.end();
  });
}

void OperatorQueue::NoteNewest(std::string_view control) const {
  if (running_ != nullptr && running_->control == control && !abandoned_) Note(*running_);
  NoteKept();
}

void OperatorQueue::Abandon() {
  kept_.clear();
  abandoned_ = running_ != nullptr;
  TellBulk();
}

void OperatorQueue::Submit(Task task) {
  if (IsBulk()) return;
  if (IsBusy()) {
    if (task.note) task.note();
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
  {
    const ScopedValue running(running_, &task);
    const ScopedFlag in_bulk(bulk_, task.bulk);
    TellBulk();
    try {
      task.job();
    } catch (const Fault&) {
      // Ends this job only.
    }
    abandoned_ = false;
  }
  TellBulk();
}

void OperatorQueue::TellBulk() {
  if (IsBulk() == told_bulk_) return;
  told_bulk_ = IsBulk();
  if (bulk_listener_) bulk_listener_(told_bulk_);
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
  for (const Task& kept : kept_) Note(kept);
}

void OperatorQueue::Note(const Task& task) {
  try {
    if (task.note) task.note();
  } catch (const Fault&) {
    // The others are noted all the same.
  }
}

}  // namespace kalde2
