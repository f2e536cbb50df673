#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace kalde2::bench {

/// The value below which a share of the samples lies. @param share 0..1 @param samples not empty
[[nodiscard]] inline double Percentile(std::vector<double> samples, double share) {
  const auto rank = static_cast<std::ptrdiff_t>(share * static_cast<double>(samples.size() - 1));
  std::nth_element(samples.begin(), samples.begin() + rank, samples.end());
  return samples[static_cast<std::size_t>(rank)];
}

[[nodiscard]] inline double Median(std::vector<double> samples) {
  return Percentile(std::move(samples), 0.5);
}

[[nodiscard]] inline double Microseconds(std::chrono::steady_clock::duration time) {
  return std::chrono::duration<double, std::micro>(time).count();
}

[[nodiscard]] inline double Milliseconds(std::chrono::steady_clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// The table is made of lines with four fields, a tab between: what was measured, the figure, its
// unit, and the bound with "<=" or ">=" before it, or "-" where there is none.

inline void PrintFigure(const std::string& name, double figure, const char* unit,
                        const std::string& bound = "-") {
  std::printf("%s\t%.4g\t%s\t%s\n", name.c_str(), figure, unit, bound.c_str());
  std::fflush(stdout);
}

inline void PrintAtMost(const std::string& name, double figure, const char* unit,
                        const std::string& bound) {
  PrintFigure(name, figure, unit, "<= " + bound);
}

inline void PrintAtLeast(const std::string& name, double figure, const char* unit,
                         const std::string& bound) {
  PrintFigure(name, figure, unit, ">= " + bound);
}

}  // namespace kalde2::bench
