#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace kalde2 {

/// An empty folder of the running test's own, which is the current one and goes with the scope.
class TempFolder {
 public:
  TempFolder() : before_(std::filesystem::current_path()) {
    std::string folder = std::filesystem::temp_directory_path() / "kalde2_XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder_ = folder;
    std::filesystem::current_path(folder_);
  }
  ~TempFolder() {
    std::error_code error;
    std::filesystem::current_path(before_, error);
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, error);
    std::filesystem::remove_all(folder_, error);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

 private:
  std::filesystem::path before_;
  std::filesystem::path folder_;
};

inline void WriteText(const std::string& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

inline std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kalde2
