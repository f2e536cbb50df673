#pragma once

namespace kalde2 {

/// Raises a flag for the life of a scope and puts back what it was.
class ScopedFlag {
 public:
  explicit ScopedFlag(bool& flag, bool value = true) : flag_(flag), before_(flag) { flag_ = value; }
  ~ScopedFlag() { flag_ = before_; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace kalde2
