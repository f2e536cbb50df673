#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kalde2 {

/// Something that the unit does on its line, `after` the arrival of the request.
struct LineAction {
  std::chrono::milliseconds after{0};
  std::string bytes;     ///< sent in one piece
  bool hang_up = false;  ///< the line goes away instead
};

/// Ways in which a unit or its line misbehaves.
enum class FaultKind {
  kSilent,
  kSilentFor,
  kIgnore,
  kLate,
  kSplit,
  kNoiseBefore,
  kNoiseInside,
  kNoiseAfter,
  kErrorReply,
  kRefuse,
  kShortFrame,
  kShortPacket,
  kWrongAddress,
  kFlowBytes,
  kStrayXoff,
  kUnasked,
  kHangUpBefore,
  kHangUpDuring,
  kHangUpAfter,
};

/// What a number behind a fault's name counts or names; each kind has one word in the help texts.
enum class FaultNumber {
  kNone,  ///< the fault takes no such number
  kCount,
  kAddress,
  kMilliseconds,
  kPieces,
  kLength,
  kRate,
};

/// The count of a fault that stays until it is cleared.
inline constexpr int kForever = 0;

struct FaultInfo {
  FaultKind kind;
  std::string_view name;
  std::array<FaultNumber, 2> numbers;  ///< in the order in which they are written
  std::size_t required;                ///< how many of them must be given
  std::array<int, 2> defaults;         ///< for those that are left out
  std::string_view description;
};

// clang-format off
inline constexpr std::array kFaults = std::to_array<FaultInfo>({
    // kind                     name              numbers                  required  defaults
    {FaultKind::kSilent,       "silent",         {},                               0, {},
     "answers nothing"},
    {FaultKind::kSilentFor,    "silent-for",     {FaultNumber::kCount},            1, {},
     "answers nothing to the next N sends"},
    {FaultKind::kIgnore,       "ignore",         {FaultNumber::kAddress},          1, {},
     "answers nothing about one parameter"},
    {FaultKind::kLate,         "late",           {FaultNumber::kMilliseconds},     1, {},
     "answers MS milliseconds late"},
    {FaultKind::kSplit,        "split",          {FaultNumber::kMilliseconds,
                                                  FaultNumber::kPieces},           1, {0, 2},
     "sends a reply in pieces MS apart"},
    {FaultKind::kNoiseBefore,  "noise-before",   {},                               0, {},
     "sends junk ahead of a reply"},
    {FaultKind::kNoiseInside,  "noise-inside",   {},                               0, {},
     "sends junk in the middle of a reply"},
    {FaultKind::kNoiseAfter,   "noise-after",    {},                               0, {},
     "sends junk behind a reply"},
    {FaultKind::kErrorReply,   "error-reply",    {FaultNumber::kCount},            0, {kForever},
     "refuses the next N requests"},
    {FaultKind::kRefuse,       "refuse",         {FaultNumber::kAddress},          1, {},
     "refuses requests for one parameter"},
    {FaultKind::kShortFrame,   "short-frame",    {FaultNumber::kLength},           0, {6},
     "cuts frames to LENGTH with \\r"},
    {FaultKind::kShortPacket,  "short-packet",   {FaultNumber::kLength},           0, {20},
     "shortens packets to LENGTH"},
    {FaultKind::kWrongAddress, "wrong-address",  {},                               0, {},
     "answers with the next address"},
    {FaultKind::kFlowBytes,    "flow-bytes",     {},                               0, {},
     "puts 0x13 ahead of, 0x11 inside a reply"},
    {FaultKind::kStrayXoff,    "stray-xoff",     {},                               0, {},
     "sends 0x13 behind a reply and no 0x11"},
    {FaultKind::kUnasked,      "unasked",        {FaultNumber::kRate},             1, {},
     "sends RATE frames a second unasked"},
    {FaultKind::kHangUpBefore, "hang-up-before", {FaultNumber::kCount},            1, {},
     "line goes at the N-th request"},
    {FaultKind::kHangUpDuring, "hang-up-during", {FaultNumber::kCount},            1, {},
     "line goes in the N-th reply"},
    {FaultKind::kHangUpAfter,  "hang-up-after",  {FaultNumber::kCount},            1, {},
     "line goes after the N-th reply"},
});
// clang-format on

/// Reads the address of a parameter from what a user writes for it; nothing where it is none.
using AddressReader = std::function<std::optional<int>(std::string_view)>;

/// Reads an address written as a number, 130..413.
[[nodiscard]] std::optional<int> ReadAddress(std::string_view text);

/// The faults in force. They combine: a late reply can be split and carry noise. Counts run from
/// the moment the fault is added; a fault that has run out is gone.
class FaultPlan {
 public:
  /// Adds the fault described by NAME[=NUMBER[,NUMBER]], or clears all of them for "none". A fault
  /// that is in force already is replaced, except that several addresses may be named. Numbers are
  /// decimal or, after 0x, hex.
  /// @return what is wrong with the text and what is right; nothing when the fault is in force
  [[nodiscard]] std::optional<std::string> Add(std::string_view text,
                                               const AddressReader& read_address = ReadAddress);

  void Clear() { active_.clear(); }

  /// What becomes of a reply: nothing, the reply, or what the faults make of it. Call it once for
  /// each request, in order.
  /// @param address address that the request names, -1 for a slot query
  [[nodiscard]] std::vector<LineAction> Deliver(std::string reply, int address);

  /// Time between two unasked frames, at least 100 us, or nothing when there are none to send.
  [[nodiscard]] std::optional<std::chrono::microseconds> UnaskedPeriod() const;

  /// The faults in force as `Add` takes them, one a line, or "none". A count is what is left of it.
  [[nodiscard]] std::string Describe() const;

 private:
  struct ActiveFault {
    const FaultInfo* info = nullptr;
    std::array<int, 2> numbers{};
  };

  [[nodiscard]] const ActiveFault* Find(FaultKind kind) const;
  [[nodiscard]] bool Concerns(FaultKind kind, int address) const;
  /// True when the fault is in force; counts one of its uses.
  bool Use(FaultKind kind);
  /// True when this request is the one that the counted fault waits for.
  bool CountDown(FaultKind kind);
  [[nodiscard]] bool Suppresses(int address);
  [[nodiscard]] std::string Distort(std::string reply, int address);
  [[nodiscard]] std::vector<LineAction> Schedule(const std::string& reply) const;

  std::vector<ActiveFault> active_;
};

/// A whole number, decimal or in hex after 0x, with nothing else in the text.
[[nodiscard]] std::optional<int> ReadNumber(std::string_view text);

/// All faults as they are written, with commas between them.
[[nodiscard]] std::string FaultNames();

/// All faults with their parameters and descriptions, one a line, for help texts.
[[nodiscard]] std::string FaultHelp();

}  // namespace kalde2
