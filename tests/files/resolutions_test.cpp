#include "files/mod_resolutions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "tests/support/fake_link.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Box = FakeBoxes::Box;
using namespace std::string_literals;

const std::string kHeader =
    "Resolution Data File (c) Orvane Ltd\r\n"
    "                        1\r\n"
    "2008 - 8 - 1\r\n"
    "\r\n"
    "Name                      Flags   HWidth  VHeight HFreq   Vfreq   HTotal  VTotal  HSync   "
    "VSync   HPos    VPos    Misc\r\n"
    "\r\n";
const std::string kEmptyLine =
    "                                  0       0       0       0       0       0       0       "
    "0       0       0               \r\n";

/// A slot's packets as the unit sends them: 600 lines, 31533 and the given flags and polarity.
std::string FirstPacket(std::string name, char flags = '\x13', char polarity = '\x02') {
  name.resize(24, ' ');
  return "S\x25......"s + name + flags + "\x2D\x7B\x00\x58\x02"s + polarity;
}
const std::string kSecondPacket =
    "S\x18........\x20\x04\x80\x00\x04\x00\x20\x03\x58\x02\xD8\x00\x17\x00\xEE\xEE"s;
// The line of a slot with these packets, behind its name.
const std::string kSlotColumns =
    "RYU     800     600     31533   0       1056    600     128     4       216     23      "
    "PN      \r\n";

const Box kSlotUnread{"Problem reading resolution information from scaler, please try again",
                      BoxIcon::kExclamation, ""};

std::string NameColumn(std::string name) {
  name.resize(26, ' ');
  return name;
}

TEST(ResolutionRecords, ByteToBitsKeepsTheLowestEight) {
  const std::pair<const char*, const char*> cases[] = {
      {"1A", "00011010"},  {"0", "00000000"}, {"FF", "11111111"},          {"7", "00000111"},
      {"1A2", "10100010"}, {"", "00000000"},  {"FFFFFFFFFF01", "00000001"}};
  for (const auto& [hex, bits] : cases) EXPECT_EQ(ByteToBits(hex), bits) << hex;
}

TEST(ResolutionRecords, FlagsFrequencyAndPolaritiesOfTheFirstPacket) {
  const std::pair<char, const char*> flags[] = {
      {'\x13', "RYU"}, {'\x06', "YC"}, {'\xE0', ""}, {'\xFF', "RYCIU"}, {'\x08', "I"}};
  for (const auto& [byte, letters] : flags) {
    ResolutionRecord record;
    DecodeFirstPacket(FirstPacket("", byte), record);
    EXPECT_EQ(record.Flags, letters);
  }
  const std::pair<std::string, double> frequencies[] = {
      {"\x2D\x7B\x00"s, 31533}, {"\x00\x00\x01"s, 65535}, {"\xFF\xFF\xFF"s, 16776960}};
  for (const auto& [bytes, frequency] : frequencies) {
    ResolutionRecord record;
    DecodeFirstPacket(FirstPacket("").replace(33, 3, bytes), record);
    EXPECT_EQ(record.HFreq, frequency);
  }
  const std::pair<char, const char*> polarities[] = {{'\0', "PP"}, {'\1', "NP"}, {'\2', "PN"},
                                                     {'\3', "NN"}, {'\4', ""},   {'\xFF', ""}};
  for (const auto& [code, text] : polarities) {
    ResolutionRecord record;
    DecodeFirstPacket(FirstPacket("", 0, code), record);
    EXPECT_EQ(record.Misc, text);
  }
}

