#include "simulator/resolution_slots.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <fstream>

namespace kalde2 {
namespace {

enum Scan : bool { kProgressive, kInterlaced };

/// What the timing of a slot is computed from.
struct Mode {
  int width;
  int height;
  int centihertz;  ///< frames per 100 s
  Scan scan;
  std::string_view suffix;  ///< after "Hz" in the name
};

constexpr std::uint8_t kRgb = 0x01;
constexpr std::uint8_t kYuv = 0x02;
constexpr std::uint8_t kComposite = 0x04;
constexpr std::uint8_t kInterlacedFlag = 0x08;
constexpr std::uint8_t kUser = 0x10;

constexpr std::uint8_t kPositiveSyncs = 0;
constexpr std::uint8_t kNegativeSyncs = 3;

constexpr std::size_t kNameLength = 24;

constexpr std::array kFactoryModes = std::to_array<Mode>({
    {640, 350, 7000, kProgressive, ""},       {640, 350, 8500, kProgressive, ""},
    {640, 400, 8500, kProgressive, ""},       {720, 400, 7000, kProgressive, ""},
    {720, 400, 8500, kProgressive, ""},       {640, 480, 6000, kProgressive, ""},
    {640, 480, 6700, kProgressive, ""},       {640, 480, 7200, kProgressive, ""},
    {640, 480, 7500, kProgressive, ""},       {640, 480, 8500, kProgressive, ""},
    {640, 480, 11700, kProgressive, ""},      {640, 480, 13800, kProgressive, ""},
    {720, 480, 6000, kProgressive, ""},       {720, 576, 5000, kProgressive, ""},
    {800, 600, 5600, kProgressive, ""},       {800, 600, 6000, kProgressive, ""},
    {800, 600, 7200, kProgressive, ""},       {800, 600, 7500, kProgressive, ""},
    {800, 600, 8500, kProgressive, ""},       {800, 600, 9500, kProgressive, ""},
    {800, 600, 11200, kProgressive, ""},      {832, 624, 7500, kProgressive, ""},
    {848, 480, 6000, kProgressive, ""},       {1024, 768, 4300, kInterlaced, ""},
    {1024, 768, 5994, kProgressive, ""},      {1024, 768, 6000, kProgressive, ""},
    {1024, 768, 7000, kProgressive, ""},      {1024, 768, 7500, kProgressive, ""},
    {1024, 768, 8500, kProgressive, ""},      {1024, 768, 8900, kProgressive, ""},
    {1024, 912, 3000, kInterlaced, ""},       {1170, 1007, 3000, kInterlaced, ""},
    {1152, 864, 7500, kProgressive, ""},      {1152, 864, 8000, kProgressive, ""},
    {1152, 864, 8500, kProgressive, ""},      {1152, 870, 7500, kProgressive, ""},
    {1280, 720, 2398, kProgressive, ""},      {1280, 720, 2400, kProgressive, ""},
    {1280, 720, 2500, kProgressive, ""},      {1280, 720, 2997, kProgressive, ""},
    {1280, 720, 3000, kProgressive, ""},      {1280, 720, 5000, kProgressive, ""},
    {1280, 720, 5994, kProgressive, ""},      {1280, 720, 6000, kProgressive, ""},
    {1280, 768, 6000, kProgressive, " Rb"},   {1280, 768, 6000, kProgressive, ""},
    {1280, 768, 7500, kProgressive, ""},      {1280, 768, 8500, kProgressive, ""},
    {1280, 960, 6000, kProgressive, ""},      {1280, 960, 7200, kProgressive, ""},
    {1280, 960, 8500, kProgressive, ""},      {1280, 1024, 6000, kProgressive, ""},
    {1280, 1024, 7000, kProgressive, ""},     {1280, 1024, 7500, kProgressive, ""},
    {1280, 1024, 8500, kProgressive, ""},     {1360, 768, 6000, kProgressive, ""},
    {1365, 1024, 7500, kProgressive, ""},     {1400, 1050, 6000, kProgressive, " Rb"},
    {1400, 1050, 6000, kProgressive, ""},     {1400, 1050, 7500, kProgressive, ""},
    {1400, 1050, 8500, kProgressive, ""},     {1440, 1080, 2500, kInterlaced, ""},
    {1440, 1080, 3000, kInterlaced, ""},      {1600, 1200, 6000, kProgressive, ""},
    {1600, 1200, 6500, kProgressive, ""},     {1600, 1200, 7000, kProgressive, ""},
    {1600, 1200, 7500, kProgressive, ""},     {1600, 1200, 8500, kProgressive, ""},
    {1600, 1280, 6000, kProgressive, ""},     {1600, 1280, 6500, kProgressive, ""},
    {1600, 1280, 7000, kProgressive, ""},     {1600, 1280, 7500, kProgressive, ""},
    {1792, 1344, 6000, kProgressive, ""},     {1792, 1344, 7500, kProgressive, ""},
    {1856, 1392, 6000, kProgressive, ""},     {1856, 1392, 7500, kProgressive, ""},
    {1920, 1035, 2997, kInterlaced, ""},      {1920, 1035, 3000, kInterlaced, ""},
    {1920, 1080, 2500, kInterlaced, ""},      {1920, 1080, 2500, kInterlaced, "1250"},
    {1920, 1080, 2997, kInterlaced, ""},      {1920, 1080, 3000, kInterlaced, ""},
    {1920, 1080, 2398, kProgressive, ""},     {1920, 1080, 2400, kProgressive, ""},
    {1920, 1080, 2500, kProgressive, ""},     {1920, 1080, 2997, kProgressive, ""},
    {1920, 1080, 3000, kProgressive, ""},     {1920, 1080, 5000, kProgressive, ""},
    {1920, 1080, 5000, kProgressive, "1250"}, {1920, 1080, 5994, kProgressive, ""},
    {1920, 1080, 6000, kProgressive, ""},     {1920, 1080, 6500, kProgressive, ""},
    {1920, 1080, 7000, kProgressive, ""},     {1920, 1080, 7500, kProgressive, ""},
    {1920, 1200, 6000, kProgressive, " Rb"},  {1920, 1200, 6000, kProgressive, ""},
    {1920, 1200, 6500, kProgressive, ""},     {1920, 1200, 7000, kProgressive, ""},
    {1920, 1200, 7500, kProgressive, ""},     {1920, 1200, 8500, kProgressive, ""},
    {1920, 1440, 6000, kProgressive, ""},     {1920, 1440, 7500, kProgressive, ""},
    {2032, 1536, 6000, kProgressive, ""},     {2048, 1536, 6000, kProgressive, ""},
});

struct Size {
  int width;
  int height;
};

// Formats that integrators add: every size at every rate.
constexpr std::array kUserSizes = std::to_array<Size>({{960, 540},
                                                       {1024, 576},
                                                       {1024, 600},
                                                       {1280, 800},
                                                       {1366, 768},
                                                       {1440, 900},
                                                       {1600, 900},
                                                       {1680, 1050},
                                                       {2048, 1080},
                                                       {2048, 1152}});
constexpr std::array kUserRates = std::to_array<int>(
    {2398, 2400, 2500, 2997, 3000, 4800, 5000, 5600, 5994, 6000, 6500, 7000, 7200, 7500, 8500});

std::uint16_t Word(int value) {
  return static_cast<std::uint16_t>(value);
}

constexpr int RoundToEight(int pixels) {
  return (pixels + 4) / 8 * 8;
}

std::string ModeName(const Mode& mode) {
  const int fraction = mode.centihertz % 100;
  char rate[16];
  if (fraction == 0) {
    std::snprintf(rate, sizeof rate, "%d", mode.centihertz / 100);
  } else {
    std::snprintf(rate, sizeof rate, "%d.%02d", mode.centihertz / 100, fraction);
  }
  return std::to_string(mode.width) + " x " + std::to_string(mode.height) +
         (mode.scan == kInterlaced ? "i " : " ") + rate + "Hz" + std::string(mode.suffix);
}

/// Timing by the usual blanking shares: a quarter of the line (160 pixels when reduced) and a
/// twenty-fourth of the frame.
ResolutionSlot SlotOfMode(const Mode& mode, std::uint8_t extra_flags) {
  const bool reduced = mode.suffix == " Rb";
  const int h_blank = reduced ? 160 : RoundToEight(mode.width * 28 / 100);
  const int v_blank = reduced ? 22 : mode.height / 24 + (mode.scan == kInterlaced ? 1 : 0);
  ResolutionSlot slot;
  slot.name = ModeName(mode);
  slot.flags = static_cast<std::uint8_t>(kRgb | extra_flags |
                                         (mode.scan == kInterlaced ? kInterlacedFlag | kYuv : 0));
  slot.width = Word(mode.width);
  slot.height = Word(mode.height);
  slot.h_total = Word(mode.width + h_blank);
  slot.v_total = Word(mode.height + v_blank);
  slot.h_freq = static_cast<std::uint32_t>((mode.height + v_blank) * mode.centihertz / 100);
  slot.h_sync = Word(reduced ? 32 : RoundToEight(mode.width * 8 / 100));
  slot.v_sync = Word(reduced ? 6 : 3);
  slot.h_pos = Word(h_blank * 3 / 4);
  slot.v_pos = Word(v_blank - 3);
  slot.sync_code = mode.height < 600 ? kNegativeSyncs : kPositiveSyncs;
  return slot;
}

/// The two broadcast standards, which lead the table.
std::vector<ResolutionSlot> BroadcastSlots() {
  constexpr std::uint8_t kFlags = kRgb | kYuv | kComposite | kInterlacedFlag;
  return {{"NTSC / 60Hz", kFlags, 15734, 720, 480, 858, 525, 62, 3, 119, 36, kNegativeSyncs},
          {"PAL / 50Hz", kFlags, 15625, 720, 576, 864, 625, 63, 3, 132, 44, kNegativeSyncs}};
}

void AppendNumber(std::string& packet, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) packet += static_cast<char>(value >> (8 * i) & 0xFF);
}

void AppendNamePage(std::string& packet, const ResolutionSlot& slot) {
  std::string name = slot.name;
  name.resize(kNameLength, ' ');
  packet += name;
  packet += static_cast<char>(slot.flags);
  AppendNumber(packet, slot.h_freq, 3);
  AppendNumber(packet, slot.v_total, 2);
  packet += static_cast<char>(slot.sync_code);
}

void AppendTimingPage(std::string& packet, const ResolutionSlot& slot) {
  constexpr std::uint16_t kUnused = 0;
  for (const std::uint16_t field : {kUnused, slot.h_total, slot.h_sync, slot.v_sync, slot.width,
                                    slot.height, slot.h_pos, slot.v_pos, kUnused}) {
    AppendNumber(packet, field, 2);
  }
}

constexpr int kHeaderLines = 6;
constexpr std::string_view kHeaderStart = "Resolution Data File";
constexpr std::size_t kRecordWidth = 122;
constexpr std::size_t kColumn = 8;
constexpr std::size_t kNameColumns = 26;

/// Text of the n-th 8-column field after the name, without trailing blanks.
std::string_view Field(std::string_view record, std::size_t n) {
  std::string_view field = record.substr(kNameColumns + n * kColumn, kColumn);
  return field.substr(0, field.find_last_not_of(' ') + 1);
}

std::uint32_t NumberField(std::string_view record, std::size_t n) {
  const std::string_view field = Field(record, n);
  std::uint32_t number = 0;
  std::from_chars(field.data(), field.data() + field.size(), number);
  return number;
}

std::uint16_t WordField(std::string_view record, std::size_t n) {
  return static_cast<std::uint16_t>(NumberField(record, n));
}

std::uint8_t FlagsOfLetters(std::string_view letters) {
  constexpr std::string_view kLetters = "RYCIU";
  std::uint8_t flags = 0;
  for (const char letter : letters) {
    const std::size_t bit = kLetters.find(letter);
    if (bit != std::string_view::npos) flags = static_cast<std::uint8_t>(flags | 1U << bit);
  }
  return flags;
}

std::uint8_t SyncCodeOfText(std::string_view text) {
  constexpr std::array<std::string_view, 4> kSyncTexts = {"PP", "NP", "PN", "NN"};
  const auto found = std::find(kSyncTexts.begin(), kSyncTexts.end(), text);
  return static_cast<std::uint8_t>(found - kSyncTexts.begin());
}

ResolutionSlot SlotOfRecord(std::string_view record) {
  ResolutionSlot slot;
  const std::string_view name = record.substr(0, kNameColumns);
  slot.name = name.substr(0, name.find_last_not_of(' ') + 1);
  slot.flags = FlagsOfLetters(Field(record, 0));
  slot.width = WordField(record, 1);
  slot.height = WordField(record, 2);
  slot.h_freq = NumberField(record, 3);
  slot.h_total = WordField(record, 5);
  slot.v_total = WordField(record, 6);
  slot.h_sync = WordField(record, 7);
  slot.v_sync = WordField(record, 8);
  slot.h_pos = WordField(record, 9);
  slot.v_pos = WordField(record, 10);
  slot.sync_code = SyncCodeOfText(Field(record, 11));
  return slot;
}

}  // namespace

