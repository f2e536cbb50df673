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
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::path(::testing::TempDir()) /
              (std::string("kalde2_") + test->test_suite_name() + "_" + test->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    std::filesystem::current_path(folder_);
  }
  ~TempFolder() {
    std::error_code error;
    std::filesystem::current_path(before_, error);
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
