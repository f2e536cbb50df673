#include "files/mod_resolutions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

#include "files/builtin_resolutions.h"
#include "files/skip_on_fault.h"
#include "files/text_file.h"
#include "link/fault.h"
#include "link/numbers.h"
#include "link/text_functions.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;
using Number = std::int16_t ResolutionRecord::*;

// "F84104100D8??\r": the unit takes the question marks in place of the checksum.
constexpr std::string_view kCountQuery = "46383431303431303044383F3F0D";
constexpr std::string_view kReplyEnd = "\r";
constexpr std::string_view kRefusal = "F0000";

/// The unit answers the count from memory, at once.
constexpr milliseconds kCountTimeout{100};
/// The unit may look a slot up in its slow memory.
constexpr milliseconds kPacketTimeout{5000};

constexpr char kFirstPart = 0;
constexpr char kSecondPart = 1;

constexpr std::string_view kTitle = "Resolution Data File (c) Orvane Ltd";
constexpr std::int16_t kFormat = 1;
constexpr std::string_view kColumnTitles =
    "Name                      Flags   HWidth  VHeight HFreq   Vfreq   HTotal  VTotal  HSync   "
    "VSync   HPos    VPos    Misc";
constexpr std::string_view kColumnTitlesStart = "Name";
constexpr std::array<std::string_view, 6> kHeader = {
    kTitle, "                        1", "2008 - 8 - 1", "", kColumnTitles, ""};

/// Columns of a record line, from 0.
struct Column {
  std::size_t start;
  std::size_t width = 8;
};
constexpr Column kName{0, 26};
constexpr Column kFlags{26};
constexpr Column kHFreq{50};
constexpr Column kMisc{114};
constexpr std::size_t kRecordWidth = 122;
constexpr std::size_t kMiscCharacters = 2;

struct NumberColumn {
  Column column;
  Number field;
};
constexpr std::array<NumberColumn, 9> kNumbers = {{{{34}, &ResolutionRecord::HWidth},
                                                   {{42}, &ResolutionRecord::VHeight},
                                                   {{58}, &ResolutionRecord::Vfreq},
                                                   {{66}, &ResolutionRecord::HTotal},
                                                   {{74}, &ResolutionRecord::VTotal},
                                                   {{82}, &ResolutionRecord::HSync},
                                                   {{90}, &ResolutionRecord::VSync},
                                                   {{98}, &ResolutionRecord::HPos},
                                                   {{106}, &ResolutionRecord::VPos}}};

constexpr std::size_t kLastEntry = std::numeric_limits<std::int16_t>::max();

/// A packet of the unit, by positions from 1 (the "S").
class Packet {
 public:
  explicit Packet(std::string_view characters) : characters_(characters) {}

  /// What the packet has of these characters.
  [[nodiscard]] std::string_view Text(std::size_t position, std::size_t count) const {
    return position <= characters_.size() ? characters_.substr(position - 1, count)
                                          : std::string_view{};
  }

  /// @throws Fault beyond the end
  [[nodiscard]] int Byte(std::size_t position) const {
    if (position > characters_.size()) throw Fault("the packet is too short");
    return static_cast<unsigned char>(characters_[position - 1]);
  }

  /// @throws Fault beyond the end and for 32768 and more
  [[nodiscard]] std::int16_t Word(std::size_t position) const {
    return NarrowToInt16(Byte(position) + 256 * Byte(position + 1));
  }

 private:
  std::string_view characters_;
};

struct PacketNumber {
  std::size_t position;
  Number field;
};
// Positions 25 and 26 hold something that the panel has no use for.
constexpr std::array<PacketNumber, 7> kSecondPacketNumbers = {{{11, &ResolutionRecord::HTotal},
                                                               {13, &ResolutionRecord::HSync},
                                                               {15, &ResolutionRecord::VSync},
                                                               {17, &ResolutionRecord::HWidth},
                                                               {19, &ResolutionRecord::VHeight},
                                                               {21, &ResolutionRecord::HPos},
                                                               {23, &ResolutionRecord::VPos}}};

/// Letters of the flag byte's bits 0 to 4; the upper bits mean nothing.
std::string FlagLetters(int flags) {
  constexpr std::string_view kLetters = "RYCIU";
  const std::string bits = ByteToBits(ToHex(static_cast<std::uint32_t>(flags)));
  std::string letters;
  for (std::size_t bit = 0; bit < kLetters.size(); ++bit) {
    if (bits[bits.size() - 1 - bit] == '1') letters += kLetters[bit];
  }
  return letters;
}

double HorizontalFrequency(const Packet& packet) {
  // 65535 is what the units count with.
  return packet.Byte(34) + 256.0 * packet.Byte(35) + 65535.0 * packet.Byte(36);
}

