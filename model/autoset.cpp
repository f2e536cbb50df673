#include "model/autoset.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

constexpr std::int32_t kStart = 1;
constexpr std::int32_t kFinished = 0;

constexpr int kRounds = 21;

/// The unit needs seconds; asking more often would only disturb it.
constexpr milliseconds kRound{1000};

}  // namespace

TransferReport Autoset::Run() {
  TransferReport report;
  const Answer start = link_.Exchange({.value = kStart, .address = address::kAutoset});
  if (start.outcome == Outcome::kClosed) return report;
  progress_.Begin();
  progress_.SetCaption("Waiting for Autoset to finish");
  progress_.SetRange(0, kRounds);
  SleepFor(kRound);
  if (AwaitEnd()) ReadAdjustments(report);
  progress_.End(report.is_complete);
  return report;
}

/// @return false when the port was closed meanwhile
bool Autoset::AwaitEnd() {
  for (int round = 0; round < kRounds; ++round) {
    const Answer status = Ask(address::kAutoset);
    if (status.outcome == Outcome::kClosed) return false;
    if (status.record.Value == kFinished) return true;
    SleepFor(kRound);
    progress_.SetValue(round);
  }
  return true;
}

void Autoset::ReadAdjustments(TransferReport& report) {
  progress_.SetCaption("Autoset complete reading adjustments");
  for (const Address address : kAutosetAdjustments) {
    const Outcome outcome = Ask(address).outcome;
    if (report.Count({.address = address}, outcome) == Outcome::kClosed) return;
  }
  report.is_complete = true;
}

Answer Autoset::Ask(Address address) {
  return link_.Exchange({.is_read = true, .address = address});
}

void Autoset::SleepFor(milliseconds duration) {
  progress_.SleepFollows();
  clock_.Sleep(duration);
}

}  // namespace kalde2
