#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/mod_active_dts.h"
#include "simulator/faults.h"
#include "simulator/parameter_bank.h"
#include "simulator/resolution_slots.h"
#include "simulator/unit_frames.h"
#include "simulator/unit_words.h"
#include "trace/recorded_replies.h"

namespace kalde2 {

struct UnitOptions {
  std::int32_t product_type = 35;  ///< any number, supported by the panel or not
  std::vector<int> fitted_sources = {16, 17, 48, 64, 80};  ///< source numbers 0..255
  int autoset_reads = 3;                                   ///< reads that autoset stays busy for
  std::chrono::milliseconds latency{0};                    ///< from a request to its reply
  std::vector<ResolutionSlot> resolutions = BuiltInResolutions();
  std::optional<RecordedReplies> recorded{};  ///< answers in place of all of the unit's own
};

/// A simulated unit without a line: takes the bytes that a panel sends and says what the unit does
/// about them. It has no clock and does no I/O, so it runs in a program beside a fake port as well
/// as behind a pseudo-terminal. Everything that is wrong with a request is reported.
class SimulatedUnit {
 public:
  /// Told of each request and each problem as it is met: the bytes and what they mean.
  /// @param is_problem the bytes are not what a panel should send
  using Journal =
      std::function<void(std::string_view bytes, const std::string& meaning, bool is_problem)>;

  explicit SimulatedUnit(UnitOptions options, Journal journal = {});
  SimulatedUnit(const SimulatedUnit&) = delete;
  SimulatedUnit& operator=(const SimulatedUnit&) = delete;

  /// Takes bytes from the panel, in any portions, and answers each request completed by them.
  /// @return what the unit does, times counted from this call
  [[nodiscard]] std::vector<LineAction> Receive(std::string_view bytes);

  /// Drops the beginning of a request whose rest did not come.
  void DropPartialRequest();
  [[nodiscard]] bool HasPartialRequest() const { return !partial_.empty(); }

  /// Changes a value as the unit's front panel does.
  /// @param address 130..413 @param source 0..255
  /// @return the frame that the unit sends unasked
  [[nodiscard]] std::string ChangeAtFrontPanel(int address, int source, std::int32_t value);

  /// The next frame of a stream of unasked ones: "Zoom Pan H" going up from 0 to 100 and again.
  [[nodiscard]] std::string NextUnaskedFrame();

  /// The value that the unit holds, in the panel's terms: what a read brings, without its effects.
  /// @param address 130..413 @param source 0..255
  [[nodiscard]] std::int32_t Value(int address, int source) const;

  /// The source that the unit's front panel adjusts ("Setup Source"), 0..255.
  [[nodiscard]] int CurrentSource() const;

  /// What a frame of the unit says, for people.
  [[nodiscard]] std::string DescribeReply(std::string_view bytes) const;

  /// Source numbers of the inputs that the unit has.
  [[nodiscard]] const std::vector<int>& FittedSources() const { return options_.fitted_sources; }

  /// The address that a user means: 130..413, or the name of a parameter.
  [[nodiscard]] std::optional<int> FindAddress(std::string_view text) const;

  /// Adds a fault as FaultPlan::Add() does; a parameter can be given by its name as well.
  /// @return what is wrong with the text and what is right; nothing when the fault is in force
  [[nodiscard]] std::optional<std::string> AddFault(std::string_view text);

  [[nodiscard]] FaultPlan& Faults() { return faults_; }
  [[nodiscard]] const FaultPlan& Faults() const { return faults_; }
  [[nodiscard]] const UnitWords& Words() const { return words_; }
  [[nodiscard]] const ParamCatalogue& Catalogue() const { return catalogue_; }
  [[nodiscard]] int RequestCount() const { return requests_; }
  [[nodiscard]] int ProblemCount() const { return problems_; }

 private:
  [[nodiscard]] static ParamCatalogue CatalogueFor(std::int32_t product_type);
  /// Moves the next complete request out of `partial_`, dropping what can start none.
  [[nodiscard]] std::optional<std::string> TakeRequest();
  [[nodiscard]] std::size_t RequestStart() const;
  void DropNoise();
  void Answer(const std::string& bytes, std::vector<LineAction>& actions);
  [[nodiscard]] std::string AnswerFrame(const std::string& frame, int& address);
  [[nodiscard]] std::string AnswerSlotQuery(const std::string& packet);
  [[nodiscard]] std::string AnswerRecorded(const std::string& bytes, const std::string& meaning);
  [[nodiscard]] std::string AnswerRead(const UnitRequest& request);
  [[nodiscard]] std::string AnswerWrite(const UnitRequest& request);
  [[nodiscard]] bool IsFitted(int source) const;
  [[nodiscard]] std::int32_t ReadAutoset();
  void FinishAutoset();
  void Report(std::string_view bytes, const std::string& meaning);
  void ReportProblem(std::string_view bytes, const std::string& problem);

  UnitOptions options_;
  Journal journal_;
  ParamCatalogue catalogue_;
  UnitWords words_;
  ParameterBank bank_;
  FaultPlan faults_;
  std::string partial_;  ///< bytes of a request that is not complete yet
  int autoset_reads_left_ = 0;
  int autoset_source_ = 0;
  std::int32_t unasked_value_ = -1;
  int requests_ = 0;
  int problems_ = 0;
};

}  // namespace kalde2
