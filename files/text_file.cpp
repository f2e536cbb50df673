#include "files/text_file.h"

#include <filesystem>
#include <system_error>

namespace kalde2 {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBufferSize = 65536;

}  // namespace

LineReader::LineReader(std::istream& text) : text_(text), buffer_(kBufferSize) {}

bool LineReader::Next(std::string& line) {
  line.clear();
  was_cut_ = false;
  char byte = 0;
  bool any = false;
  while (NextByte(byte)) {
    const bool ends_previous = byte == '\n' && after_carriage_return_;
    after_carriage_return_ = byte == '\r';
    if (ends_previous) continue;
    any = true;
    if (byte == '\r' || byte == '\n') break;
    if (line.size() == kLongestLine) {
      was_cut_ = true;
    } else {
      line += byte;
    }
  }
  if (any) ++line_number_;
  return any;
}

bool LineReader::NextByte(char& byte) {
  if (position_ == filled_) {
    text_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    filled_ = static_cast<std::size_t>(text_.gcount());
    position_ = 0;
    if (filled_ == 0) return false;
  }
  byte = buffer_[position_++];
  return true;
}

std::ifstream OpenForReading(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return {};
  return std::ifstream(fs::path(path), std::ios::binary);
}

std::ofstream CreateAnew(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (fs::is_regular_file(status) || fs::is_symlink(status)) fs::remove(path, error);
  // A file that could not be deleted may still be written over; a folder or a device is let be.
  if (fs::exists(path, error) && !fs::is_regular_file(path, error)) return {};
  return std::ofstream(fs::path(path), std::ios::binary | std::ios::trunc);
}

bool FileExists(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error) && !fs::is_directory(path, error);
}

std::string ShownFileName(const std::string& path) {
  const std::u8string name = fs::path(path).filename().u8string();
  return {name.begin(), name.end()};
}

}  // namespace kalde2
