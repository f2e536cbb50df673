#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/unit.h"

namespace kalde2 {

/// What is left to do about the line after a front-panel command.
enum class LineOrder {
  kNone,
  kSetBaud,  ///< to FrontPanelResult::baud, 0 for any rate
  kHangUp,
  kReplug,
  kQuit,
};

struct FrontPanelResult {
  std::string text;   ///< for the operator, may be empty
  std::string frame;  ///< to be sent unasked, may be empty
  LineOrder order = LineOrder::kNone;
  int baud = 0;
};

/// The front panel of the simulated unit: one command a line ("set Lock mode 2", "list", "help").
class FrontPanel {
 public:
  explicit FrontPanel(SimulatedUnit& unit) : unit_(unit) {}

  [[nodiscard]] FrontPanelResult Execute(std::string_view line);

 private:
  using Words = std::vector<std::string_view>;

  /// A parameter at the beginning of some words, by its address or by its name of several words.
  struct Parameter {
    int address = 0;
    Words rest;  ///< the words behind it
  };

  /// The longest name wins: "Zoom Pan H" is not "Zoom". @param words the command and its words
  [[nodiscard]] std::optional<Parameter> ParameterIn(const Words& words) const;
  [[nodiscard]] static FrontPanelResult SayNoParameter(const Words& words);
  [[nodiscard]] FrontPanelResult SayNoSource() const;
  [[nodiscard]] std::string ListLine(int address) const;
  [[nodiscard]] bool IsPerSource(int address) const;

  [[nodiscard]] FrontPanelResult List(const Words& words);
  [[nodiscard]] FrontPanelResult Set(const Words& words);
  [[nodiscard]] FrontPanelResult Get(const Words& words);
  [[nodiscard]] FrontPanelResult Source(const Words& words);
  [[nodiscard]] FrontPanelResult Fault(const Words& words);
  [[nodiscard]] FrontPanelResult Baud(const Words& words);
  [[nodiscard]] FrontPanelResult HangUp(const Words& words);
  [[nodiscard]] FrontPanelResult Replug(const Words& words);
  [[nodiscard]] FrontPanelResult Help(const Words& words);
  [[nodiscard]] FrontPanelResult Quit(const Words& words);

  struct Command;
  static const Command kCommands[];

  SimulatedUnit& unit_;
};

}  // namespace kalde2
