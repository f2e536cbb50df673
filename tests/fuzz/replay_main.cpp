/// Runs a target over kept inputs, without libFuzzer: every file of the folders that are named.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/fuzz/fuzz_target.h"

int main(int argc, char* argv[]) {
  namespace fs = std::filesystem;
  int inputs = 0;
  for (int i = 1; i < argc; ++i) {
    for (const fs::directory_entry& entry : fs::directory_iterator(argv[i])) {
      std::ifstream file(entry.path(), std::ios::binary);
      const std::string input{std::istreambuf_iterator<char>(file), {}};
      // Said beforehand, so that the culprit is known after a crash.
      std::printf("%s\n", entry.path().filename().c_str());
      std::fflush(stdout);
      kalde2::FuzzOne(input);
      ++inputs;
    }
  }
  std::printf("%d inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