std::string_view Polarities(int code) {
  constexpr std::array<std::string_view, 4> kPolarities = {"PP", "NP", "PN", "NN"};
  const auto index = static_cast<std::size_t>(code);
  return index < kPolarities.size() ? kPolarities[index] : std::string_view{};
}

std::string SlotQuery(std::size_t slot, char part) {
  return {'S', '\x07', '\xA2', '\x01', static_cast<char>(slot), '\0', part, '\0', '?'};
}

/// The number of slots in the reply to the count query: two hex digits before the checksum.
std::size_t SlotCount(std::string_view reply) {
  constexpr std::size_t kFromEnd = 5;
  return reply.size() < kFromEnd ? 0 : HexValue(reply.substr(reply.size() - kFromEnd, 2));
}

/// Shortest decimal digits without an exponent.
std::string DecimalText(double number) {
  std::array<char, std::numeric_limits<double>::max_exponent10 + 20> text{};
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return error == std::errc() ? std::string(text.data(), end) : std::string();
}

void Put(std::string& line, Column column, std::string_view text) {
  const std::string_view cut = text.substr(0, column.width);
  line.replace(column.start, cut.size(), cut);
}

std::string_view Cut(std::string_view line, Column column) {
  return column.start < line.size() ? line.substr(column.start, column.width) : std::string_view{};
}

std::string RecordLine(const ResolutionRecord& record) {
  std::string line(kRecordWidth, ' ');
  Put(line, kName, record.Name);
  Put(line, kFlags, record.Flags);
  for (const auto& [column, field] : kNumbers) Put(line, column, std::to_string(record.*field));
  Put(line, kHFreq, DecimalText(record.HFreq));
  Put(line, kMisc, record.Misc);
  return line;
}

ResolutionRecord ParseRecord(std::string_view line) {
  ResolutionRecord record;
  record.Name = Cut(line, kName);
  record.Flags = Cut(line, kFlags);
  for (const auto& [column, field] : kNumbers) {
    SkipOnFault([&, at = column, to = field] { record.*to = LeadingInt16(Cut(line, at)); });
  }
  const double frequency = NumericValue(Cut(line, kHFreq));
  if (std::isfinite(frequency)) record.HFreq = frequency;
  record.Misc = Cut(line, kMisc).substr(0, kMiscCharacters);
  return record;
}

/// Reads one field a line, each ending at the first comma. Quotation marks mean nothing.
class FieldReader {
 public:
  explicit FieldReader(std::istream& text) : lines_(text) {}

  /// @return false at the end, with an empty field
  bool Next(std::string& field) {
    if (!lines_.Next(field)) return false;
    field.resize(std::min(field.find(','), field.size()));
    return true;
  }

  std::string Next() {
    std::string field;
    (void)Next(field);
    return field;
  }

 private:
  LineReader lines_;
};

/// The number of the format line; one that does not fit is that of no format.
std::int16_t FormatNumber(std::string_view line) {
  std::int16_t number = 0;
  SkipOnFault([&] { number = LeadingInt16(line); });
  return number;
}

/// @return empty, or what is wrong
std::string_view CheckHeader(FieldReader& fields) {
  if (fields.Next() != kTitle) return "Invalid Resolution Data File.";
  if (FormatNumber(fields.Next()) != kFormat) return "Unsupported resolution data file format.";
  (void)fields.Next();  // the date
  (void)fields.Next();  // an empty line
  if (!fields.Next().starts_with(kColumnTitlesStart)) return "Resolution Data File Corrupted.";
  (void)fields.Next();  // an empty line
  return {};
}

}  // namespace

std::size_t ResolutionTable::Checked(std::size_t entry) const {
  if (entry < records_.size()) return entry;
  throw Fault("the resolution table has no entry " + std::to_string(entry));
}

std::string ResolutionTable::ResolutionName(std::int32_t number) const {
  // A negative number becomes one beyond every table.
  return Record(static_cast<std::size_t>(number)).Name;
}

std::string ByteToBits(std::string_view hex) {
  return HexToBinary(LastCharacters(hex, 2));
}

void DecodeFirstPacket(std::string_view packet, ResolutionRecord& record) {
  const Packet reply(packet);
  record.Name = Trimmed(reply.Text(9, 24));
  SkipOnFault([&] { record.Flags = FlagLetters(reply.Byte(33)); });
  SkipOnFault([&] { record.HFreq = HorizontalFrequency(reply); });
  SkipOnFault([&] { record.VTotal = reply.Word(37); });
  SkipOnFault([&] { record.Misc = Polarities(reply.Byte(39)); });
}

