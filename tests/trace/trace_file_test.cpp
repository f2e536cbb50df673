#include "trace/trace_file.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kalde2 {
namespace {

using std::chrono::microseconds;

TraceReading Read(const std::string& text) {
  std::istringstream file(text);
  return ReadTrace(file);
}

TEST(TraceFile, KeepsAllBytesTimesAndDirections) {
  std::string all_bytes;
  for (int code = 0; code < 256; ++code) all_bytes += static_cast<char>(code);
  const Trace trace{57600,
                    {{microseconds(0), Direction::kToUnit, all_bytes},
                     {microseconds(90'000'000'000), Direction::kFromUnit, "F0000\r"}}};
  std::ostringstream file;
  BeginTrace(file, trace.baud);
  for (const TraceEvent& event : trace.events) WriteEvent(file, event);
  const TraceReading reading = Read(file.str());
  EXPECT_FALSE(reading.problem);
  EXPECT_EQ(reading.trace, trace);
  EXPECT_TRUE(file.str().ends_with("\n90000000000 <- 46 30 30 30 30 0D  # F0000\\r\n"));
}

TEST(TraceFile, TakesWhatAnEditorOrMailMakesOfIt) {
  const TraceReading reading =
      Read("# for support\r\n\r\nkalde2-trace\t1 # no rate\r\n5 -> 0a 0B\r\n\r\n 7\t<-\t46 # F");
  EXPECT_FALSE(reading.problem);
  EXPECT_EQ(reading.trace, (Trace{{},
                                  {{microseconds(5), Direction::kToUnit, "\x0A\x0B"},
                                   {microseconds(7), Direction::kFromUnit, "F"}}}));
}

TEST(TraceFile, TellsTheLineThatIsWrongAndKeepsWhatStandsAhead) {
  const std::string head = "kalde2-trace 1\n1 -> 46\n";
  const std::pair<std::string, int> cases[] = {
      {"", 1},
      {"# nothing else\n", 2},
      {"1 -> 46\n", 1},
      {"kalde2-trace\n", 1},
      {"kalde2-trace 2\n", 1},
      {"kalde2-trace 1 fast\n", 1},
      {"kalde2-trace 1 0\n", 1},
      {"kalde2-trace 1 9600 8\n", 1},
      {head + "-1 -> 46\n", 3},
      {head + "1.5 -> 46\n", 3},
      {head + "99999999999999999999 -> 46\n", 3},
      {head + "\n#\n2 46\n", 5},
      {head + "2 ->\n", 3},
      {head + "2 -> 4\n", 3},
      {head + "2 -> 046\n", 3},
      {head + "2 -> 0x\n", 3},
      {head + "2 -> +4\n", 3},
      {head + "2 -> 46 # F\n3 -> 4G\n", 4},
  };
  for (const auto& [text, line] : cases) {
    const TraceReading reading = Read(text);
    ASSERT_TRUE(reading.problem) << text;
    EXPECT_EQ(reading.problem->line, line) << text;
    EXPECT_FALSE(reading.problem->text.empty());
    EXPECT_EQ(reading.trace.events.size(), line < 3 ? 0U : line == 4 ? 2U : 1U) << text;
  }
}

}  // namespace
}  // namespace kalde2
