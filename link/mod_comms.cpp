#include "link/mod_comms.h"

#include <algorithm>

#include "link/fault.h"
#include "link/scoped_flag.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

constexpr std::string_view kReplyEnd = "\r";

/// Software flow control off for the life of a counted transaction.
class BinaryTransfer {
 public:
  explicit BinaryTransfer(SerialPort& port) : port_(port) {
    port_.SetHandshaking(Handshaking::kRts);
  }
  ~BinaryTransfer() { port_.SetHandshaking(Handshaking::kRtsXonXoff); }
  BinaryTransfer(const BinaryTransfer&) = delete;
  BinaryTransfer& operator=(const BinaryTransfer&) = delete;

 private:
  SerialPort& port_;
};

}  // namespace

Answer CommandLink::Exchange(const ParameterRequest& request) {
  comms_busy_ = true;
  if (!PortOpen()) return {Outcome::kClosed, {}};
  Outcome outcome = Outcome::kNotBuildable;  // and answered with the previous reply
  std::string reply;
  try {
    if (!SendAndReceive(BuildRequest(request), kReplyEnd, reply, kReplyTimeout, true)) {
      return {PortOpen() ? Outcome::kSilent : Outcome::kClosed, {}};
    }
    outcome = IsErrorReply(reply) ? Outcome::kRefused : Outcome::kAnswered;
    if (outcome == Outcome::kRefused) {
      last_reply_.Valid = false;
    } else {
      ParseReply(reply);
    }
  } catch (const Fault&) {
    // The flag falls all the same.
  }
  comms_busy_ = false;
  return {outcome, last_reply_, std::ranges::count(reply, kReplyEnd.front()) <= 1};
}

ReplyRecord CommandLink::SendParameter(std::int32_t is_read, std::int16_t source,
                                       std::int32_t value, std::int16_t address, std::int16_t group,
                                       std::int16_t index) {
  return Exchange({is_read != 0, source, value, address, group, index}).record;
}

bool CommandLink::SendAndReceive(std::string_view frame, std::string_view terminator,
                                 std::string& reply, milliseconds timeout, bool hex) try {
  const auto is_complete = [&] {
    if (terminator.empty()) return !reply.empty() && reply.back() == '\0';
    return reply.find(terminator) != std::string::npos;
  };
  (void)port_.Input();
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (frame.empty()) return false;
    port_.Output(hex ? HexToWire(frame) : std::string(frame));
    WaitTimer(true, timeout);
    if (AwaitReply(reply, timeout, is_complete)) return Ended(true);
  }
  return Ended(false);
} catch (const Fault&) {
  return false;
}

bool CommandLink::SendAndReceiveCounted(std::string_view frame, std::string& reply,
                                        milliseconds timeout, bool hex) try {
  const BinaryTransfer binary(port_);
  const auto is_complete = [&] {
    reply.erase(0, reply.find(kPacketStart));
    const std::size_t packet = CountedPacket(reply).size();
    if (packet > 0) reply.resize(packet);
    return packet > 0;
  };
  (void)port_.Input();
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    WaitTimer(true, timeout);
    if (!frame.empty()) port_.Output(hex ? HexToWire(frame) : std::string(frame));
    if (AwaitReply(reply, timeout, is_complete)) return frame.empty() || Ended(true);
  }
  return !frame.empty() && Ended(false);
} catch (const Fault&) {
  return false;
}

/// Tells how a request ended. @return `answered`
bool CommandLink::Ended(bool answered) const {
  // A port that was closed in the last wait says nothing of the unit.
  if (observer_ != nullptr && PortOpen()) observer_->RequestEnded(answered);
  return answered;
}

/// Collects one attempt's reply. @return false when its deadline passes @throws Fault from the port
template <typename IsComplete>
bool CommandLink::AwaitReply(std::string& reply, milliseconds timeout, IsComplete is_complete) {
  const ScopedFlag waiting(waiting_);
  reply.clear();
  while (!WaitTimer(false, timeout)) {
    const std::string chunk = port_.Input();
    reply += chunk;
    if (is_complete()) return true;
    if (!chunk.empty()) WaitTimer(true, timeout);
    clock_.ServeEvents(TimeLeft());
  }
  return false;
}

bool CommandLink::WaitTimer(bool start, milliseconds timeout) {
  if (start) {
    deadline_ = Time() + timeout;
    return false;
  }
  return Time() >= deadline_;
}

milliseconds CommandLink::Time() const {
  if (deadlines_ == Deadlines::kMonotonic) return clock_.Monotonic();
  const auto now = clock_.Now().time_since_epoch();
  return std::chrono::duration_cast<milliseconds>(now % std::chrono::hours(1));
}

milliseconds CommandLink::TimeLeft() const {
  return std::max(deadline_ - Time(), milliseconds{1});
}

void CommandLink::ParseReply(std::string_view reply) {
  last_reply_.Valid = false;
  try {
    DecodeReply(reply, last_reply_);
  } catch (const Fault&) {
    return;
  }
  const bool is_parameter =
      last_reply_.Group == kParameterGroup && last_reply_.Index == kParameterIndex;
  if (is_parameter && !detection_in_progress_) {
    sink_.ApplyReply(last_reply_);
  } else {
    last_reply_.Valid = true;
  }
}

bool CommandLink::CollectUnasked() {
  if (comms_busy_) return false;
  try {
    ring_.Store(port_.Input());
  } catch (const Fault&) {
    return false;  // the line is gone, and the listener is about to be told
  }
  return ring_.HasData();
}

bool CommandLink::ProcessUnasked() {
  if (const auto frame = ring_.NextFrame()) ParseReply(*frame);
  return ring_.IsDrained();
}

}  // namespace kalde2
