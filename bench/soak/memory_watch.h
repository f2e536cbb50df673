#pragma once

#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>

namespace kalde2 {

/// Watches the memory of this process from a moment on, after everything has been used once.
class MemoryWatch {
 public:
  /// Prints the figures of what was done since, and fails the test where memory has grown.
  /// @param count how many of `what` were done
  void Finish(long count, const char* what) const {
    const long heap = HeapKilobytes();
    const long resident = ResidentKilobytes();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start_;
    std::printf("%8ld %-15s %6.1f s   heap %6ld -> %6ld KB   resident %6ld -> %6ld KB\n", count,
                what, seconds.count(), heap_, heap, resident_, resident);
    // Of each transaction not a byte may be lost, of each opening no 64; the second has room for
    // caches.
    EXPECT_LE(heap - heap_, 64);
    EXPECT_LE(resident - resident_, 4096);
  }

 private:
  static long HeapKilobytes() { return static_cast<long>(mallinfo2().uordblks / 1024); }

  static long ResidentKilobytes() {
    malloc_trim(0);
    long total = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
  }

  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  long heap_ = HeapKilobytes();
  long resident_ = ResidentKilobytes();
};

}  // namespace kalde2
