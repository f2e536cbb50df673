#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kalde2 {

/// Our end of a pseudo-terminal in raw mode. The panel's end is a device that can be opened,
/// closed and opened again. Destroying the object hangs the line up.
class PseudoTerminal {
 public:
  struct Opening;

  /// Opens a new pseudo-terminal.
  [[nodiscard]] static Opening Open();

  PseudoTerminal(int master, int slave, std::string device);
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// The device that the panel opens, for example "/dev/pts/4".
  [[nodiscard]] const std::string& Device() const { return device_; }

  /// To wait on.
  [[nodiscard]] int Descriptor() const { return master_; }

  /// What has arrived, empty when nothing has. Never waits.
  [[nodiscard]] std::string Read();

  /// Sends as much as the panel's input buffer takes. Never waits.
  /// @return how many were taken; to offer the rest again, wait until the descriptor is writable
  [[nodiscard]] std::size_t Write(std::string_view bytes);

  /// The rate that the panel has set, in bits a second; 0 for one that has no number here.
  [[nodiscard]] int PanelBaud() const;

 private:
  int master_;
  int slave_;  ///< kept open: without a user of the device the master would report errors for ever
  std::string device_;
};

struct PseudoTerminal::Opening {
  std::unique_ptr<PseudoTerminal> terminal;  ///< null when it failed
  std::string problem;                       ///< why, one line
};

}  // namespace kalde2
