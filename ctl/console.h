#pragma once

#include <QJsonObject>
#include <string>
#include <string_view>

#include "model/progress.h"

namespace kalde2 {

/// The terminal of a command: results go to standard output, all else to standard error. The
/// progress is a bar that somebody at a terminal sees, and nothing in a pipe.
class Console final : public Progress {
 public:
  Console();

  /// One line of the results.
  void Result(std::string_view line);

  /// The results as one document.
  void Result(const QJsonObject& document);

  /// Hands on what has been said so far.
  /// @throws CommandFault where standard output does not take it: a full disk, a closed pipe
  void Flush();

  /// One line of anything that is no result.
  void Note(std::string_view line);

  void Begin() override {}
  void SetCaption(std::string_view text) override;
  void SetRange(int minimum, int maximum) override;
  void SetValue(int value) override;
  void SleepFollows() override {}
  void End(bool is_complete) override;

 private:
  void Show();
  void Clear();

  bool is_seen_;
  std::string caption_;
  std::string shown_;  ///< what stands in the terminal's last line, empty for nothing
  int minimum_ = 0;
  int maximum_ = 0;
  int value_ = 0;
};

}  // namespace kalde2
