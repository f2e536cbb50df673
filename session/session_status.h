#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "link/mod_comms.h"
#include "model/transfer_report.h"

namespace kalde2 {

/// Whose values the panel holds.
enum class HeldValues : std::uint8_t {
  kOthers,  ///< those of the unit before, or of none
  kLoaded,  ///< those of a file, which the unit has not been sent
  kUnits,   ///< the unit's own
};

/// What can be known of a session and is to be seen nowhere else on the window.
struct SessionFacts {
  bool is_open = false;              ///< the port is
  bool is_looking = false;           ///< the product type is awaited
  bool is_silent = false;            ///< the last request was given up
  bool has_new_resolutions = false;  ///< fetched and saved, and nothing was asked since
  HeldValues values = HeldValues::kOthers;
  std::size_t slot = 0;        ///< the one that a fetch asks for, counted from 1; 0 without a fetch
  std::size_t slot_count = 0;  ///< of so many
};

/// The one line that says what the panel is doing, or does not know; empty when all is well, and
/// while the port is closed.
[[nodiscard]] std::string StatusText(const SessionFacts& facts);

/// Where the line is shown.
class StatusDisplay {
 public:
  virtual ~StatusDisplay() = default;

  /// Comes with each change.
  virtual void ShowStatus(const std::string& text) = 0;
};

/// Keeps the facts of a session while it runs, and its status line on the display.
class SessionStatus : public LinkObserver {
 public:
  explicit SessionStatus(StatusDisplay& display) : display_(display) {}

  /// The port was opened, and the unit is asked for its type.
  void PortOpened();

  /// The unit has told a type that is supported.
  void UnitFound();

  /// The port was closed or lost. What was read or loaded goes with the unit. A file that was
  /// loaded while no unit was connected is kept for the next one, whatever openings fail before.
  void PortClosed();

  /// A transfer of every value has ended. It counts when it came to its end with no request left
  /// unanswered; a refused one concerns what the unit does not have.
  void ValuesRead(const TransferReport& report);
  void ValuesWritten(const TransferReport& report);

  /// A settings file was loaded.
  /// @param is_whole false where it was given up in its midst: what was loaded until then differs
  ///   from a unit that was read, and does not replace a reading
  void FileLoaded(bool is_whole);

  /// A fetch asks for a slot, counted from 1.
  void SlotBegins(std::size_t slot, std::size_t slot_count);

  /// A fetch is over, and its resolutions are in their file.
  void ResolutionsSaved();

  /// A fetch is over, whatever became of it.
  void FetchEnded();

  void RequestEnded(bool answered) override;

 private:
  void Show();

  StatusDisplay& display_;
  SessionFacts facts_;
  std::string shown_;
};

}  // namespace kalde2
