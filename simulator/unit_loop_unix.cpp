#include <sys/select.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <utility>

#include "simulator/unit_loop.h"
#include "trace/trace_file.h"

namespace kalde2 {
namespace {

// A panel sends a request in one go; a pause this long means that the rest of it was lost.
constexpr std::chrono::milliseconds kRequestPause(500);

// The system wakes a sleeper some tens of microseconds late; more than this is no lateness of ours.
constexpr std::chrono::milliseconds kLongestLate(1);

constexpr std::string_view kCure = "for a second unit use --port";

constexpr std::string_view kFromPanel = "<-";
constexpr std::string_view kToPanel = "->";

std::string TimeOfDay() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto since_epoch = std::chrono::floor<std::chrono::milliseconds>(now.time_since_epoch());
  std::tm local{};
  localtime_r(&seconds, &local);
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min, local.tm_sec,
                static_cast<int>(since_epoch.count() % 1000));
  return text;
}

/// Linux wakes a sleeper up to 50 us late to save power: on a fast line more than half a character.
void WakeInTime() {
#ifdef __linux__
  constexpr unsigned long kSlack = 1;  // nanosecond, the least there is
  prctl(PR_SET_TIMERSLACK, kSlack, 0, 0, 0);
#endif
}

void Earlier(std::optional<PacedQueue::Clock::time_point>& due,
             const std::optional<PacedQueue::Clock::time_point>& other) {
  if (other && (!due || *other < *due)) due = other;
}

}  // namespace

UnitLoop::UnitLoop(UnitOptions unit, LoopOptions options, Print print)
    : options_(std::move(options)),
      print_(std::move(print)),
      unit_(std::move(unit),
            [this](std::string_view bytes, const std::string& meaning, bool is_problem) {
              PrintFrame(kFromPanel, bytes, is_problem ? "WRONG: " + meaning : meaning);
            }),
      front_panel_(unit_),
      received_(options_.baud),
      sending_(options_.baud) {}

// ---------------------------------------------------------------------------------------------
// The line.

std::optional<std::string> UnitLoop::Plug() {
  PseudoTerminal::Opening opening = PseudoTerminal::Open();
  if (!opening.terminal) return opening.problem;
  PortLink::Making making =
      PortLink::Make(options_.link_folder, options_.port, opening.terminal->Device(), kCure);
  if (!making.link) return making.problem;
  terminal_ = std::move(opening.terminal);
  link_ = std::move(making.link);
  const std::string port = std::to_string(options_.port);
  print_("ready: port " + port + " is " + terminal_->Device());
  print_("next: in the panel enter port " + port +
         (options_.baud != 0 ? " and baud rate " + std::to_string(options_.baud) : "") +
         " and press \"Open Port\"; here type list or help");
  return std::nullopt;
}

void UnitLoop::Unplug() {
  if (!terminal_) return;
  Flush(Clock::now());
  link_.reset();
  terminal_.reset();
  received_.Clear();
  sending_.Clear();
  actions_.clear();
  unit_.DropPartialRequest();
  print_("hung up: port " + std::to_string(options_.port) + " is gone");
}

void UnitLoop::Replug() {
  Unplug();
  if (const std::optional<std::string> problem = Plug()) print_(*problem);
}

void UnitLoop::SetBaud(int baud) {
  options_.baud = baud;
  received_.SetBaud(baud);
  sending_.SetBaud(baud);
}

bool UnitLoop::PanelHasOtherRate() const {
  return options_.baud != 0 && terminal_->PanelBaud() != options_.baud;
}

// ---------------------------------------------------------------------------------------------
// Waiting.

void UnitLoop::Run(int stop, int commands) {
  constexpr int kIgnored = -1;
  WakeInTime();
  while (is_running_) {
    ServeDue();
    const auto [stopped, typed, received] = Wait({stop, commands_ended_ ? kIgnored : commands,
                                                  terminal_ ? terminal_->Descriptor() : kIgnored});
    if (stopped) return;
    if (received) ReadLine();
    if (typed) ReadCommands(commands);
  }
}

std::optional<UnitLoop::Clock::time_point> UnitLoop::NextDue() const {
  std::optional<Clock::time_point> due = next_unasked_;
  if (!actions_.empty()) Earlier(due, actions_.begin()->first);
  Earlier(due, received_.NextDue());
  Earlier(due, sending_.NextDue());
  Earlier(due, partial_request_ends_);
  return due;
}

std::array<bool, 3> UnitLoop::Wait(const std::array<int, 3>& descriptors) const {
  using std::chrono::nanoseconds;
  fd_set readable;
  FD_ZERO(&readable);
  for (const int descriptor : descriptors) {
    if (descriptor >= 0) FD_SET(descriptor, &readable);
  }
  const std::optional<Clock::time_point> due = NextDue();
  timespec limit{};
  if (due) {
    const nanoseconds left = std::max<nanoseconds>(*due - Clock::now(), nanoseconds::zero());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    limit = {static_cast<std::time_t>(seconds.count()),
             static_cast<long>((left - seconds).count())};
  }
  const int highest = *std::ranges::max_element(descriptors);
  const int count =
      pselect(highest + 1, &readable, nullptr, nullptr, due ? &limit : nullptr, nullptr);
  std::array<bool, 3> result{};
  std::ranges::transform(descriptors, result.begin(), [&](int descriptor) {
    return count > 0 && descriptor >= 0 && FD_ISSET(descriptor, &readable);
  });
  return result;
}

