#include "files/mod_resolutions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::string_literals;

std::string TextOf(const ResolutionTable& table) {
  std::ostringstream text;
  WriteResolutions(text, table);
  return text.str();
}

/// A slot's packets as the unit sends them: 600 lines, 31533, flags R, Y and U, polarities PN.
std::string FirstPacket(std::string name) {
  name.resize(24, ' ');
  return "S\x25......"s + name + "\x13\x2D\x7B\x00\x58\x02\x02"s;
}
const std::string kSecondPacket =
    "S\x18........\x20\x04\x80\x00\x04\x00\x20\x03\x58\x02\xD8\x00\x17\x00\xEE\xEE"s;

std::string NameColumn(std::string name) {
  name.resize(26, ' ');
  return name;
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
      {first.substr(0, 14), "S\1.", {"A 24", "Z", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, "ZZ"}},
      // Flags and polarities that mean nothing, words of 32768 and more.
      {first.substr(0, 32) + "\xE0\xFF\xFF\xFF\x00\x80\x04"s,
       std::string(kSecondPacket).replace(10, 4, "\x00\x80\xFF\x7F"s),
       {"A 24 character name", "", 800, 600, 16776960, 4, 5, 6, 32767, 4, 216, 23, ""}},
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
  const std::string header = TextOf(table);
  table.Append({"A name of 28 characters long", "RYCIURYCI", -32768, 0, 1234.56789, 32767, 1, 2, 3,
                4, 5, 6, "123456789"});
  const std::string text = TextOf(table);
  EXPECT_EQ(text.substr(header.size()),
            "A name of 28 characters loRYCIURYC-32768  0       1234.56732767   1       2       "
            "3       4       5       6       12345678\r\n");
  std::istringstream file(text);
  EXPECT_EQ(ReadResolutions(file, table), "");
  const ResolutionRecord cut{
      "A name of 28 characters lo", "RYCIURYC", -32768, 0, 1234.567, 32767, 1, 2, 3, 4, 5, 6, "12"};
  EXPECT_THAT(table.Records(), ElementsAre(ResolutionRecord{}, cut));
}

