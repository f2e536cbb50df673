#include <cstdint>

#include "tests/fuzz/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kalde2::FuzzOne({reinterpret_cast<const char*>(data), size});
  return 0;
}
