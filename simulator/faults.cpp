#include "simulator/faults.h"

#include <algorithm>
#include <charconv>

#include "simulator/unit_addresses.h"
#include "simulator/unit_frames.h"

namespace kalde2 {
namespace {

// Bytes that a noisy line makes: none of them starts or ends a frame or controls the flow.
constexpr std::string_view kNoise = "\x80~#\xFE?";
constexpr char kXon = 0x11;
constexpr char kXoff = 0x13;

constexpr std::size_t kPacketHeader = 2;
constexpr std::size_t kLowAddressDigit = 10;
constexpr std::size_t kFrameTail = 3;  // checksum and "\r"

bool IsFrame(std::string_view reply) {
  return reply.starts_with('F');
}

/// The same frame for the neighbouring address, with a checksum that is right.
std::string WithWrongAddress(std::string frame) {
  if (!IsFrame(frame) || frame.size() <= kLowAddressDigit + kFrameTail) return frame;
  char& digit = frame[kLowAddressDigit];
  digit = digit == 'F' ? 'E' : digit == '9' ? 'A' : static_cast<char>(digit + 1);
  frame.resize(frame.size() - kFrameTail);
  return frame + BodyChecksum(std::string_view(frame).substr(1)) + kFrameEnd;
}

std::string ShortFrame(std::string frame, int length) {
  const auto kept = static_cast<std::size_t>(std::max(length, 1)) - 1;
  if (!IsFrame(frame) || frame.size() <= kept + 1) return frame;
  frame.resize(kept);
  return frame + kFrameEnd;
}

/// A packet that is complete by its own length byte, and lacks its last fields.
std::string ShortPacket(std::string packet, int length) {
  const auto kept = std::max(static_cast<std::size_t>(std::max(length, 0)), kPacketHeader + 1);
  if (IsFrame(packet) || packet.size() <= kept) return packet;
  packet.resize(kept);
  packet[1] = static_cast<char>(kept - kPacketHeader);
  return packet;
}

void InsertInMiddle(std::string& reply, std::string_view bytes) {
  reply.insert(reply.size() / 2, bytes);
}

const FaultInfo* FindInfo(std::string_view name) {
  const auto found = std::find_if(kFaults.begin(), kFaults.end(),
                                  [&](const FaultInfo& info) { return info.name == name; });
  return found == kFaults.end() ? nullptr : &*found;
}

/// The word that stands for a number in the texts for users.
constexpr std::string_view WordFor(FaultNumber number) {
  switch (number) {
    case FaultNumber::kNone:
      break;
    case FaultNumber::kCount:
      return "N";
    case FaultNumber::kAddress:
      return "ADDRESS";
    case FaultNumber::kMilliseconds:
      return "MS";
    case FaultNumber::kPieces:
      return "PIECES";
    case FaultNumber::kLength:
      return "LENGTH";
    case FaultNumber::kRate:
      return "RATE";
  }
  return {};
}

std::size_t MostNumbers(const FaultInfo& info) {
  return info.numbers.size() -
         static_cast<std::size_t>(std::ranges::count(info.numbers, FaultNumber::kNone));
}

/// The fault as it is written, for example "split=MS[,PIECES]".
std::string FullName(const FaultInfo& info) {
  std::string text(info.name);
  for (std::size_t i = 0; i < MostNumbers(info); ++i) {
    const std::string number = (i == 0 ? '=' : ',') + std::string(WordFor(info.numbers[i]));
    text += i < info.required ? number : '[' + number + ']';
  }
  return text;
}

bool NamesAnAddress(const FaultInfo& info) {
  return info.numbers[0] == FaultNumber::kAddress;
}

std::optional<int> ReadFaultNumber(FaultNumber number, std::string_view text,
                                   const AddressReader& read_address) {
  if (number == FaultNumber::kNone) return std::nullopt;
  if (number == FaultNumber::kAddress) return read_address(text);
  const std::optional<int> value = ReadNumber(text);
  return value && *value >= 1 ? value : std::nullopt;
}

/// Reads "" or "=NUMBER[,NUMBER]"; numbers that are left out get their defaults.
std::optional<std::array<int, 2>> ReadFaultNumbers(const FaultInfo& info, std::string_view text,
                                                   const AddressReader& read_address) {
  std::array<int, 2> numbers = info.defaults;
  std::size_t given = 0;
  while (!text.empty()) {
    text.remove_prefix(1);
    if (given == numbers.size()) return std::nullopt;
    const std::string_view word = text.substr(0, text.find(','));
    const std::optional<int> number = ReadFaultNumber(info.numbers[given], word, read_address);
    if (!number) return std::nullopt;
    numbers[given++] = *number;
    text.remove_prefix(word.size());
  }
  return given < info.required ? std::nullopt : std::optional(numbers);
}

std::string Usage(const FaultInfo& info) {
  std::string text = "use " + FullName(info) + ", \"" + std::string(info.description) + '"';
  for (const FaultNumber number : info.numbers) {
    if (number == FaultNumber::kNone) continue;
    text += "; " + std::string(WordFor(number)) + " is ";
    text += number == FaultNumber::kAddress ? "130..413 or the name of a parameter" : "1 or more";
  }
  return text;
}

}  // namespace

std::optional<int> ReadNumber(std::string_view text) {
  const bool is_hex = text.starts_with("0x") || text.starts_with("0X");
  if (is_hex) text.remove_prefix(2);
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, is_hex ? 16 : 10);
  if (error != std::errc() || stop != end || (is_hex && number < 0)) return std::nullopt;
  return number;
}

