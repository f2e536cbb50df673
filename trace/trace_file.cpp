#include "trace/trace_file.h"

#include <charconv>
#include <iomanip>
#include <sstream>

#include "link/frame_codec.h"

namespace kalde2 {
namespace {

constexpr std::string_view kTitle = "kalde2-trace";
constexpr std::string_view kVersion = "1";
constexpr std::string_view kToUnitMark = "->";
constexpr std::string_view kFromUnitMark = "<-";

/// The words of a line, up to its comment.
std::vector<std::string> Words(const std::string& line) {
  std::istringstream text(line.substr(0, line.find('#')));
  std::vector<std::string> words;
  for (std::string word; text >> word;) words.push_back(word);
  return words;
}

/// A number without a sign and with nothing else in the word.
template <typename Number>
std::optional<Number> ReadWhole(std::string_view word, int base = 10) {
  Number number{};
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number, base);
  const bool is_whole = error == std::errc() && stop == end && word.front() != '-';
  return is_whole ? std::optional(number) : std::nullopt;
}

/// @return what is wrong, empty when nothing is; so do the next two
std::string ReadHeader(const std::vector<std::string>& words, Trace& trace) {
  if (words.front() != kTitle) return "a trace begins with \"kalde2-trace\"";
  if (words.size() < 2 || words[1] != kVersion) return "a form of trace that is not known here";
  if (words.size() == 2) return {};
  const std::optional<int> baud = ReadWhole<int>(words[2]);
  if (words.size() > 3 || baud.value_or(0) == 0) return "the form is followed by the baud rate";
  trace.baud = baud;
  return {};
}

std::string ReadBytes(const std::vector<std::string>& words, std::string& bytes) {
  constexpr std::size_t kFirst = 2;
  if (words.size() == kFirst) return "bytes are missing";
  for (std::size_t i = kFirst; i < words.size(); ++i) {
    const auto code = ReadWhole<unsigned char>(words[i], 16);
    if (words[i].size() != 2 || !code) return '"' + words[i] + "\" is no byte in hex";
    bytes += static_cast<char>(*code);
  }
  return {};
}

std::string ReadEvent(const std::vector<std::string>& words, Trace& trace) {
  const auto time = ReadWhole<std::int64_t>(words.front());
  if (!time) return '"' + words.front() + "\" is no time in microseconds";
  const std::string_view mark = words.size() > 1 ? std::string_view(words[1]) : "";
  if (mark != kToUnitMark && mark != kFromUnitMark) return "the time is followed by -> or <-";
  TraceEvent event{std::chrono::microseconds(*time),
                   mark == kToUnitMark ? Direction::kToUnit : Direction::kFromUnit,
                   {}};
  std::string problem = ReadBytes(words, event.bytes);
  if (problem.empty()) trace.events.push_back(std::move(event));
  return problem;
}

}  // namespace

TraceReading ReadTrace(std::istream& file) {
  TraceReading reading;
  int number = 0;
  bool has_header = false;
  for (std::string line; std::getline(file, line);) {
    ++number;
    const std::vector<std::string> words = Words(line);
    if (words.empty()) continue;
    const std::string problem =
        has_header ? ReadEvent(words, reading.trace) : ReadHeader(words, reading.trace);
    has_header = true;
    if (problem.empty()) continue;
    reading.problem = {number, problem};
    return reading;
  }
  if (!has_header) reading.problem = {number + 1, "there is nothing in it"};
  return reading;
}

void BeginTrace(std::ostream& file, std::optional<int> baud) {
  file << kTitle << ' ' << kVersion;
  if (baud) file << ' ' << *baud;
  file << std::endl;
}

void WriteEvent(std::ostream& file, const TraceEvent& event) {
  constexpr int kTimeWidth = 10;  // some hours; what comes later is wider
  file << std::setw(kTimeWidth) << event.time.count() << ' '
       << (event.direction == Direction::kToUnit ? kToUnitMark : kFromUnitMark);
  for (const char byte : event.bytes) file << ' ' << TextToHex({&byte, 1});
  file << "  # " << Printable(event.bytes) << std::endl;
}

std::string Printable(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (byte == '\r') {
      text += "\\r";
    } else if (byte >= 0x20 && byte < 0x7F) {
      text += byte;
    } else {
      text += "\\x" + TextToHex({&byte, 1});
    }
  }
  return text;
}

}  // namespace kalde2