// ---------------------------------------------------------------------------------------------
// What arrives.

void UnitLoop::ReadLine() {
  const std::string bytes = terminal_->Read();
  if (bytes.empty()) return;
  if (PanelHasOtherRate()) {
    PrintFrame(kFromPanel, bytes,
               "not understood: the panel runs at " + std::to_string(terminal_->PanelBaud()) +
                   " baud, the unit at " + std::to_string(options_.baud));
    return;
  }
  received_.Put(bytes, Clock::now() - std::exchange(late_, {}));
}

void UnitLoop::ReadCommands(int commands) {
  std::array<char, 1024> buffer;
  const ssize_t count = read(commands, buffer.data(), buffer.size());
  if (count <= 0) {
    commands_ended_ = true;
    return;
  }
  command_line_.append(buffer.data(), static_cast<std::size_t>(count));
  for (std::size_t end = 0; (end = command_line_.find('\n')) != std::string::npos;) {
    const std::string command = command_line_.substr(0, end);
    command_line_.erase(0, end + 1);
    Execute(command);
  }
}

void UnitLoop::Execute(std::string_view command) {
  const FrontPanelResult result = front_panel_.Execute(command);
  if (!result.text.empty()) print_(result.text);
  if (!result.frame.empty()) Act({{}, result.frame}, Clock::now());
  switch (result.order) {
    case LineOrder::kNone:
      break;
    case LineOrder::kSetBaud:
      SetBaud(result.baud);
      break;
    case LineOrder::kHangUp:
      Unplug();
      break;
    case LineOrder::kReplug:
      Replug();
      break;
    case LineOrder::kQuit:
      is_running_ = false;
      break;
  }
}

// ---------------------------------------------------------------------------------------------
// What is due.

void UnitLoop::ServeDue() {
  const Clock::time_point now = Clock::now();
  ServeReceived(now);
  ServeActions(now);
  ServeUnasked(now);
  if (terminal_) Flush(now);
}

void UnitLoop::ServeReceived(Clock::time_point now) {
  const std::string bytes = received_.Take(now);
  if (!bytes.empty()) {
    for (LineAction& action : unit_.Receive(bytes)) {
      const Clock::time_point due = received_.Through() + action.after;
      actions_.emplace(due, std::move(action));
    }
    partial_request_ends_.reset();
    if (unit_.HasPartialRequest()) partial_request_ends_ = received_.Through() + kRequestPause;
  }
  if (partial_request_ends_ && *partial_request_ends_ <= now) {
    unit_.DropPartialRequest();
    partial_request_ends_.reset();
  }
}

void UnitLoop::ServeActions(Clock::time_point now) {
  while (!actions_.empty() && actions_.begin()->first <= now) {
    const auto action = actions_.extract(actions_.begin());
    Act(action.mapped(), action.key());
  }
}

void UnitLoop::ServeUnasked(Clock::time_point now) {
  const std::optional<std::chrono::microseconds> period = unit_.Faults().UnaskedPeriod();
  if (!period || !terminal_) {
    next_unasked_.reset();
    return;
  }
  if (!next_unasked_) next_unasked_ = now + *period;
  // Frames that a sleeping computer kept from being sent are not made up for.
  constexpr std::chrono::seconds kLongestDelay(1);
  if (now - *next_unasked_ > kLongestDelay) next_unasked_ = now;
  while (*next_unasked_ <= now) {
    Act({{}, unit_.NextUnaskedFrame()}, *next_unasked_);
    *next_unasked_ += *period;
  }
}

void UnitLoop::Act(const LineAction& action, Clock::time_point now) {
  if (action.hang_up) {
    Unplug();
    return;
  }
  Send(action.bytes, now);
}

void UnitLoop::Send(std::string_view bytes, Clock::time_point now) {
  if (!terminal_) return;
  if (PanelHasOtherRate()) return;
  PrintFrame(kToPanel, bytes, unit_.DescribeReply(bytes));
  sending_.Put(bytes, now);
}

void UnitLoop::Flush(Clock::time_point now) {
  const std::string bytes = sending_.Take(now);
  if (bytes.empty()) return;
  const bool was_losing = std::exchange(is_losing_, terminal_->Write(bytes) < bytes.size());
  late_ = std::min<Clock::duration>(Clock::now() - sending_.Through(), kLongestLate);
  if (is_losing_ && !was_losing) print_("the panel does not read: characters are lost");
}

void UnitLoop::PrintFrame(std::string_view direction, std::string_view bytes,
                          const std::string& meaning) {
  if (options_.quiet) return;
  print_(TimeOfDay() + ' ' + std::string(direction) + ' ' + Printable(bytes) + "  " + meaning);
}

}  // namespace kalde2
