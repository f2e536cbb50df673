#pragma once

#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace kalde2 {

/// Runs what the operator asks of the unit, one thing at a time.
///
/// Waiting for a reply serves events, so the operator may act again in the midst of a transaction.
/// Nothing nests: what he changes meanwhile is kept and done right after, in order of first change
/// and only the newest of each control. While a bulk operation runs (opening, clone, fetch,
/// autoset) what he does to the unit's controls is dropped.
class OperatorQueue {
 public:
  using Job = std::function<void()>;

  /// Runs a job, or keeps it, replacing the one that is kept for the same control. A Fault ends the
  /// job without a word.
  /// @param note puts down what the operator wants, where the job has to wait: at once, and again
  ///   before each job that is run while this one is kept, for the replies to older requests may
  ///   have overwritten it
  /// @param group further controls that the job changes
  /// @throws Fault from the first `note`; nothing is kept then
  void Do(std::string_view control, Job job, Job note = {}, std::vector<std::string> group = {}) {
    Submit({std::string(control), std::move(job), std::move(note), std::move(group), false});
  }

  /// The same for a bulk operation.
  void DoInBulk(std::string_view control, Job job) {
    Submit({std::string(control), std::move(job), {}, {}, true});
  }

  /// True while a bulk operation runs: input to the unit's controls does nothing.
  [[nodiscard]] bool IsBulk() const { return bulk_ && !abandoned_; }

  /// Who is told when `IsBulk` changes, nobody with an empty one.
  void SetBulkListener(std::function<void(bool is_bulk)> listener) {
    bulk_listener_ = std::move(listener);
  }

  /// True while what is asked for has to wait.
  [[nodiscard]] bool IsBusy() const { return running_ != nullptr; }

  /// True while a newer change of the control waits for its turn, its own or that of a group.
  [[nodiscard]] bool HasKept(std::string_view control) const;

  /// Puts down what the operator wants of a control, be it on its way to the unit, and all that
  /// waits: for a change that is reckoned from the one before.
  void NoteNewest(std::string_view control) const;

  /// The name of a part of a control that is sent on its own ("arr_zoompan:159").
  [[nodiscard]] static std::string PartName(std::string_view control, int address) {
    return std::string(control) + ":" + std::to_string(address);
  }

  /// Forgets what is kept and lets the running operation unwind: the connection is gone. What is
  /// asked for from here on is kept and done after it.
  void Abandon();

 private:
  struct Task {
    std::string control;
    Job job;
    Job note;
    std::vector<std::string> group;
    bool bulk;
  };

  void Submit(Task task);
  void Keep(Task task);
  void Run(const Task& task);
  void RunKept();
  void TellBulk();
  void NoteKept() const;
  static void Note(const Task& task);

  std::list<Task> kept_;
  const Task* running_ = nullptr;
  std::function<void(bool)> bulk_listener_;
  bool told_bulk_ = false;
  bool bulk_ = false;
  bool abandoned_ = false;
};

}  // namespace kalde2
