#include "session/session_status.h"

#include <algorithm>

namespace kalde2 {
namespace {

bool IsWhole(const TransferReport& report) {
  return report.is_complete && std::ranges::none_of(report.skipped, [](const auto& skipped) {
           return skipped.outcome == Outcome::kSilent;
         });
}

}  // namespace

/// The first that holds is told: what stops the operator, what runs, what he still has to do, what
/// has just been done, and what he should know.
std::string StatusText(const SessionFacts& facts) {
  if (!facts.is_open) return {};
  if (facts.is_looking) return "Looking for the unit... Esc stops";
  if (facts.is_silent) return "The unit does not answer";
  if (facts.slot != 0) {
    return "Slot " + std::to_string(facts.slot) + " of " + std::to_string(facts.slot_count);
  }
  if (facts.values == HeldValues::kLoaded) return "Loading sent nothing: Clone > Write does";
  if (facts.has_new_resolutions) return "New resolutions are listed from the next start";
  if (facts.values == HeldValues::kOthers) {
    return "Values have not been read: Clone > Read fetches them";
  }
  return {};
}

void SessionStatus::PortOpened() {
  facts_.is_open = true;
  facts_.is_looking = true;
  Show();
}

void SessionStatus::UnitFound() {
  facts_.is_looking = false;
  Show();
}

void SessionStatus::PortClosed() {
  const bool had_unit = facts_.is_open && !facts_.is_looking;
  const HeldValues kept = had_unit ? HeldValues::kOthers : facts_.values;
  facts_ = {};
  facts_.values = kept;
  Show();
}

void SessionStatus::ValuesRead(const TransferReport& report) {
  if (!facts_.is_open || !IsWhole(report)) return;
  facts_.values = HeldValues::kUnits;
  Show();
}

void SessionStatus::ValuesWritten(const TransferReport& report) {
  // Values that were neither read nor loaded are not read by writing them.
  if (!facts_.is_open || !IsWhole(report) || facts_.values != HeldValues::kLoaded) return;
  facts_.values = HeldValues::kUnits;
  Show();
}

void SessionStatus::FileLoaded(bool is_whole) {
  if (!is_whole && facts_.values != HeldValues::kUnits) return;
  facts_.values = HeldValues::kLoaded;
  Show();
}

void SessionStatus::SlotBegins(std::size_t slot, std::size_t slot_count) {
  facts_.slot = slot;
  facts_.slot_count = slot_count;
  Show();
}

void SessionStatus::ResolutionsSaved() {
  facts_.slot = 0;
  facts_.has_new_resolutions = true;
  Show();
}

void SessionStatus::FetchEnded() {
  facts_.slot = 0;
  Show();
}

void SessionStatus::RequestEnded(bool answered) {
  if (facts_.is_silent == !answered && !facts_.has_new_resolutions) return;
  facts_.is_silent = !answered;
  facts_.has_new_resolutions = false;
  Show();
}

void SessionStatus::Show() {
  std::string text = StatusText(facts_);
  if (text == shown_) return;
  shown_ = std::move(text);
  display_.ShowStatus(shown_);
}

}  // namespace kalde2
