#include "files/text_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace kalde2 {
namespace {

TEST(LineReader, EndsLinesAndBoundsThem) {
  const std::string longest(LineReader::kLongestLine, 'x');
  // One byte before the buffer ends, so that a line end is split between two fillings.
  const std::string to_the_edge(65535, 'y');
  struct {
    std::string text;
    std::vector<std::string> lines;
  } const cases[] = {
      {"", {}},
      {"a\r\n\r\nb\r\n", {"a", "", "b"}},
      {"a\nb\rc\n\n\r\r", {"a", "b", "c", "", "", ""}},
      {longest + "cut off\r\nb", {longest, "b"}},
      {to_the_edge + "\r\nb", {std::string(LineReader::kLongestLine, 'y'), "b"}},
  };
  for (const auto& test : cases) {
    std::istringstream text(test.text);
    LineReader reader(text);
    std::vector<std::string> lines;
    for (std::string line; reader.Next(line);) lines.push_back(line);
    EXPECT_EQ(lines, test.lines);
    EXPECT_EQ(reader.LineNumber(), test.lines.size());
  }
}

}  // namespace
}  // namespace kalde2