void DecodeSecondPacket(std::string_view packet, ResolutionRecord& record) {
  const Packet reply(packet);
  for (const auto& [position, field] : kSecondPacketNumbers) {
    SkipOnFault([&, at = position, to = field] { record.*to = reply.Word(at); });
  }
}

void WriteResolutions(std::ostream& file, const ResolutionTable& table) {
  for (const std::string_view line : kHeader) file << line << kLineEnd;
  for (const ResolutionRecord& record : table.Records()) file << RecordLine(record) << kLineEnd;
}

std::string_view ReadResolutions(std::istream& file, ResolutionTable& table) {
  table.Reset(0);
  FieldReader fields(file);
  const std::string_view problem = CheckHeader(fields);
  if (!problem.empty()) return problem;
  std::string line;
  while (table.Size() <= kLastEntry && fields.Next(line)) table.Append(ParseRecord(line));
  return {};
}

FetchEnding ResolutionData::FetchResolutionData(FetchEvents& events) {
  const ResolutionTable before = table_;
  progress_.Begin();
  progress_.SetCaption("Reading ResolutionData");
  link_.SetCommsBusy(true);
  const FetchEnding ending = ReadSlots(events);
  // The progress stays as it is and so does CommsBusy: intended.
  if (ending == FetchEnding::kUncounted) return ending;
  link_.SetCommsBusy(false);
  if (ending == FetchEnding::kClosed) {
    table_ = before;
  } else {
    progress_.SetCaption("Saving file");
    events.Fetched();
  }
  progress_.End(ending == FetchEnding::kComplete);
  return ending;
}

FetchEnding ResolutionData::ReadSlots(FetchEvents& events) {
  const bool was_open = link_.PortOpen();
  std::string reply;
  const bool answered = link_.SendAndReceive(kCountQuery, kReplyEnd, reply, kCountTimeout, true);
  if (!answered || reply.starts_with(kRefusal)) {
    return was_open && !link_.PortOpen() ? FetchEnding::kClosed : FetchEnding::kUncounted;
  }
  const std::size_t slots = SlotCount(reply);
  table_.Reset(slots);
  // The bar's maximum is the truth value of a comparison, so that the bar stands still: intended.
  progress_.SetRange(0, slots == kCatalogueSize - 1 ? -1 : 0);
  for (std::size_t entry = 1; entry <= slots && link_.PortOpen(); ++entry) {
    progress_.SetValue(static_cast<int>(entry));
    events.SlotBegins(entry, slots);
    ReadSlot(entry, events);
  }
  return link_.PortOpen() ? FetchEnding::kComplete : FetchEnding::kClosed;
}

/// Reads the slot of a table entry: the one before it, counted from 0.
void ResolutionData::ReadSlot(std::size_t entry, FetchEvents& events) {
  const std::string first = Query(entry - 1, kFirstPart);
  if (!link_.PortOpen()) return;
  if (first.empty()) {
    events.SlotUnread(entry - 1);
  } else {
    SkipOnFault([&] { DecodeFirstPacket(first, table_.Record(entry)); });
  }
  const std::string second = Query(entry - 1, kSecondPart);
  if (second.empty()) return;
  SkipOnFault([&] { DecodeSecondPacket(second, table_.Record(entry)); });
}

/// The unit's packet, empty when it does not come.
std::string ResolutionData::Query(std::size_t slot, char part) {
  std::string reply;
  const bool answered =
      link_.SendAndReceiveCounted(SlotQuery(slot, part), reply, kPacketTimeout, false);
  return answered ? reply : std::string();
}

bool ResolutionData::WriteResolutionFile(std::string_view name) const {
  std::ofstream file = CreateAnew(std::string(name));
  if (!file.is_open()) return false;
  WriteResolutions(file, table_);
  file.close();
  return !file.fail();
}

std::string_view ResolutionData::ReadResolutionFile(std::string_view name) {
  std::ifstream file = OpenForReading(std::string(name));
  return ReadResolutions(file, table_);
}

ResolutionData::List ResolutionData::FillResolutionList(std::string_view name) {
  List list;
  const bool from_file = FileExists(std::string(name));
  if (from_file) {
    list.problem = ReadResolutionFile(name);
  } else {
    table_.Reset(kBuiltinResolutions.size() - 1);
    for (std::size_t i = 0; i < table_.Size(); ++i) table_.Record(i).Name = kBuiltinResolutions[i];
  }
  for (std::size_t entry = from_file ? 1 : 0; entry < table_.Size(); ++entry) {
    list.items.push_back({table_.Record(entry).Name, static_cast<std::int32_t>(entry)});
  }
  return list;
}

}  // namespace kalde2