TEST(ResolutionRecords, ShortAndOverflowingPacketsSkipOnlyTheirFields) {
  const ResolutionRecord earlier{"x", "Z", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, "ZZ"};
  const std::string first = FirstPacket("  A 24 character name");
  struct {
    std::string first;
    std::string second;
    ResolutionRecord record;
  } const cases[] = {
      {first,
       kSecondPacket,
       {"A 24 character name", "RYU", 800, 600, 31533, 4, 1056, 600, 128, 4, 216, 23, "PN"}},
      {first.substr(0, 38),
       kSecondPacket.substr(0, 23),
       {"A 24 character name", "RYU", 800, 600, 31533, 4, 1056, 600, 128, 4, 216, 10, "ZZ"}},
      {first.substr(0, 35),
       kSecondPacket.substr(0, 12),
       {"A 24 character name", "RYU", 1, 2, 3, 4, 1056, 6, 7, 8, 9, 10, "ZZ"}},
      {first.substr(0, 14), "S\1.", {"A 24", "Z", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, "ZZ"}},
      {std::string(first).replace(36, 2, "\x00\x80"s),
       std::string(kSecondPacket).replace(10, 4, "\x00\x80\xFF\x7F"s),
       {"A 24 character name", "RYU", 800, 600, 31533, 4, 5, 6, 32767, 4, 216, 23, "PN"}},
  };
  for (const auto& test : cases) {
    ResolutionRecord record = earlier;
    DecodeFirstPacket(test.first, record);
    DecodeSecondPacket(test.second, record);
    EXPECT_EQ(record, test.record) << test.first.size();
  }
}

TEST(ResolutionRecords, WritesAndReadsColumns) {
  ResolutionTable table;
  table.Reset(1);
  table.Record(1) = {"A name of 28 characters long",
                     "RYCIURYCI",
                     -32768,
                     0,
                     100000,
                     32767,
                     1,
                     2,
                     3,
                     4,
                     5,
                     6,
                     "123456789"};
  table.Append({"B", "", 0, 0, 1234.56789, 0, 0, 0, 0, 0, 0, 0, ""});
  const std::string text = kHeader + kEmptyLine +
                           "A name of 28 characters loRYCIURYC-32768  0       100000  32767   1   "
                           "    2       3       4       5       6       12345678\r\n" +
                           "B                                 0       0       1234.567"
                           "0       0       0       0       0       0       0               \r\n";
  std::ostringstream written;
  WriteResolutions(written, table);
  EXPECT_EQ(written.str(), text);

  std::istringstream file(text);
  EXPECT_EQ(ReadResolutions(file, table), "");
  const ResolutionRecord empty{NameColumn(""), "        ", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "  "};
  ResolutionRecord last = empty;
  last.Name = NameColumn("B");
  last.HFreq = 1234.567;
  EXPECT_THAT(table.Records(),
              ElementsAre(ResolutionRecord{}, empty,
                          ResolutionRecord{"A name of 28 characters lo", "RYCIURYC", -32768, 0,
                                           100000, 32767, 1, 2, 3, 4, 5, 6, "12"},
                          last));
  std::ostringstream again;
  WriteResolutions(again, table);
  EXPECT_THAT(again.str(), ::testing::StartsWith(kHeader + kEmptyLine + kEmptyLine));
}