TEST(ResolutionRecords, ReadsOddFiles) {
  ResolutionTable table;
  const std::string header = TextOf(table);
  const auto changed = [&](std::size_t at, std::size_t count, const char* text) {
    return std::string(header).replace(at, count, text);
  };
  struct {
    std::string text;
    const char* problem;
    std::vector<std::string> names = {""};
  } const cases[] = {
      {"", "Invalid Resolution Data File."},
      {changed(61, 1, "2"), "Unsupported resolution data file format."},
      {changed(80, 4, "Nome"), "Resolution Data File Corrupted."},
      {changed(61, 1, "1.5") + "A\r\n", "", {"", "A"}},
      {changed(61, 1, "99999"), "Unsupported resolution data file format."},
      // A comma ends its line, in the title as in a record.
      {changed(35, 0, ", more") + "N\r\n", "", {"", "N"}},
      {header + "\"Na,me\"\r\n\r\nB", "", {"", "\"Na", "", "B"}},
      {header + std::string(40'000, '\n'), "", std::vector<std::string>(32768)},
      // Numbers that do not fit, and what is a number to its first other character only.
      {header + NameColumn("") +
           "        99999   600x    1e999999&H10    1e3     59.94     -7    +8",
       "",
       {"", NameColumn("")}},
  };
  for (const auto& [text, problem, names] : cases) {
    std::istringstream file(text);
    EXPECT_EQ(ReadResolutions(file, table), problem);
    std::vector<std::string> read;
    for (const ResolutionRecord& record : table.Records()) read.push_back(record.Name);
    EXPECT_EQ(read, names);
  }
  const ResolutionRecord& last = table.Record(1);
  const ResolutionRecord numbers{NameColumn(""), "        ", 0, 600, 0, 0, 1, 59, -7, 8, 0, 0, ""};
  EXPECT_EQ(last, numbers);
  EXPECT_THROW((void)table.ResolutionName(-1), Fault);
}

struct ResolutionDataTest : ::testing::Test, LinkFixture, FetchEvents {
  ResolutionDataTest() {
    port.on_write = [this](std::string_view frame) -> std::string {
      EXPECT_TRUE(link.CommsBusy());
      if (frame == "F84104100D8??\r") return count_reply;
      if (frame == silent_for) return "";
      return frame[6] == 0 ? FirstPacket("Slot") : kSecondPacket;
    };
  }

  void SlotBegins(std::size_t slot, std::size_t slot_count) override {
    progress.log.push_back("slot " + std::to_string(slot) + "/" + std::to_string(slot_count));
  }
  void SlotUnread(std::size_t slot) override { unread.push_back(slot); }
  void Fetched() override {
    EXPECT_EQ(progress.log.back(), "caption Saving file");
    ++fetched;
  }

  std::vector<std::size_t> unread;
  int fetched = 0;
  std::string count_reply = "FC4104100D80000027E\r";  // two slots
  std::string silent_for;
  ResolutionTable table;
  ResolutionData data{table, link, progress};
};

TEST_F(ResolutionDataTest, FetchesEverySlot) {
  const auto query = [](char slot, char part) {
    return "S\x07\xA2\x01"s + slot + '\0' + part + '\0' + '?';
  };
  silent_for = query(1, 0);
  EXPECT_EQ(data.FetchResolutionData(*this), FetchEnding::kComplete);
  EXPECT_THAT(port.written, ElementsAre("F84104100D8??\r", query(0, 0), query(0, 1), query(1, 0),
                                        query(1, 0), query(1, 0), query(1, 1)));
  const ResolutionRecord whole{"Slot", "RYU", 800, 600, 31533, 0, 1056, 600, 128, 4, 216, 23, "PN"};
  const ResolutionRecord half{"", "", 800, 600, 0, 0, 1056, 0, 128, 4, 216, 23, ""};
  EXPECT_THAT(table.Records(), ElementsAre(ResolutionRecord{}, whole, half));
  EXPECT_EQ(fetched, 1);
  EXPECT_THAT(unread, ElementsAre(1));
  EXPECT_THAT(progress.log,
              ElementsAre("begin", "caption Reading ResolutionData", "range 0 0", "value 1",
                          "slot 1/2", "value 2", "slot 2/2", "caption Saving file", "end 1"));
  EXPECT_FALSE(link.CommsBusy());
}

TEST_F(ResolutionDataTest, CountsTheSlotsByPositionFromTheEnd) {
  for (const auto& [reply, slots] : {std::pair{"FC4104100D80000007C\r", 0U},
                                     {"FC4104100D80000FF7B\r", 255U},
                                     {"12\r", 0U},
                                     {"zz12\r", 0U}}) {
    count_reply = reply;
    port.written.clear();
    EXPECT_EQ(data.FetchResolutionData(*this), FetchEnding::kComplete);
    EXPECT_EQ(port.written.size(), 1U + 2U * slots);
    EXPECT_EQ(table.Size(), slots + 1U);
  }
  EXPECT_THAT(unread, IsEmpty());
}

TEST_F(ResolutionDataTest, WithoutACountItStopsAsItStands) {
  for (const char* reply : {"", "F0000\r"}) {
    count_reply = reply;
    table.Reset(4);
    EXPECT_EQ(data.FetchResolutionData(*this), FetchEnding::kUncounted);
    EXPECT_TRUE(progress.shown && link.CommsBusy());
    EXPECT_EQ(table.Size(), 5U);
  }
  EXPECT_EQ(port.written.size(), 4U);  // three sends into the silence
  EXPECT_EQ(fetched, 0);
}

TEST_F(ResolutionDataTest, ClosingThePortEndsTheFetchCleanly) {
  const auto answer = port.on_write;
  for (const std::size_t last : {1U, 2U, 3U, 5U}) {
    table.Reset(4);
    port.open = true;
    port.written.clear();
    port.on_write = [&](std::string_view frame) -> std::string {
      if (port.written.size() < last) return answer(frame);
      clock.After({}, [this] { port.Close(); });
      return "";
    };
    EXPECT_EQ(data.FetchResolutionData(*this), FetchEnding::kClosed);
    EXPECT_EQ(port.written.size(), last);
    EXPECT_FALSE(progress.shown || link.CommsBusy());
    EXPECT_EQ(table.Size(), 5U);
  }
  EXPECT_THAT(unread, IsEmpty());
  EXPECT_EQ(fetched, 0);
}

}  // namespace
}  // namespace kalde2
