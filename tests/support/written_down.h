#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "tests/support/temp_folder.h"

namespace kalde2 {

/// Expects a text to be what its file holds. After a change that is meant, KALDE2_UPDATE=1 writes
/// the file anew, for its difference to be read.
inline void ExpectAsWrittenDown(const std::string& now, const std::string& path) {
  if (std::getenv("KALDE2_UPDATE") != nullptr) return WriteText(path, now);
  EXPECT_EQ(now, ReadText(path));
}

/// The files of a folder of tests/, for a test of each.
inline std::vector<std::filesystem::path> WrittenDownIn(const std::string& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(KALDE2_TESTS "/" + folder)) {
    files.push_back(entry.path());
  }
  return files;
}

inline std::string NameOfText(const ::testing::TestParamInfo<std::filesystem::path>& text) {
  return text.param.stem().string();
}

}  // namespace kalde2
