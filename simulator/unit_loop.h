#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/port_link.h"
#include "adapters/pseudo_terminal.h"
#include "simulator/front_panel.h"
#include "simulator/paced_queue.h"
#include "simulator/unit.h"

namespace kalde2 {

struct LoopOptions {
  std::string link_folder;  ///< folder of the links that number ports
  int port = 1;             ///< number that the panel opens
  int baud = 0;             ///< rate of the line in bits a second; 0: any rate, no pacing
  bool quiet = false;       ///< no line for each frame
};

/// Puts a unit on a pseudo-terminal and keeps it running: waits in pselect(2) for the panel, the
/// operator and the next thing that is due, and for nothing else. What is due is done as of its own
/// time, however late the system wakes the unit, so that a paced line keeps its pace.
class UnitLoop {
 public:
  /// Writes one line of text, given without its end, for the operator.
  using Print = std::function<void(const std::string& line)>;

  UnitLoop(UnitOptions unit, LoopOptions options, Print print);

  [[nodiscard]] SimulatedUnit& Unit() { return unit_; }

  /// Opens the line and its link. @return what went wrong, nothing when the unit is ready
  [[nodiscard]] std::optional<std::string> Plug();

  /// Runs until the operator says "quit" or `stop` becomes readable.
  /// @param commands where the operator's lines are read from; its end ends nothing
  void Run(int stop, int commands);

 private:
  using Clock = PacedQueue::Clock;

  [[nodiscard]] std::optional<Clock::time_point> NextDue() const;
  /// Sleeps until one of the descriptors is readable or something is due; -1 stands for none.
  /// @return for each whether it is readable
  [[nodiscard]] std::array<bool, 3> Wait(const std::array<int, 3>& descriptors) const;
  void ReadLine();
  void ReadCommands(int commands);
  void Execute(std::string_view command);
  void ServeDue();
  void ServeReceived(Clock::time_point now);
  void ServeActions(Clock::time_point now);
  void ServeUnasked(Clock::time_point now);
  void Act(const LineAction& action, Clock::time_point now);
  void Send(std::string_view bytes, Clock::time_point now);
  void Flush(Clock::time_point now);
  void Unplug();
  void Replug();
  void SetBaud(int baud);
  [[nodiscard]] bool PanelHasOtherRate() const;
  void PrintFrame(std::string_view direction, std::string_view bytes, const std::string& meaning);

  LoopOptions options_;
  Print print_;
  SimulatedUnit unit_;
  FrontPanel front_panel_;
  std::unique_ptr<PseudoTerminal> terminal_;  ///< null while the line is unplugged
  std::unique_ptr<PortLink> link_;
  PacedQueue received_;
  PacedQueue sending_;
  std::multimap<Clock::time_point, LineAction> actions_;
  /// How late the last characters went out. The panel's next request comes as much later, and is
  /// taken as having come in time: the pace of a line does not depend on the computer.
  Clock::duration late_{0};
  std::optional<Clock::time_point> next_unasked_;
  std::optional<Clock::time_point> partial_request_ends_;
  std::string command_line_;
  bool commands_ended_ = false;
  bool is_losing_ = false;  ///< the last characters did not fit into the panel's buffer
  bool is_running_ = true;
};

}  // namespace kalde2
