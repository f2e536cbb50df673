#pragma once

#include <string_view>

namespace kalde2 {

/// The progress window of long transfers. What is set is painted in the next wait that serves
/// events, while the line is busy with a request; painting at once would hold up the request.
class ProgressView {
 public:
  virtual ~ProgressView() = default;

  /// Shows the window over the main window without blocking it.
  virtual void Show() = 0;
  virtual void Hide() = 0;

  virtual void SetCaption(std::string_view text) = 0;

  /// Sets the ends of the bar; with both 0 the bar stands still.
  virtual void SetRange(int minimum, int maximum) = 0;

  /// Sets the bar; a value outside the range is ignored.
  virtual void SetValue(int value) = 0;

  /// Paints what was set, for those who sleep next.
  virtual void PaintNow() = 0;
};

}  // namespace kalde2
