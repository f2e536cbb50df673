#include "model/autoset.h"

#include <array>

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

constexpr std::int16_t kAutosetAddress = 254;
constexpr std::int32_t kStart = 1;
constexpr std::int32_t kFinished = 0;

constexpr int kRounds = 21;

/// The unit needs seconds; asking more often would only disturb it.
constexpr milliseconds kRound{1000};

/// The result stays in view this long.
constexpr milliseconds kShowResult{2000};

/// Left, top, right and bottom shift, input pixel phase.
constexpr std::array<std::int16_t, 5> kAdjustments = {182, 183, 222, 223, 145};

}  // namespace

void Autoset::Run() {
  (void)link_.SendParameter(kWrite, kFirstSourceCode, kStart, kAutosetAddress);
  if (!link_.PortOpen()) return;
  progress_.Show();
  progress_.SetCaption("Waiting for Autoset to finish");
  progress_.SetRange(0, kRounds);
  SleepFor(kRound);
  AwaitEnd();
  if (link_.PortOpen()) ReadAdjustments();
  if (link_.PortOpen()) SleepFor(kShowResult);
  // What the operator did in the last sleep still meets a running operation.
  clock_.ServeEvents(milliseconds::zero());
  progress_.Hide();
}

void Autoset::AwaitEnd() {
  for (int round = 0; round < kRounds && link_.PortOpen(); ++round) {
    const ReplyRecord status = link_.SendParameter(kRead, kFirstSourceCode, 0, kAutosetAddress);
    if (!link_.PortOpen() || status.Value == kFinished) return;
    SleepFor(kRound);
    progress_.SetValue(round);
  }
}

void Autoset::SleepFor(milliseconds duration) {
  progress_.PaintNow();
  clock_.Sleep(duration);
}

void Autoset::ReadAdjustments() {
  progress_.SetCaption("Autoset complete reading adjustments");
  for (const std::int16_t address : kAdjustments) {
    if (!link_.PortOpen()) return;
    (void)link_.SendParameter(kRead, kFirstSourceCode, 0, address);
  }
}

}  // namespace kalde2
