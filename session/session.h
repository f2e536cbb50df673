#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/mod_comms.h"
#include "link/serial_port.h"
#include "model/mod_Producttypes.h"
#include "model/progress.h"
#include "model/transfer_report.h"
#include "model/unit_model.h"
#include "session/operator_queue.h"
#include "session/session_status.h"

namespace kalde2 {

/// What a front end is told of its session.
class SessionEvents : public StatusDisplay {
 public:
  /// The port is open; the unit has not been asked yet.
  virtual void PortOpened() = 0;

  /// The unit has answered and is supported; its tables are not loaded yet.
  virtual void UnitFound(const Product& product) = 0;

  /// Something has arrived unasked: `ProcessUnasked` is to be called now and then from here on.
  virtual void UnaskedArrived() = 0;

  /// The line went away. The session is closed already; this comes once, never from within a call.
  virtual void PortLost(const std::string& reason) = 0;
};

/// How an opening ended.
struct OpenResult {
  enum class Ending : std::uint8_t {
    kOpened,
    kPortFailed,  ///< `text` tells why
    kNoAnswer,
    kNotSupported,
    kClosedMeanwhile,  ///< closed or lost while the unit was asked
  };
  Ending ending;
  std::string text;
  bool is_certain =
      true;  ///< the type is what the unit answered, not what it said unasked just then
};

/// One session with a unit at a time: opening, detection, closing and loss of the port, what
/// arrives unasked, and what is asked of the unit in turn. The port may be closed at any moment,
/// also in the midst of an opening: what runs then finds it closed and ends without another word.
class Session : public PortListener {
 public:
  Session(SerialPort& port, Clock& clock, ReplyDisplay& display, RefreshTimer& refresh,
          OperatorQueue& queue, SessionEvents& events,
          Deadlines deadlines = Deadlines::kWithinTheHour);
  ~Session() override;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Opens the port, reads the product type and lets it through the gate. Changes nothing at the
  /// unit. Unless it ends opened, the port is closed.
  /// @param baud, port numbers as the operator writes them; what is none counts as 0
  OpenResult Open(std::string_view baud, std::string_view port);

  /// Builds the product's catalogue, reads the connectivity and builds the names, each step only
  /// while the port is open.
  /// @return what became of the reading of the connectivity
  TransferReport LoadTables(Progress& progress);

  /// Builds the product's catalogue and the names that need no inputs, without a word to the unit.
  /// `LoadTables` may follow.
  void LoadCatalogue();

  /// Takes the inputs that have not told of themselves for not fitted, and builds the names anew.
  /// Reading takes them for fitted, and what clone and settings file do depends on that.
  /// @param connectivity what `LoadTables` has returned
  void DropUntoldInputs(const TransferReport& connectivity);

  /// Runs one more step of an opening, unless the port was closed meanwhile. A Fault ends the step.
  template <typename Step>
  void RunStep(Step step) {
    if (!link_.PortOpen()) return;
    try {
      step();
    } catch (const Fault&) {
      // Partial effects stay, the next step runs.
    }
  }

  /// Closes the port and forgets what is still to be done.
  void Close();

  /// True once a unit has answered and is supported.
  [[nodiscard]] bool UnitConnected() const { return unit_connected_; }

  /// The product type of the last successful detection.
  [[nodiscard]] std::int32_t ProductType() const { return product_type_; }

  /// True from the opening of the port until it is closed here or its loss has been told.
  [[nodiscard]] bool IsOpen() const { return is_open_; }

  /// Decodes the next of the frames that have arrived unasked. @return true when none is left
  bool ProcessUnasked() { return link_.ProcessUnasked(); }

  /// What the session itself does not see - transfers, files - is to be told here.
  [[nodiscard]] SessionStatus& Status() { return status_; }

  [[nodiscard]] UnitModel& Unit() { return unit_; }
  [[nodiscard]] CommandLink& Link() { return link_; }

  void MSComm1_OnComm() override;
  void PortLost(const std::string& reason) override;

 private:
  [[nodiscard]] std::optional<std::string> OpenPort(std::string_view baud, std::string_view port);
  void LoadNames();
  void Shut();

  SerialPort& port_;
  OperatorQueue& queue_;
  SessionEvents& events_;
  SessionStatus status_;
  UnitModel unit_;
  CommandLink link_;
  bool is_open_ = false;
  bool unit_connected_ = false;
  std::int32_t product_type_ = 0;
};

}  // namespace kalde2