std::optional<int> ReadAddress(std::string_view text) {
  const std::optional<int> number = ReadNumber(text);
  return number && IsParameter(*number) ? number : std::nullopt;
}

std::string FaultNames() {
  std::string text;
  for (const FaultInfo& info : kFaults) {
    if (!text.empty()) text += ", ";
    text += FullName(info);
  }
  return text;
}

std::string FaultHelp() {
  constexpr std::size_t kNameWidth = 24;
  std::string text;
  for (const FaultInfo& info : kFaults) {
    std::string name = FullName(info);
    name.resize(std::max(kNameWidth, name.size() + 1), ' ');
    text += "  " + name + std::string(info.description) + '\n';
  }
  return text;
}

std::optional<std::string> FaultPlan::Add(std::string_view text,
                                          const AddressReader& read_address) {
  if (text == "none") {
    Clear();
    return std::nullopt;
  }
  const std::string_view name = text.substr(0, text.find('='));
  const FaultInfo* info = FindInfo(name);
  if (info == nullptr) {
    return "there is no fault \"" + std::string(name) + "\"; there are " + FaultNames();
  }
  const auto numbers = ReadFaultNumbers(*info, text.substr(name.size()), read_address);
  if (!numbers) return '"' + std::string(text) + "\" is no fault; " + Usage(*info);
  const ActiveFault fault{info, *numbers};
  // A fault of one parameter is replaced by the same one of that parameter alone.
  std::erase_if(active_, [&](const ActiveFault& active) {
    const bool is_same = !NamesAnAddress(*info) || active.numbers == fault.numbers;
    return active.info == info && is_same;
  });
  active_.push_back(fault);
  return std::nullopt;
}

const FaultPlan::ActiveFault* FaultPlan::Find(FaultKind kind) const {
  const auto found = std::find_if(active_.begin(), active_.end(), [&](const ActiveFault& fault) {
    return fault.info->kind == kind;
  });
  return found == active_.end() ? nullptr : &*found;
}

bool FaultPlan::Concerns(FaultKind kind, int address) const {
  return std::any_of(active_.begin(), active_.end(), [&](const ActiveFault& fault) {
    return fault.info->kind == kind && fault.numbers[0] == address;
  });
}

bool FaultPlan::Use(FaultKind kind) {
  const ActiveFault* fault = Find(kind);
  if (fault == nullptr) return false;
  const bool is_counted = fault->numbers[0] != kForever;
  if (is_counted) CountDown(kind);
  return true;
}

bool FaultPlan::CountDown(FaultKind kind) {
  const auto fault = std::find_if(active_.begin(), active_.end(), [&](const ActiveFault& active) {
    return active.info->kind == kind;
  });
  if (fault == active_.end()) return false;
  if (--fault->numbers[0] > 0) return false;
  active_.erase(fault);
  return true;
}

