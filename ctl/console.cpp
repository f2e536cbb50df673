#include "ctl/console.h"

#include <QJsonDocument>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "adapters/standard_streams.h"
#include "ctl/exit_status.h"

namespace kalde2 {
namespace {

constexpr int kBarWidth = 30;
constexpr int kPercent = 100;

void Put(std::string_view text, std::FILE* stream) {
  (void)std::fwrite(text.data(), 1, text.size(), stream);
}

}  // namespace

Console::Console() : is_seen_(ErrorsAreSeen()) {}

void Console::Result(std::string_view line) {
  Put(line, stdout);
  Put("\n", stdout);
}

void Console::Result(const QJsonObject& document) {
  Put(QJsonDocument(document).toJson().toStdString(), stdout);
}

void Console::Flush() {
  Clear();
  const bool was_lost = std::ferror(stdout) != 0;
  if (std::fflush(stdout) == 0 && !was_lost) return;
  const std::string reason = std::error_code(errno, std::generic_category()).message();
  // What did not go out stays in the buffer, to be tried again without end.
  std::clearerr(stdout);
  throw CommandFault(ExitStatus::kUsage, "standard output: " + reason);
}

void Console::Note(std::string_view line) {
  Clear();
  Put("kalde2ctl: ", stderr);
  Put(line, stderr);
  Put("\n", stderr);
}

void Console::SetCaption(std::string_view text) {
  caption_ = text;
  Show();
}

void Console::SetRange(int minimum, int maximum) {
  minimum_ = minimum;
  maximum_ = maximum;
  value_ = minimum;
}

void Console::SetValue(int value) {
  if (value < minimum_ || value > maximum_) return;
  value_ = value;
  Show();
}

void Console::End(bool /*is_complete*/) {
  Clear();
}

void Console::Show() {
  if (!is_seen_) return;
  std::string text = caption_;
  if (maximum_ > minimum_) {
    const int done = (value_ - minimum_) * kPercent / (maximum_ - minimum_);
    const auto filled = static_cast<std::size_t>(done * kBarWidth / kPercent);
    text = std::string(filled, '#') + std::string(kBarWidth - filled, '.') + ' ' +
           std::to_string(done) + " %  " + caption_;
  }
  if (text == shown_) return;
  // Back to the start of the line, and the rest of what stood there away.
  Put("\r" + text + "\x1b[K", stderr);
  shown_ = std::move(text);
}

void Console::Clear() {
  if (!shown_.empty()) Put("\r\x1b[K", stderr);
  shown_.clear();
}

}  // namespace kalde2
