// What the unit answers: the texts in dialogues/. A line with ">" is typed at its front panel, one
// with
// "<" arrives at its line; below it stands all that comes of it, with the milliseconds after which.

#include <sstream>

#include "simulator/front_panel.h"
#include "simulator/paced_queue.h"
#include "simulator/unit_frames.h"
#include "tests/support/written_down.h"

namespace kalde2 {
namespace {

/// Bytes from their printable form: "\r" and "\xHH" stand for what cannot be seen.
std::string Bytes(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      bytes += text[i];
    } else if (text[++i] == 'r') {
      bytes += '\r';
    } else {
      bytes += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    }
  }
  return bytes;
}

class Dialogues : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Dialogues, GoAsTheyAreWrittenDown) {
  std::ostringstream log;
  const auto note = [&log](std::string_view, const std::string& meaning, bool is_problem) {
    log << (is_problem ? "  PROBLEM " : "  ") << meaning << '\n';
  };
  SimulatedUnit unit({.resolutions = BuiltInResolutions(2)}, note);
  FrontPanel panel(unit);
  std::istringstream lines(ReadText(GetParam()));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == ' ') continue;
    log << line << '\n';
    if (line[0] == '>') {
      const FrontPanelResult result = panel.Execute(line.substr(1));
      std::istringstream text(result.text);
      for (std::string part; std::getline(text, part);) log << "  " << part << '\n';
      if (!result.frame.empty()) log << "  " << Printable(result.frame) << '\n';
      if (result.order != LineOrder::kNone) {
        log << "  order " << static_cast<int>(result.order) << ' ' << result.baud << '\n';
      }
    } else if (line[0] == '<') {
      for (const LineAction& action : unit.Receive(Bytes(line.substr(2)))) {
        log << "  " << action.after.count() << ": " << Printable(action.bytes)
            << (action.hang_up ? "hang up" : "") << '\n';
        if (!action.bytes.empty()) log << "  " << unit.DescribeReply(action.bytes) << '\n';
      }
    }
  }
  ExpectAsWrittenDown(log.str(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, Dialogues, testing::ValuesIn(WrittenDownIn("simulator/dialogues")),
                         NameOfText);

TEST(UnitWords, NoNameStandsTwice) {
  const SimulatedUnit unit({});
  for (const int address : unit.Words().NamedAddresses()) {
    EXPECT_EQ(unit.FindAddress(unit.Words().Name(address)), address);
  }
}

TEST(PacedQueue, LetsCharactersThroughAtTenBitsEach) {
  using std::chrono::milliseconds;
  const PacedQueue::Clock::time_point start{};
  PacedQueue queue(9600);
  queue.Put("abcd", start);
  EXPECT_EQ(queue.Take(start), "");
  EXPECT_EQ(queue.NextDue(), start + std::chrono::nanoseconds(std::chrono::seconds(10)) / 9600);
  EXPECT_EQ(queue.Take(start + milliseconds(3)), "ab");
  queue.Put("e", start + milliseconds(3));
  EXPECT_EQ(queue.Take(start + milliseconds(5)), "cd") << "the fifth waits for the fourth";
  EXPECT_EQ(queue.Take(start + milliseconds(6)), "e");
  EXPECT_EQ(queue.NextDue(), std::nullopt);
}

}  // namespace
}  // namespace kalde2
