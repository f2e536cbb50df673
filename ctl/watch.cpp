// watch: what the unit says unasked.

#include <QDateTime>
#include <QJsonDocument>
#include <algorithm>
#include <chrono>

#include "ctl/commands.h"
#include "ctl/parameter_words.h"
#include "ctl/report.h"
#include "link/frame_codec.h"

namespace kalde2 {
namespace {

constexpr char kFrameStart = 'F';
constexpr char kFrameEnd = '\r';

/// Events are served again and again until the work is ended; how long at once makes no difference.
constexpr std::chrono::hours kAnyTime{1};

/// Takes the place of the session as the listener of the port, and prints each frame. A flood of
/// them gets through whole, which the ring of the link is too small for.
class Watcher final : public PortListener {
 public:
  explicit Watcher(CommandContext& context) : context_(context), words_(context.unit.Model()) {
    context_.port.SetListener(this);
  }
  ~Watcher() override { context_.port.SetListener(&context_.unit.UnitSession()); }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  void MSComm1_OnComm() override {
    try {
      collected_ += context_.port.Input();
    } catch (const Fault&) {
      return;  // the line is gone, and the session is about to be told
    }
    for (std::size_t end = collected_.find(kFrameEnd); end != std::string::npos;
         end = collected_.find(kFrameEnd)) {
      Print(collected_.substr(0, end + 1));
      collected_.erase(0, end + 1);
    }
    Flush();
  }

  void PortLost(const std::string& reason) override {
    context_.unit.UnitSession().PortLost(reason);
  }

  /// What standard output did not take.
  [[nodiscard]] const std::optional<CommandFault>& Problem() const { return problem_; }

 private:
  void Print(const std::string& bytes) {
    const std::string frame = bytes.substr(std::min(bytes.find(kFrameStart), bytes.size()));
    const QDateTime time = Time();
    ReplyRecord record;
    const std::optional<Place> place = Read(frame, record);
    if (context_.json) {
      PrintJson(frame, time, place.value_or(Place{}), place.has_value(), record.Value);
    } else {
      const std::string text =
          place ? place->Text() + ": " + place->parameter.Shown(record.Value)
                : "not understood: " + QString::fromLatin1(frame.c_str()).trimmed().toStdString();
      context_.console.Result(time.toString("HH:mm:ss.zzz").toStdString() + "  " + text);
    }
  }

  void PrintJson(const std::string& frame, const QDateTime& time, const Place& place,
                 bool is_understood, std::int32_t value) {
    QJsonObject line = place.Json();
    if (!is_understood) line.insert("address", QJsonValue());
    line = Together(
        line, ValueJson(place.parameter, is_understood ? std::optional(value) : std::nullopt));
    line.insert("time", time.toUTC().toString(Qt::ISODateWithMs));
    line.insert("frame", QString::fromLatin1(frame.c_str()).trimmed());
    context_.console.Result(QJsonDocument(line).toJson(QJsonDocument::Compact).toStdString());
  }

  /// Where the value of a frame belongs; nothing for what is no whole frame of a parameter.
  [[nodiscard]] std::optional<Place> Read(const std::string& frame, ReplyRecord& record) const {
    constexpr std::size_t kLength = 20;  // or one less, with a checksum of one digit
    if (frame.size() != kLength && frame.size() != kLength - 1) return std::nullopt;
    try {
      DecodeReply(frame, record);
    } catch (const Fault&) {
      return std::nullopt;
    }
    if (record.Group != kParameterGroup) return std::nullopt;
    return PlaceOf(context_.unit.Model(), words_, record.Address, record.Source);
  }

  [[nodiscard]] QDateTime Time() const {
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
        context_.clock.Now().time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(now.count());
  }

  void Flush() {
    try {
      context_.console.Flush();
    } catch (const CommandFault& fault) {
      problem_ = fault;
    }
  }

  CommandContext& context_;
  ParameterWords words_;
  std::string collected_;
  std::optional<CommandFault> problem_;
};

}  // namespace

ExitStatus RunWatch(CommandContext& context) {
  context.unit.LoadInputs(context.console);
  const Watcher watcher(context);
  context.console.Note("watching; Ctrl+C ends it");
  while (context.unit.IsOpen() && !watcher.Problem()) context.clock.ServeEvents(kAnyTime);
  if (watcher.Problem()) throw CommandFault(*watcher.Problem());
  context.unit.Check();
  return ExitStatus::kDone;
}

}  // namespace kalde2
