#pragma once

#include <cstddef>
#include <fstream>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace kalde2 {

/// Line end of every file that the panel writes.
inline constexpr std::string_view kLineEnd = "\r\n";

/// Reads the lines of a text, one byte a character. A line ends with CR LF, a bare LF or a bare CR;
/// an end of line at the end of the text begins no further line. Memory is bounded whatever the
/// text holds: of a longer line only the first `kLongestLine` characters are handed out.
class LineReader {
 public:
  /// Far beyond any line that the panel writes.
  static constexpr std::size_t kLongestLine = 1024;

  explicit LineReader(std::istream& text);

  /// The next line without its end. @return false at the end of the text or when reading fails
  [[nodiscard]] bool Next(std::string& line);

  /// True when the line that `Next` gave last was longer than what was handed out of it.
  [[nodiscard]] bool WasCut() const { return was_cut_; }

  /// Lines read so far: the number of the line that `Next` gave last, counted from 1.
  [[nodiscard]] std::size_t LineNumber() const { return line_number_; }

 private:
  [[nodiscard]] bool NextByte(char& byte);

  std::istream& text_;
  std::vector<char> buffer_;
  std::size_t position_ = 0;
  std::size_t filled_ = 0;
  std::size_t line_number_ = 0;
  bool after_carriage_return_ = false;
  bool was_cut_ = false;
};

/// Opens a file for reading. What is no plain file (a folder, a device) is not opened.
/// @param path in the file system's encoding, as in all of these
[[nodiscard]] std::ifstream OpenForReading(const std::string& path);

/// Deletes the file where it exists and creates it anew. Errors are not reported: writing to the
/// stream of a file that could not be created does nothing.
[[nodiscard]] std::ofstream CreateAnew(const std::string& path);

/// True where there is a file of this name; a folder is none.
[[nodiscard]] bool FileExists(const std::string& path);

/// Name of a file without its folder, as UTF-8, for messages.
[[nodiscard]] std::string ShownFileName(const std::string& path);

}  // namespace kalde2