std::vector<ResolutionSlot> BuiltInResolutions(int count) {
  const auto wanted = static_cast<std::size_t>(std::clamp(count, 0, kMaxResolutionSlots));
  std::vector<ResolutionSlot> slots = BroadcastSlots();
  for (const Mode& mode : kFactoryModes) slots.push_back(SlotOfMode(mode, 0));
  for (const Size& size : kUserSizes) {
    for (const int rate : kUserRates) {
      slots.push_back(SlotOfMode({size.width, size.height, rate, kProgressive, ""}, kUser));
    }
  }
  slots.resize(wanted);
  return slots;
}

ResolutionReading ReadResolutionSlots(const std::string& file_name) {
  std::ifstream file(file_name, std::ios::binary);
  if (!file) return {{}, "cannot read " + file_name};
  std::string line;
  if (!std::getline(file, line) || !line.starts_with(kHeaderStart)) {
    return {{}, file_name + " is no resolution data file"};
  }
  ResolutionReading reading;
  for (int number = 2; std::getline(file, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (number <= kHeaderLines || line.empty()) continue;
    line.resize(kRecordWidth, ' ');
    ResolutionSlot slot = SlotOfRecord(line);
    if (number == kHeaderLines + 1 && slot.name.empty()) continue;
    reading.resolutions.push_back(std::move(slot));
  }
  if (reading.resolutions.size() > static_cast<std::size_t>(kMaxResolutionSlots)) {
    return {{}, file_name + " holds more than 255 resolutions"};
  }
  return reading;
}

std::string BuildSlotPacket(const ResolutionSlot& slot, int slot_number, int page) {
  std::string rest = {'\xA2', '\x01', static_cast<char>(slot_number), 0, static_cast<char>(page),
                      0};
  if (page == 0) {
    AppendNamePage(rest, slot);
  } else {
    AppendTimingPage(rest, slot);
  }
  std::string packet = "S";
  packet += static_cast<char>(rest.size());
  return packet + rest;
}

}  // namespace kalde2
