#include <QJsonDocument>
#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <fstream>
#include <functional>
#include <memory>
#include <system_error>
#include <utility>

#include "adapters/port_link.h"
#include "adapters/port_numbers.h"
#include "adapters/pseudo_terminal.h"
#include "adapters/relay.h"
#include "ctl/commands.h"
#include "ctl/line_words.h"
#include "ctl/parameter_words.h"
#include "trace/tracing_port.h"

namespace kalde2 {
namespace {

/// Results that are put out as standard output takes them: a reader that stands still does not hold
/// up the line.
class LazyOutput {
 public:
  LazyOutput(Console& console, std::function<void(const CommandFault&)> failed)
      : console_(console), failed_(std::move(failed)), writable_(kOutput, QSocketNotifier::Write) {
    writable_.setEnabled(false);
    QObject::connect(&writable_, &QSocketNotifier::activated, [this] { PutOut(); });
  }

  void Put(std::string line) {
    if (lines_.size() == kMost) {
      if (!std::exchange(has_dropped_, true)) {
        console_.Note("standard output does not keep up: lines are left out");
      }
      return;
    }
    lines_.push_back(std::move(line));
    writable_.setEnabled(true);
  }

 private:
  static constexpr int kOutput = 1;
  static constexpr std::size_t kMost = 20'000;  // some megabytes

  /// One line at a time: what is writable takes that much without a wait.
  void PutOut() try {
    console_.Result(lines_.front());
    lines_.pop_front();
    writable_.setEnabled(!lines_.empty());
    console_.Flush();
  } catch (const CommandFault& fault) {
    writable_.setEnabled(false);
    failed_(fault);
  }

  Console& console_;
  std::function<void(const CommandFault&)> failed_;
  QSocketNotifier writable_;
  std::deque<std::string> lines_;
  bool has_dropped_ = false;
};

/// The file that --record names, or none.
class RecordFile {
 public:
  RecordFile(const std::string& name, std::optional<int> baud) : name_(name) {
    if (name_.empty()) return;
    file_.open(name, std::ios::binary | std::ios::trunc);
    if (file_) BeginTrace(file_, baud);
    Check();
  }

  /// @throws CommandFault where the file does not take it, as the constructor does
  void Put(const TraceEvent& event) {
    if (name_.empty()) return;
    WriteEvent(file_, event);
    Check();
  }

 private:
  void Check() const {
    if (file_) return;
    const std::string reason = std::error_code(errno, std::generic_category()).message();
    throw CommandFault(ExitStatus::kUsage, name_ + ": " + reason);
  }

  std::string name_;
  std::ofstream file_;
};

std::string AsText(const TraceEvent& event, const std::string& meaning) {
  constexpr double kSecond = 1e6;
  std::array<char, 32> time;
  std::snprintf(time.data(), time.size(), "%11.6f %s ",
                static_cast<double>(event.time.count()) / kSecond,
                event.direction == Direction::kToUnit ? "->" : "<-");
  return time.data() + Printable(event.bytes) + "  " + meaning;
}

std::string AsJson(const TraceEvent& event, const std::string& meaning) {
  const QJsonObject document{
      {"time", static_cast<qint64>(event.time.count())},
      {"direction", event.direction == Direction::kToUnit ? "to unit" : "from unit"},
      {"frame", QString::fromStdString(Printable(event.bytes))},
      {"meaning", QString::fromStdString(meaning)}};
  return QJsonDocument(document).toJson(QJsonDocument::Compact).toStdString();
}

/// One run of the command: what it offers lasts as long as the object.
class LineTrace {
 public:
  LineTrace(CommandContext& context, int number);

  /// Until something ends it. @throws CommandFault always
  [[noreturn]] void Run();

 private:
  [[nodiscard]] static std::unique_ptr<PseudoTerminal> OpenTerminal();
  [[nodiscard]] std::unique_ptr<PortLink> Link(int number) const;
  void Take(const TraceEvent& event);
  void Show(const TraceEvent& piece, bool is_whole);
  void CompareRates();
  void End(const CommandFault& fault);

