#pragma once

#include <functional>
#include <list>
#include <string>
#include <string_view>

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

  static constexpr char kPartMark = ':';

  /// Runs a job, or keeps it, replacing the one that is kept for the same control. A Fault ends the
  /// job without a word.
  /// @param note puts down what the operator wants: at once, and again before each job that is run
  ///   while this one is kept, for the replies to older requests may have overwritten it
  /// @throws Fault from the first `note`; nothing is run or kept then
  void Do(std::string_view control, Job job, Job note = {}) {
    Submit({std::string(control), std::move(job), std::move(note), false});
  }

  /// The same for a bulk operation.
  void DoInBulk(std::string_view control, Job job) {
    Submit({std::string(control), std::move(job), {}, true});
  }

  /// True while a bulk operation runs: input to the unit's controls does nothing.
  [[nodiscard]] bool IsBulk() const { return bulk_ && !abandoned_; }

  /// True while a newer change of the control waits for its turn, under its own name or under one
  /// of its parts ("arr_zoompan:159").
  [[nodiscard]] bool HasKept(std::string_view control) const;

  /// Forgets what is kept and lets the running operation unwind: the connection is gone. What is
  /// asked for from here on is kept and done after it.
  void Abandon();

 private:
  struct Task {
    std::string control;
    Job job;
    Job note;
    bool bulk;
  };

  void Submit(Task task);
  void Keep(Task task);
  void Run(const Task& task);
  void RunKept();
  void NoteKept() const;

  std::list<Task> kept_;
  bool running_ = false;
  bool bulk_ = false;
  bool abandoned_ = false;
};

}  // namespace kalde2
