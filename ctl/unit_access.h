#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ctl/exit_status.h"
#include "link/clock.h"
#include "link/serial_port.h"
#include "model/mod_Producttypes.h"
#include "model/progress.h"
#include "model/transfer_report.h"
#include "model/unit_actions.h"
#include "session/operator_queue.h"
#include "session/port_directory.h"
#include "session/session.h"

namespace kalde2 {

/// The port that is meant and its rate, as a user writes them.
struct PortChoice {
  std::string port;  ///< a number as in the panel, or the path of a device
  std::string baud;

  /// True for a path.
  [[nodiscard]] bool IsDevice() const;

  /// @throws CommandFault for a rate that is none
  void CheckBaud() const;
};

/// The device of a choice. A link or a path is found without a look at what else there is.
class ChosenPort final : public PortDirectory {
 public:
  explicit ChosenPort(PortChoice choice) : choice_(std::move(choice)) {}

  [[nodiscard]] std::string DeviceFor(int number) const override;
  [[nodiscard]] std::vector<NumberedPort> PresentPorts() const override;

 private:
  PortChoice choice_;
};

/// What to tell of a port that does not open. @param reason as the port gives it
[[nodiscard]] CommandFault PortFault(const PortChoice& choice, const std::string& reason);

/// Shows nothing: a command has no controls.
struct NullDisplay : ReplyDisplay, RefreshTimer {
  void ShowAspectAdjust(bool /*advanced*/) override {}
  void ShowLockMode(std::int32_t /*value*/) override {}
  void ShowValue(std::int16_t /*address*/, std::int32_t /*value*/) override {}
  void Enable() override {}
  void Disable() override {}
};

/// The unit of one command. Nothing here changes it but `Write`. Each step may end the command with
/// a CommandFault: the port cannot be opened, the unit falls silent, the line goes away, a signal
/// comes. What then runs in the session finds the port closed.
class UnitAccess final : public Exchanger, private SessionEvents, private LinkObserver {
 public:
  UnitAccess(SerialPort& port, Clock& clock, PortChoice choice);

  /// Opens the port, finds the unit and knows its parameters from then on.
  void Open();

  /// Reads which inputs there are. One that does not tell is not fitted. Does nothing the second
  /// time.
  void LoadInputs(Progress& progress);

  /// The same with the inputs as the panel takes them, and with them its clone and its files: one
  /// that does not tell looks fitted.
  void LoadInputsAsPanel(Progress& progress);

  /// One transaction. A read is repeated where something else came in between: what the unit says
  /// unasked looks like an answer.
  [[nodiscard]] Answer Exchange(const ParameterRequest& request) override;

  /// The value that the unit holds; nothing where it refuses to tell.
  [[nodiscard]] std::optional<std::int32_t> Read(Address address,
                                                 std::int16_t source = kFirstSourceCode);

  /// @return false where the unit refuses
  [[nodiscard]] bool Write(const UnitAction& action, std::int16_t source = kFirstSourceCode);

  /// Ends the work at once, unless it has been ended before.
  void End(ExitStatus status, const std::string& text);

  /// Ends the work after the transaction under way, and at once when it comes once more.
  void Interrupt();

  /// @throws CommandFault where the work has been ended; what ended it is told once
  void Check();

  /// True while nothing has ended the work.
  [[nodiscard]] bool IsOpen() const { return session_.IsOpen() && !ending_; }

  [[nodiscard]] const Product& UnitProduct() const { return *product_; }
  [[nodiscard]] UnitModel& Model() { return session_.Unit(); }
  [[nodiscard]] CommandLink& Link() { return session_.Link(); }
  [[nodiscard]] Session& UnitSession() { return session_; }
  [[nodiscard]] const PortChoice& Choice() const { return choice_; }

  /// What became of the reading of the inputs.
  [[nodiscard]] const TransferReport& Inputs() const { return *inputs_; }

 private:
  void PortOpened() override;
  void UnitFound(const Product& product) override { product_ = &product; }
  void UnaskedArrived() override {}
  void PortLost(const std::string& reason) override;
  void ShowStatus(const std::string& /*text*/) override {}
  void RequestEnded(bool answered) override;

  [[nodiscard]] OpenResult OpenSession();

  Clock& clock_;
  PortChoice choice_;
  NullDisplay display_;
  OperatorQueue queue_;
  Session session_;
  const Product* product_ = nullptr;
  std::optional<TransferReport> inputs_;
  std::optional<CommandFault> ending_;
  bool lets_settle_ = false;
  int patience_ = 0;
  int unanswered_ = 0;
};

}  // namespace kalde2