  CommandContext& context_;
  int baud_;
  std::unique_ptr<PseudoTerminal> terminal_;
  std::unique_ptr<PortLink> link_;
  RecordFile file_;
  LazyOutput output_;
  std::array<FrameCutter, 2> cutters_;  ///< to the unit, from it
  LineWords words_;
  TracingPort port_;
  Relay relay_;
  int panel_baud_ = 0;  ///< as seen last
  bool is_losing_ = false;
  std::optional<CommandFault> ending_;
};

LineTrace::LineTrace(CommandContext& context, int number)
    : context_(context),
      baud_(ReadWholeNumber(context.choice.baud).value_or(0)),
      terminal_(OpenTerminal()),
      link_(Link(number)),
      file_(context.Value("record"), baud_),
      output_(context.console, [this](const CommandFault& fault) { End(fault); }),
      port_(context.port, [this](const TraceEvent& event) { Take(event); }),
      relay_(*terminal_, port_,
             {[this] {
                if (!std::exchange(is_losing_, true)) {
                  context_.console.Note("the panel does not read: characters are lost");
                }
              },
              [this](const std::string& reason) {
                End({ExitStatus::kPort, reason});
              }}) {
  context.console.Note("port " + std::to_string(number) + " is " + terminal_->Device() +
                       ": open it in the panel at " + std::to_string(baud_) + " baud");
}

std::unique_ptr<PseudoTerminal> LineTrace::OpenTerminal() {
  PseudoTerminal::Opening opening = PseudoTerminal::Open();
  if (!opening.terminal) throw CommandFault(ExitStatus::kPort, opening.problem);
  return std::move(opening.terminal);
}

std::unique_ptr<PortLink> LineTrace::Link(int number) const {
  PortLink::Making making = PortLink::Make(DefaultPortsFolder().toStdString(), number,
                                           terminal_->Device(), "to offer another one use --as");
  if (!making.link) throw CommandFault(ExitStatus::kPort, making.problem);
  return std::move(making.link);
}

void LineTrace::Run() {
  constexpr std::chrono::hours kForEver(24);
  while (true) {
    context_.clock.ServeEvents(kForEver);
    context_.unit.Check();
    if (ending_) throw CommandFault(*ending_);
  }
}

void LineTrace::Take(const TraceEvent& event) try {
  file_.Put(event);
  const bool to_unit = event.direction == Direction::kToUnit;
  if (to_unit) CompareRates();
  for (FrameCutter::Piece& piece : cutters_.at(to_unit ? 0 : 1).Put(event.bytes)) {
    // With the next request it is known that no more of a reply is coming.
    if (to_unit && piece.is_whole) {
      Show({event.time, Direction::kFromUnit, cutters_[1].TakeRest()}, false);
    }
    Show({event.time, event.direction, std::move(piece.bytes)}, piece.is_whole);
  }
} catch (const CommandFault& fault) {
  End(fault);
}

void LineTrace::Show(const TraceEvent& piece, bool is_whole) {
  if (piece.bytes.empty()) return;
  const std::string meaning = words_.Of(piece.direction, {piece.bytes, is_whole});
  output_.Put((context_.json ? AsJson : AsText)(piece, meaning));
}

void LineTrace::CompareRates() {
  const int baud = terminal_->PanelBaud();
  if (baud == 0 || std::exchange(panel_baud_, baud) == baud || baud == baud_) return;
  context_.console.Note("the panel runs at " + std::to_string(baud) + " baud, the unit's line at " +
                        std::to_string(baud_) + ": all is passed on at that");
}

void LineTrace::End(const CommandFault& fault) {
  if (!ending_) ending_ = fault;
}

/// The panel's flow control characters are the panel's and the unit's; here they are two of 256.
void OpenPort(CommandContext& context) {
  context.choice.CheckBaud();
  const std::optional<std::string> problem =
      context.port.Open({.settings = context.choice.baud + ",N,8,1",
                         .handshaking = Handshaking::kRts,
                         .dtr_enable = true,
                         .comm_port = QString::fromStdString(context.choice.port).toShort()});
  if (problem) throw PortFault(context.choice, *problem);
}

}  // namespace

ExitStatus RunTrace(CommandContext& context) {
  constexpr int kHighestPort = 32767;
  const std::optional<std::int32_t> number = ReadWholeNumber(context.Value("as"));
  if (!number || *number < 0 || *number > kHighestPort) {
    throw CommandFault(ExitStatus::kUsage, "trace takes --as NUMBER, 0 to 32767");
  }
  OpenPort(context);
  LineTrace(context, *number).Run();
}

}  // namespace kalde2
