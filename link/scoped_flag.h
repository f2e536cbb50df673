#pragma once

#include <type_traits>

namespace kalde2 {

/// Sets a value for the life of a scope and puts back what it was.
template <typename T>
class ScopedValue {
 public:
  ScopedValue(T& place, std::type_identity_t<T> value) : place_(place), before_(place) {
    place_ = value;
  }
  ~ScopedValue() { place_ = before_; }
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;

 private:
  T& place_;
  T before_;
};

/// Raises a flag for the life of a scope.
class ScopedFlag : public ScopedValue<bool> {
 public:
  explicit ScopedFlag(bool& flag, bool value = true) : ScopedValue(flag, value) {}
};

}  // namespace kalde2
