#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "link/clock.h"
#include "link/frame_codec.h"
#include "link/mod_datatypes.h"
#include "link/receive_ring.h"
#include "link/serial_port.h"

namespace kalde2 {

/// Read flag of a request; any value but 0 reads.
inline constexpr std::int32_t kRead = 128;
inline constexpr std::int32_t kWrite = 0;

/// Silence after which a request is sent again: the unit answers within a few milliseconds, and
/// even its slowest operations answer well inside a second.
inline constexpr std::chrono::milliseconds kReplyTimeout{1000};

/// Sends of one request before it is given up.
inline constexpr int kAttempts = 3;

/// What became of a request.
enum class Outcome : std::uint8_t {
  kAnswered,      ///< with a reply; whether that was well-formed is its record's `Valid`
  kRefused,       ///< with an error reply
  kSilent,        ///< not at all, in as many sends as a request has
  kClosed,        ///< the port was closed or lost, before or meanwhile
  kNotBuildable,  ///< it has no frame; nothing was sent
};

/// What `CommandLink::Exchange` brings.
struct Answer {
  Outcome outcome;
  ReplyRecord record;    ///< as `CommandLink::SendParameter` returns it
  bool is_alone = true;  ///< no other frame came with it, whose fields it may have taken
};

/// Who brings a request to the unit and its answer back: the link, or who stands before it.
class Exchanger {
 public:
  virtual ~Exchanger() = default;

  /// One complete transaction, and what became of it.
  [[nodiscard]] virtual Answer Exchange(const ParameterRequest& request) = 0;
};

/// Where decoded replies go.
class ReplySink {
 public:
  virtual ~ReplySink() = default;

  /// Stores a decoded value and shows it. `Valid` tells whether that went through.
  virtual void ApplyReply(ReplyRecord& record) = 0;
};

/// Who wants to know whether the unit speaks.
class LinkObserver {
 public:
  virtual ~LinkObserver() = default;

  /// A request was answered, be it with a refusal, or given up after its last time-out. Of one that
  /// was never sent, or that a closed port or a fault ends, nothing is told.
  virtual void RequestEnded(bool answered) = 0;
};

/// The time by which a link knows that a reply stays away.
enum class Deadlines : std::uint8_t {
  kWithinTheHour,  ///< milliseconds of the system time's hour, see `CommandLink::WaitTimer`
  kMonotonic,      ///< one that is never set
};

/// The transactions with the unit. One request is under way at a time; waiting for its reply serves
/// user-interface events, so that anything may run inside a wait, a nested transaction included:
/// the deadline and the last reply are shared by all.
class CommandLink : public Exchanger {
 public:
  CommandLink(SerialPort& port, Clock& clock, ReplySink& sink,
              Deadlines deadlines = Deadlines::kWithinTheHour)
      : port_(port), clock_(clock), sink_(sink), deadlines_(deadlines) {}

  /// Who is told how each request ends from now on, nullptr for nobody.
  void SetObserver(LinkObserver* observer) { observer_ = observer; }

  [[nodiscard]] Answer Exchange(const ParameterRequest& request) override;

  /// One complete transaction, for those who do not ask what became of it.
  /// @param is_read not 0 for a read; `value` counts for writes only
  /// @return a record of zeros when the port is closed or the unit stays silent; the last reply
  ///   otherwise, with `Valid` false for a refusal (its other fields are then the previous reply's)
  ReplyRecord SendParameter(std::int32_t is_read, std::int16_t source, std::int32_t value,
                            std::int16_t address, std::int16_t group = kParameterGroup,
                            std::int16_t index = kParameterIndex);

  /// Sends a frame and collects the reply until it holds the terminator (with an empty terminator:
  /// until it ends with the character 0). Up to three sends; characters that arrive restart the
  /// time-out.
  /// @param hex the frame is hex text, two digits a character
  /// @return false after the last time-out, for an empty frame and on a fault
  [[nodiscard]] bool SendAndReceive(std::string_view frame, std::string_view terminator,
                                    std::string& reply, std::chrono::milliseconds timeout,
                                    bool hex);

  /// As `SendAndReceive` for replies that begin with "S" and a length byte; what arrives before
  /// the "S" or behind the packet is dropped. With an empty frame it only listens. Software flow
  /// control is suspended meanwhile: it would swallow the bytes 0x11 and 0x13 of a packet.
  [[nodiscard]] bool SendAndReceiveCounted(std::string_view frame, std::string& reply,
                                           std::chrono::milliseconds timeout, bool hex);

  /// Starts the shared deadline (result false) or tells whether it has passed. Unless the link goes
  /// by a monotonic time, milliseconds are counted within the hour: a deadline set within the last
  /// time-out of an hour is never reached, and the wait then ends only with the reply. That is
  /// intended.
  bool WaitTimer(bool start, std::chrono::milliseconds timeout);

  /// Decodes a reply into `LastReply`, then hands it to the sink, or marks it valid and leaves it
  /// to the caller during detection and for other groups than the parameters'.
  void ParseReply(std::string_view reply);

  [[nodiscard]] const ReplyRecord& LastReply() const { return last_reply_; }

  /// True while a transaction owns the port; the receive event ignores input then. It stays raised
  /// after a time-out and on a closed port, until a transaction is answered.
  [[nodiscard]] bool CommsBusy() const { return comms_busy_; }
  void SetCommsBusy(bool busy) { comms_busy_ = busy; }

  /// Raised during detection and the reading of the connectivity: replies are not applied then.
  [[nodiscard]] bool DetectionInProgress() const { return detection_in_progress_; }
  void SetDetectionInProgress(bool on) { detection_in_progress_ = on; }

  /// Takes what arrives unasked into the ring, unless a transaction owns the port.
  /// @return true when there is something to cut frames from
  bool CollectUnasked();

  /// Cuts the next frame out of the ring and decodes it. @return true when nothing is left
  bool ProcessUnasked();

  /// Forgets what is in the ring: it is of a unit that is gone.
  void ForgetUnasked() { ring_.Clear(); }

  /// True inside the wait of a transaction, whatever became of `CommsBusy`.
  [[nodiscard]] bool IsWaiting() const { return waiting_; }

  [[nodiscard]] bool PortOpen() const { return port_.PortOpen(); }

 private:
  using Milliseconds = std::chrono::milliseconds;

  [[nodiscard]] Milliseconds Time() const;
  [[nodiscard]] Milliseconds TimeLeft() const;
  template <typename IsComplete>
  [[nodiscard]] bool AwaitReply(std::string& reply, Milliseconds timeout, IsComplete is_complete);
  [[nodiscard]] bool Ended(bool answered) const;

  SerialPort& port_;
  Clock& clock_;
  ReplySink& sink_;
  Deadlines deadlines_;
  LinkObserver* observer_ = nullptr;
  ReceiveRing ring_;
  ReplyRecord last_reply_;
  Milliseconds deadline_{0};
  bool comms_busy_ = false;
  bool detection_in_progress_ = false;
  bool waiting_ = false;
};

}  // namespace kalde2
