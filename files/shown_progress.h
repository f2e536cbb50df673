#pragma once

#include <string_view>

#include "model/progress_view.h"

namespace kalde2 {

/// Keeps the progress window in view for the life of a scope.
class ShownProgress {
 public:
  ShownProgress(ProgressView& progress, std::string_view caption) : progress_(progress) {
    progress_.Show();
    progress_.SetCaption(caption);
  }
  ~ShownProgress() { progress_.Hide(); }
  ShownProgress(const ShownProgress&) = delete;
  ShownProgress& operator=(const ShownProgress&) = delete;

 private:
  ProgressView& progress_;
};

}  // namespace kalde2
