#include "adapters/pseudo_terminal.h"

namespace kalde2 {

// Lines for other programs are a driver's to offer; so there is never an object.
PseudoTerminal::Opening PseudoTerminal::Open() {
  return {nullptr, "Windows has no pseudo-terminals"};
}

PseudoTerminal::~PseudoTerminal() = default;
std::string PseudoTerminal::Read() {
  return {};
}
std::size_t PseudoTerminal::Write(std::string_view) {
  return 0;
}
int PseudoTerminal::PanelBaud() const {
  return 0;
}

}  // namespace kalde2
