#include "ctl/unit_access.h"

#include <QFileInfo>
#include <algorithm>
#include <chrono>

#include "adapters/port_numbers.h"
#include "adapters/serial_line.h"
#include "link/scoped_flag.h"

namespace kalde2 {
namespace {

/// A request is sent three times; a unit that leaves one unanswered is not there any more.
constexpr int kPatience = 1;

/// Inputs may be silent, and each is asked twice; one more unanswered request is no input's.
constexpr int kPatienceWithInputs = 5;

/// While the unit is looked for, the session itself knows when to stop.
constexpr int kEndless = 0;

/// What a unit has kept back for whoever opens its line has come by then.
constexpr std::chrono::milliseconds kSettlingTime{50};

/// The port number under which a device is opened that was named by its path.
constexpr const char* kAnyNumber = "1";

bool IsNumber(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// What else is to be said where a port does not open.
std::string Cure(const PortChoice& choice, const std::string& device) {
  const QString path = QString::fromStdString(device);
  if (!choice.IsDevice() && device.empty()) return "; \"kalde2ctl ports\" lists those there are";
  if (!QFileInfo::exists(path) || MayOpen(path)) return {};
  return "; join it and log in again: sudo adduser $USER " + QFileInfo(path).group().toStdString();
}

}  // namespace

bool PortChoice::IsDevice() const {
  return !IsNumber(port);
}

void PortChoice::CheckBaud() const {
  if (!baud.empty() && IsNumber(baud)) return;
  throw CommandFault(ExitStatus::kUsage,
                     '"' + baud + "\" is no baud rate; give one, as in -b 57600");
}

std::string ChosenPort::DeviceFor(int number) const {
  return choice_.IsDevice() ? choice_.port : DeviceOfPort(number).toStdString();
}

std::vector<NumberedPort> ChosenPort::PresentPorts() const {
  std::vector<NumberedPort> present;
  const NumberedPorts ports = kalde2::PortsPresent();
  for (auto port = ports.cbegin(); port != ports.cend(); ++port) {
    present.push_back({port.key(), port.value().toStdString()});
  }
  return present;
}

CommandFault PortFault(const PortChoice& choice, const std::string& reason) {
  if (choice.IsDevice() && !QFileInfo::exists(QString::fromStdString(choice.port))) {
    return {ExitStatus::kPort,
            "there is no device " + choice.port + "; \"kalde2ctl ports\" lists those there are"};
  }
  const std::string device =
      ChosenPort(choice).DeviceFor(QString::fromStdString(choice.port).toInt());
  const bool names_it = reason.find(device) != std::string::npos;
  return {ExitStatus::kPort, (names_it ? "" : device + ": ") + reason + Cure(choice, device)};
}

UnitAccess::UnitAccess(SerialPort& port, Clock& clock, PortChoice choice)
    : clock_(clock),
      choice_(std::move(choice)),
      session_(port, clock, display_, display_, queue_, *this, Deadlines::kMonotonic) {
  session_.Link().SetObserver(this);
}

void UnitAccess::Open() {
  using Ending = OpenResult::Ending;
  choice_.CheckBaud();
  const OpenResult result = OpenSession();
  Check();
  const bool has_answer =
      result.ending == Ending::kOpened || result.ending == Ending::kNotSupported;
  if (has_answer && !result.is_certain) {
    throw CommandFault(ExitStatus::kNoUnit,
                       "the unit does not tell its type for all else that it sends; try again");
  }
  switch (result.ending) {
    case Ending::kOpened:
      break;
    case Ending::kPortFailed:
      throw PortFault(choice_, result.text);
    case Ending::kNotSupported:
      throw CommandFault(ExitStatus::kNoUnit, "the unit is of type " +
                                                  std::to_string(Link().LastReply().Value) +
                                                  ", which is not supported");
    case Ending::kNoAnswer:
    case Ending::kClosedMeanwhile:
      throw CommandFault(ExitStatus::kNoUnit,
                         "no unit answers at " + choice_.baud + " baud on port " + choice_.port +
                             "; see that it is on and set to this rate, or use -p and -b");
  }
  patience_ = kPatience;
  session_.LoadCatalogue();
}

/// What the unit says unasked may be taken for its type: then it is asked again, once that is over.
OpenResult UnitAccess::OpenSession() {
  using Ending = OpenResult::Ending;
  OpenResult result{};
  for (int attempt = 0; attempt < kAttempts && !ending_; ++attempt) {
    session_.Close();
    lets_settle_ = attempt > 0;
    result = session_.Open(choice_.baud, choice_.IsDevice() ? kAnyNumber : choice_.port);
    const bool is_found = result.ending == Ending::kOpened && result.is_certain;
    const bool is_final =
        result.ending == Ending::kPortFailed || result.ending == Ending::kNoAnswer;
    if (is_found || is_final) break;
  }
  return result;
}

void UnitAccess::PortOpened() {
  if (!lets_settle_) return;
  const auto end = clock_.Monotonic() + kSettlingTime;
  while (IsOpen() && clock_.Monotonic() < end) clock_.ServeEvents(end - clock_.Monotonic());
}

void UnitAccess::LoadInputs(Progress& progress) {
  if (inputs_) return;
  LoadInputsAsPanel(progress);
  session_.DropUntoldInputs(*inputs_);
}

void UnitAccess::LoadInputsAsPanel(Progress& progress) {
  {
    const ScopedValue patience(patience_, kPatienceWithInputs);
    inputs_ = session_.LoadTables(progress);
  }
  Check();
  if (inputs_->is_complete) return;
  throw CommandFault(ExitStatus::kNoUnit, "what the unit says of its inputs makes no sense");
}

Answer UnitAccess::Exchange(const ParameterRequest& request) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const Answer answer = Link().Exchange(request);
    const bool is_answer =
        answer.record.Valid && answer.record.Address == request.address && answer.is_alone;
    if (!request.is_read || answer.outcome != Outcome::kAnswered || is_answer) return answer;
  }
  End(ExitStatus::kNoUnit,
      "the unit's answers make no sense; is " + choice_.baud + " its baud rate?");
  return {Outcome::kClosed, {}};
}