TEST(ResolutionRecords, ReadsOddFiles) {
  const std::string wide = NameColumn("W") + "        99999   600x    ";
  struct {
    const char* name;
    std::string text;
    const char* problem;
    std::vector<ResolutionRecord> records;
  } const cases[] = {
      {"empty", "", "Invalid Resolution Data File.", {{}}},
      {"blank behind the title",
       std::string(kHeader).insert(35, " "),
       "Invalid Resolution Data File.",
       {{}}},
      {"format 2",
       std::string(kHeader).replace(61, 1, "2"),
       "Unsupported resolution data file format.",
       {{}}},
      {"format 1.5",
       std::string(kHeader).insert(62, ".5"),
       "Unsupported resolution data file format.",
       {{}}},
      {"cut behind the format", kHeader.substr(0, 64), "Resolution Data File Corrupted.", {{}}},
      {"other column titles",
       std::string(kHeader).replace(80, 4, "Nome"),
       "Resolution Data File Corrupted.",
       {{}}},
      {"header alone", kHeader, "", {{}}},
      {"comma in the title line",
       std::string(kHeader).insert(35, ", more") + "N\r\n",
       "",
       {{}, {"N", "", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ""}}},
      {"comma in a record",
       kHeader + "\"Na,me\"" + kEmptyLine + "B\n",
       "",
       {{},
        {"\"Na", "", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ""},
        {"B", "", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ""}}},
      {"blank record line",
       kHeader + "\r\nB",
       "",
       {{}, {}, {"B", "", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ""}}},
      {"number too wide",
       kHeader + wide,
       "",
       {{}, {NameColumn("W"), "        ", 0, 600, 0, 0, 0, 0, 0, 0, 0, 0, ""}}},
      {"a frequency beyond all numbers",
       kHeader + std::string(50, ' ') + "1e999999",
       "",
       {{}, {NameColumn(""), "        ", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ""}}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    std::istringstream file(test.text);
    ResolutionTable table;
    EXPECT_EQ(ReadResolutions(file, table), test.problem);
    EXPECT_EQ(table.Records(), test.records);
  }
}

TEST(ResolutionRecords, JunkTakesBoundedMemory) {
  ResolutionTable table;
  std::istringstream lines(kHeader + std::string(3'000'000, '\n'));
  EXPECT_EQ(ReadResolutions(lines, table), "");
  EXPECT_EQ(table.Size(), 32768U);
  std::istringstream one_line(kHeader + std::string(3'000'000, '\0'));
  EXPECT_EQ(ReadResolutions(one_line, table), "");
  EXPECT_EQ(table.Size(), 2U);
  EXPECT_EQ(table.ResolutionName(1), std::string(26, '\0'));
  EXPECT_THROW((void)table.ResolutionName(2), Fault);
  EXPECT_THROW((void)table.ResolutionName(-1), Fault);
}

struct ResolutionDataTest : ::testing::Test, LinkFixture {
  /// The unit's answers: to the count query, then to the packet queries by slot and part.
  ResolutionDataTest() {
    port.on_write = [this](std::string_view frame) -> std::string {
      if (frame == "F84104100D8??\r") return count_reply;
      EXPECT_EQ(frame.size(), 9U);
      return packet(static_cast<unsigned char>(frame[4]), frame[6]);
    };
  }

  TempFolder folder;
  std::string count_reply;
  std::function<std::string(int slot, char part)> packet = [](int slot, char part) {
    return part == 0 ? FirstPacket("Slot " + std::to_string(slot)) : kSecondPacket;
  };
  ResolutionTable table;
  ResolutionData data{table, link, clock, progress, boxes};
};

TEST_F(ResolutionDataTest, FetchesEverySlotAndWritesTheFile) {
  count_reply = "FC4104100D80000037F\r";
  WriteText("resdata.txt", "older");
  packet = [](int slot, char part) -> std::string {
    if (slot == 1 && part == 0) return "";
    if (slot == 2 && part == 1) return "";
    return part == 0 ? FirstPacket("Slot " + std::to_string(slot)) : kSecondPacket;
  };
  port.on_write = [this, answer = port.on_write](std::string_view frame) {
    EXPECT_TRUE(link.CommsBusy());
    return answer(frame);
  };
  data.FetchResolutionData();

  const auto query = [](char slot, char part) {
    return "S\x07\xA2\x01"s + slot + '\0' + part + '\0' + '?';
  };
  EXPECT_THAT(port.written, ElementsAre("F84104100D8??\r", query(0, 0), query(0, 1), query(1, 0),
                                        query(1, 0), query(1, 0), query(1, 1), query(2, 0),
                                        query(2, 1), query(2, 1), query(2, 1)));
  EXPECT_EQ(ReadText("resdata.txt"),
            kHeader + kEmptyLine + NameColumn("Slot 0") + kSlotColumns +
                "                                  800     600     0       0       1056    0       "
                "128     4       216     23              \r\n"
                "Slot 2                    RYU     0       0       31533   0       0       600     "
                "0       0       0       0       PN      \r\n");
  EXPECT_THAT(boxes.shown, ElementsAre(kSlotUnread));
  EXPECT_THAT(progress.log,
              ElementsAre("show", "caption Reading ResolutionData", "range 0 0", "value 1",
                          "value 2", "value 3", "caption Saving file", "hide"));
  EXPECT_THAT(clock.sleeps, ElementsAre(std::chrono::milliseconds(2000)));
  EXPECT_FALSE(link.CommsBusy());

  // The file's first record is the table's empty entry, so that every slot moves up by one.
  const auto items = data.FillResolutionList("resdata.txt");
  EXPECT_THAT(
      items,
      ElementsAre(ResolutionItem{NameColumn(""), 1}, ResolutionItem{NameColumn("Slot 0"), 2},
                  ResolutionItem{NameColumn(""), 3}, ResolutionItem{NameColumn("Slot 2"), 4}));
  EXPECT_EQ(table.Size(), 5U);
}

TEST_F(ResolutionDataTest, FetchesNoSlotsOr255) {
  for (const auto& [reply, slots] :
       {std::pair{"FC4104100D80000007C\r", 0}, std::pair{"FC4104100D80000FF7B\r", 255},
        std::pair{"12\r", 0}, std::pair{"zz12\r", 0}}) {
    count_reply = reply;
    port.written.clear();
    data.FetchResolutionData();
    std::string expected = kHeader + kEmptyLine;
    for (int slot = 0; slot < slots; ++slot) {
      expected += NameColumn("Slot " + std::to_string(slot)) + kSlotColumns;
    }
    EXPECT_EQ(ReadText("resdata.txt"), expected);
    EXPECT_EQ(port.written.size(), 1U + 2U * static_cast<unsigned>(slots));
  }
  EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(ResolutionDataTest, WithoutACountItStopsAsItStands) {
  for (const char* reply : {"", "F0000\r"}) {
    count_reply = reply;
    table.Reset(4);
    data.FetchResolutionData();
    EXPECT_TRUE(progress.shown);
    EXPECT_TRUE(link.CommsBusy());
    EXPECT_EQ(table.Size(), 5U);
  }
  EXPECT_EQ(port.written.size(), 4U);  // three sends into the silence
  EXPECT_THAT(boxes.shown, IsEmpty());
  EXPECT_FALSE(std::filesystem::exists("resdata.txt"));
}

TEST_F(ResolutionDataTest, ClosingThePortEndsTheFetchCleanly) {
  count_reply = "FC4104100D80000037F\r";
  const auto answer = port.on_write;
  for (const std::size_t last : {1U, 2U, 3U, 7U}) {
    WriteText("resdata.txt", "good");
    table.Reset(4);
    port.open = true;
    port.written.clear();
    port.on_write = [&](std::string_view frame) -> std::string {
      if (port.written.size() < last) return answer(frame);
      clock.After({}, [this] { port.Close(); });
      return "";
    };
    data.FetchResolutionData();
    EXPECT_EQ(port.written.size(), last);
    EXPECT_FALSE(progress.shown);
    EXPECT_FALSE(link.CommsBusy());
    EXPECT_EQ(ReadText("resdata.txt"), "good");
    EXPECT_EQ(table.Size(), 5U);
  }
  EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(ResolutionDataTest, ErrorsOfFilesAreSwallowedOrReported) {
  table.Reset(0);
  std::filesystem::create_directory("resdata.txt");
  data.WriteResolutionFile("resdata.txt");
  EXPECT_TRUE(std::filesystem::is_directory("resdata.txt"));
  data.WriteResolutionFile("missing/resdata.txt");
  EXPECT_THAT(boxes.shown, IsEmpty());

  WriteText("broken.txt", "x");
  EXPECT_THAT(data.FillResolutionList("broken.txt"), IsEmpty());
  data.ReadResolutionFile("vanished.txt");
  const Box invalid{"Invalid Resolution Data File.", BoxIcon::kNone, ""};
  EXPECT_THAT(boxes.shown, ElementsAre(invalid, invalid));
  EXPECT_EQ(table.Size(), 1U);
}

TEST_F(ResolutionDataTest, WithoutAFileTheBuiltInNamesAreListed) {
  std::filesystem::create_directory("resdata.txt");  // no file either
  const auto items = data.FillResolutionList("resdata.txt");
  ASSERT_EQ(items.size(), 106U);
  EXPECT_EQ(table.Size(), 106U);
  const std::pair<std::size_t, const char*> names[] = {
      {0, "NTSC / 60Hz"},          {25, "1024 x 768i 43Hz"},
      {46, "1280 x 768 60Hz Rb"},  {81, "1920 x 1080i 25Hz1250"},
      {96, "1920 x 1200 60Hz Rb"}, {105, "2048 x 1536 60Hz"}};
  for (const auto& [index, name] : names) {
    EXPECT_EQ(items[index], (ResolutionItem{name, static_cast<std::int32_t>(index)}));
    EXPECT_EQ(table.ResolutionName(static_cast<std::int32_t>(index)), name);
  }
}

}  // namespace
}  // namespace kalde2
