#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "link/mod_comms.h"
#include "model/command_list.h"
#include "model/progress.h"

namespace kalde2 {

/// One resolution (timing standard) of the unit. The members bear the file's column titles.
struct ResolutionRecord {
  std::string Name;          ///< up to 24 characters from the unit, 26 wide in the file
  std::string Flags;         ///< letters "R", "Y", "C", "I", "U" of the set flags
  std::int16_t HWidth = 0;   ///< active width in pixels
  std::int16_t VHeight = 0;  ///< active height in lines
  double HFreq = 0;          ///< horizontal frequency in the unit's own count
  std::int16_t Vfreq = 0;    ///< vertical frequency; the unit does not tell it
  std::int16_t HTotal = 0;   ///< pixels of a whole line
  std::int16_t VTotal = 0;   ///< lines of a whole frame
  std::int16_t HSync = 0;    ///< width of the horizontal sync in pixels
  std::int16_t VSync = 0;    ///< width of the vertical sync in lines
  std::int16_t HPos = 0;     ///< horizontal position in pixels
  std::int16_t VPos = 0;     ///< vertical position in lines
  std::string Misc;          ///< sync polarities: "PP", "NP", "PN", "NN"; empty when unknown

  bool operator==(const ResolutionRecord&) const = default;
};

/// The resolutions by entry number. Entry 0 is always empty, both after a fetch (the unit's slot k
/// stands in entry k + 1) and after reading a file (its n-th record stands in entry n). Only the
/// built-in names begin at entry 0.
class ResolutionTable : public ResolutionNames {
 public:
  /// Makes the table entries 0..`upper`, all empty.
  void Reset(std::size_t upper) { records_.assign(upper + 1, {}); }
  void Append(ResolutionRecord record) { records_.push_back(std::move(record)); }

  /// Number of entries; 0 before the first filling.
  [[nodiscard]] std::size_t Size() const { return records_.size(); }

  /// @throws Fault for an entry that the table does not have, as the next one does
  [[nodiscard]] const ResolutionRecord& Record(std::size_t entry) const {
    return records_[Checked(entry)];
  }
  [[nodiscard]] ResolutionRecord& Record(std::size_t entry) { return records_[Checked(entry)]; }

  [[nodiscard]] std::string ResolutionName(std::int32_t number) const override;

  [[nodiscard]] const std::vector<ResolutionRecord>& Records() const { return records_; }

 private:
  [[nodiscard]] std::size_t Checked(std::size_t entry) const;

  std::vector<ResolutionRecord> records_;
};

/// One item of the output resolution list.
struct ResolutionItem {
  std::string text;
  std::int32_t data = 0;  ///< item data

  bool operator==(const ResolutionItem&) const = default;
};

/// A number given as upper-case hex text of any length as its lowest eight binary digits, most
/// significant first: "1A" gives "00011010".
[[nodiscard]] std::string ByteToBits(std::string_view hex);

/// Puts the first reply of a slot (name, flags, frequency, lines, polarities) into its record. A
/// short packet leaves alone the fields that it lacks, and a number that does not fit its field
/// leaves that field alone.
/// @param packet from its "S" on
void DecodeFirstPacket(std::string_view packet, ResolutionRecord& record);

/// As `DecodeFirstPacket` for the second reply: totals, syncs, sizes and positions.
void DecodeSecondPacket(std::string_view packet, ResolutionRecord& record);

/// Writes the resolution data file: six header lines and one record of 122 columns for each entry,
/// CR LF behind each line.
void WriteResolutions(std::ostream& file, const ResolutionTable& table);

/// Replaces the table with what a resolution data file holds. A line counts up to its first comma;
/// a column that is missing or does not fit its field leaves that field empty. Entries are counted
/// in 16 bits: reading ends at entry 32767.
/// @return empty, or what is wrong with the header; the table then has its single empty entry
[[nodiscard]] std::string_view ReadResolutions(std::istream& file, ResolutionTable& table);

/// What a fetch has to say to whoever started it.
class FetchEvents {
 public:
  virtual ~FetchEvents() = default;

  /// A slot is asked for, of so many. Counted from 1 here, as people count.
  virtual void SlotBegins(std::size_t slot, std::size_t slot_count) = 0;

  /// The first reply of a slot, counted from 0, stays away.
  virtual void SlotUnread(std::size_t slot) = 0;

  /// Every slot has been asked for: the table is to be saved.
  virtual void Fetched() = 0;
};

/// How a fetch ended.
enum class FetchEnding : std::uint8_t {
  kUncounted,  ///< the count of the slots could not be read
  kClosed,     ///< the port was closed meanwhile
  kComplete,
};

/// Fetching of the unit's resolutions, and their way into and out of the file.
class ResolutionData {
 public:
  ResolutionData(ResolutionTable& table, CommandLink& link, Progress& progress)
      : table_(table), link_(link), progress_(progress) {}

  /// Reads every slot of the unit into the table. When the count of the slots cannot be read, it
  /// stops without an end of the progress and with `CommsBusy` raised, which is intended. A slot
  /// whose first reply stays away is reported and keeps empty fields. When the port is closed
  /// meanwhile, the table is as before and there is nothing to save.
  FetchEnding FetchResolutionData(FetchEvents& events);

  /// Writes the table to a new file of this name. Every error is ignored.
  /// @return true when the file has taken all of it
  [[nodiscard]] bool WriteResolutionFile(std::string_view name) const;

  /// Replaces the table with the file's records. A wrong header leaves a single empty entry; a file
  /// that cannot be opened counts as one with a wrong first line.
  /// @return empty, or what is wrong with the header
  std::string_view ReadResolutionFile(std::string_view name);

  /// What a resolution list is filled with.
  struct List {
    std::vector<ResolutionItem> items;
    std::string_view problem;  ///< empty, or what is wrong with the file
  };

  /// Fills the table and tells the items of the resolution list: from the file of this name, item k
  /// with the data k + 1, or without such a file the built-in names, item k with the data k.
  [[nodiscard]] List FillResolutionList(std::string_view name);

 private:
  [[nodiscard]] FetchEnding ReadSlots(FetchEvents& events);
  void ReadSlot(std::size_t entry, FetchEvents& events);
  [[nodiscard]] std::string Query(std::size_t slot, char part);

  ResolutionTable& table_;
  CommandLink& link_;
  Progress& progress_;
};

}  // namespace kalde2