std::optional<std::int32_t> UnitAccess::Read(Address address, std::int16_t source) {
  const Answer answer = Exchange({.is_read = true, .source = source, .address = address});
  if (answer.outcome == Outcome::kRefused) return std::nullopt;
  Check();
  return answer.record.Value;
}

bool UnitAccess::Write(const UnitAction& action, std::int16_t source) {
  const Answer answer =
      Link().Exchange({.source = source, .value = action.value, .address = action.address});
  if (answer.outcome == Outcome::kRefused) return false;
  if (answer.outcome != Outcome::kAnswered) Check();
  return true;
}

void UnitAccess::Interrupt() {
  const bool at_once = ending_ || !Link().IsWaiting();
  if (!ending_) ending_.emplace(ExitStatus::kInterrupted, "ended by a signal");
  if (at_once) session_.Close();
}

void UnitAccess::Check() {
  const bool is_lost = session_.IsOpen() && !Link().PortOpen();
  if (is_lost && !ending_) clock_.ServeEvents({});  // the loss is about to be told
  if (is_lost && !ending_) End(ExitStatus::kPort, "the line is gone");
  if (ending_) throw CommandFault(*ending_);
}

void UnitAccess::PortLost(const std::string& reason) {
  End(ExitStatus::kPort, reason + " in the midst of the work");
}

void UnitAccess::RequestEnded(bool answered) {
  unanswered_ = answered ? 0 : unanswered_ + 1;
  if (patience_ != kEndless && unanswered_ >= patience_) {
    End(ExitStatus::kNoUnit, "the unit does not answer any more; see that it is on and connected");
  } else if (ending_) {
    session_.Close();
  }
}

void UnitAccess::End(ExitStatus status, const std::string& text) {
  if (!ending_) ending_.emplace(status, text);
  session_.Close();
}

}  // namespace kalde2
