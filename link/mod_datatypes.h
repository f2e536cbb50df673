#pragma once

#include <cstdint>

namespace kalde2 {

/// The boolean of records and shared flags: one 16-bit word, 0 for false and -1 for true.
class Bool16 {
 public:
  constexpr Bool16() = default;
  constexpr Bool16(bool value) : word_(value ? std::int16_t{-1} : std::int16_t{0}) {}  // NOLINT
  constexpr operator bool() const { return word_ != 0; }                               // NOLINT
  [[nodiscard]] constexpr std::int16_t Word() const { return word_; }

 private:
  std::int16_t word_ = 0;
};
static_assert(sizeof(Bool16) == 2 && Bool16(true).Word() == -1);

/// A decoded reply of the unit.
struct ReplyRecord {
  std::int16_t Group = 0;    ///< parameter group, 0x41 for every parameter
  std::int16_t Index = 0;    ///< index within the group, 0 for every parameter
  std::int16_t Address = 0;  ///< parameter address, 130..413 for catalogue parameters
  std::int32_t Value = 0;    ///< -16773118..4097 after decoding
  std::int16_t Source = 0;   ///< source code of the input that the value belongs to
  Bool16 Valid;              ///< false for an error reply, a time-out or a fault while decoding
};

/// The parameter group and index of every parameter.
inline constexpr std::int16_t kParameterGroup = 0x41;
inline constexpr std::int16_t kParameterIndex = 0;

/// Source code of parameters that are not kept per source, and of the first source.
inline constexpr std::int16_t kFirstSourceCode = 0x10;

}  // namespace kalde2
