#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kalde2::bench {

/// The least that a program can do to ask the unit something: write(2), poll(2), read(2) on a raw
/// terminal, and nothing with what comes. What the panel adds is measured against it.
class BareLine {
 public:
  /// Opens the device raw. @param baud 57600 or 115200 @throws std::system_error
  BareLine(const std::string& device, int baud);
  ~BareLine();
  BareLine(const BareLine&) = delete;
  BareLine& operator=(const BareLine&) = delete;

  /// Reads a parameter again and again. @return what each round trip took, in microseconds
  /// @throws std::runtime_error for a unit that is silent for a second
  [[nodiscard]] std::vector<double> ReadAgain(std::int16_t address, int count);

 private:
  /// Sends a request and reads until "\r". @return the time it took
  std::chrono::nanoseconds RoundTrip(std::string_view request);

  int device_;
};

}  // namespace kalde2::bench
