#pragma once

#include <string_view>

namespace kalde2 {

/// What a long operation tells of its course while it runs. Nothing here may hold up the request
/// that follows.
class Progress {
 public:
  virtual ~Progress() = default;

  virtual void Begin() = 0;

  /// What is being done, in words for the operator.
  virtual void SetCaption(std::string_view text) = 0;

  /// The ends of the way; with both 0 there is none to be seen.
  virtual void SetRange(int minimum, int maximum) = 0;

  /// How far the operation is; a value outside the range is ignored.
  virtual void SetValue(int value) = 0;

  /// The operation sleeps next, and nothing is served meanwhile.
  virtual void SleepFollows() = 0;

  /// An operation that ends in the midst may leave this out: its last words stay.
  /// @param is_complete false when the port was closed before the end
  virtual void End(bool is_complete) = 0;
};

}  // namespace kalde2