bool FaultPlan::Suppresses(int address) {
  return Find(FaultKind::kSilent) != nullptr || Use(FaultKind::kSilentFor) ||
         Concerns(FaultKind::kIgnore, address);
}

std::string FaultPlan::Distort(std::string reply, int address) {
  if (Concerns(FaultKind::kRefuse, address) || Use(FaultKind::kErrorReply)) reply = kErrorReply;
  if (Find(FaultKind::kWrongAddress)) reply = WithWrongAddress(std::move(reply));
  if (const auto* fault = Find(FaultKind::kShortFrame)) {
    reply = ShortFrame(std::move(reply), fault->numbers[0]);
  }
  if (const auto* fault = Find(FaultKind::kShortPacket)) {
    reply = ShortPacket(std::move(reply), fault->numbers[0]);
  }
  if (Find(FaultKind::kNoiseInside)) InsertInMiddle(reply, kNoise);
  if (Find(FaultKind::kNoiseBefore)) reply.insert(0, kNoise);
  if (Find(FaultKind::kNoiseAfter)) reply += kNoise;
  if (Find(FaultKind::kFlowBytes)) {
    InsertInMiddle(reply, {&kXon, 1});
    reply.insert(reply.begin(), kXoff);
  }
  if (Find(FaultKind::kStrayXoff)) reply += kXoff;
  return reply;
}

std::vector<LineAction> FaultPlan::Schedule(const std::string& reply) const {
  const ActiveFault* late = Find(FaultKind::kLate);
  std::chrono::milliseconds after(late != nullptr ? late->numbers[0] : 0);
  const ActiveFault* split = Find(FaultKind::kSplit);
  if (split == nullptr) return {{after, reply}};
  const auto pieces = std::min(static_cast<std::size_t>(split->numbers[1]), reply.size());
  std::vector<LineAction> actions;
  for (std::size_t i = 0; i < pieces; ++i) {
    const std::size_t begin = reply.size() * i / pieces;
    const std::size_t end = reply.size() * (i + 1) / pieces;
    actions.push_back({after, reply.substr(begin, end - begin)});
    after += std::chrono::milliseconds(split->numbers[0]);
  }
  return actions;
}

std::vector<LineAction> FaultPlan::Deliver(std::string reply, int address) {
  // A hang-up throws away what the panel has not read yet, so it comes a little behind a reply.
  constexpr std::chrono::milliseconds kReadingTime(100);
  if (CountDown(FaultKind::kHangUpBefore)) return {{{}, {}, true}};
  const bool ends_during = CountDown(FaultKind::kHangUpDuring);
  const bool ends_after = CountDown(FaultKind::kHangUpAfter);
  std::vector<LineAction> actions;
  if (!Suppresses(address)) {
    reply = Distort(std::move(reply), address);
    if (ends_during) reply.resize(reply.size() / 2);
    actions = Schedule(reply);
  }
  if (ends_during || ends_after) {
    const auto last = actions.empty() ? std::chrono::milliseconds(0) : actions.back().after;
    actions.push_back({last + kReadingTime, {}, true});
  }
  return actions;
}

std::optional<std::chrono::microseconds> FaultPlan::UnaskedPeriod() const {
  const ActiveFault* fault = Find(FaultKind::kUnasked);
  if (fault == nullptr) return std::nullopt;
  // Far beyond what a line carries, and slow enough for the unit to do something else as well.
  constexpr std::chrono::microseconds kShortestPeriod(100);
  return std::max(kShortestPeriod,
                  std::chrono::microseconds(std::chrono::seconds(1)) / fault->numbers[0]);
}

std::string FaultPlan::Describe() const {
  if (active_.empty()) return "none";
  std::string text;
  for (const ActiveFault& fault : active_) {
    if (!text.empty()) text += '\n';
    text += fault.info->name;
    for (std::size_t i = 0; i < MostNumbers(*fault.info); ++i) {
      if (fault.numbers[i] == kForever) break;
      text += (i == 0 ? '=' : ',') + std::to_string(fault.numbers[i]);
    }
  }
  return text;
}

}  // namespace kalde2
