#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "link/mod_comms.h"
#include "link/value_store.h"
#include "model/reply_display.h"
#include "model/value_names.h"
#include "panel/dialogs.h"
#include "panel/vornik_form.h"
#include "session/operator_queue.h"

namespace kalde2 {

/// What each control of the main window sends, with which value, and what is recorded of it. All
/// values go to source 0x10 as they are, without scaling. While another transaction waits, the
/// controls' own effects come at once and the sending follows it.
class DirectControls {
 public:
  DirectControls(VornikForm& form, CommandLink& link, ValueStore& values, RefreshTimer& refresh,
                 OperatorQueue& queue, MessageBoxes& boxes);

  void SliderMoved(const SliderRow& row, int value);

  /// Sends at most one axis: the horizontal one when it differs from the recorded value, else the
  /// vertical one when that differs.
  void PadStepped(ArrowControl& pad, int x, int y);

  void CheckClicked(const CheckRow& row, bool checked);

  /// What a mark does on the form itself, whoever set it: enables or disables the sliders.
  void CheckChanged(const CheckRow& row, bool checked);

  void LockModeClicked(const LockModeRow& row);
  void LockSourceSelected();

  /// Sends the item data as main input and then as setup source.
  void ProgramSelected();

  /// Sends the position in the list, whatever the item data.
  void ResolutionSelected();

  /// Fills `cbo_lock` from list 5 and `cbo_program` from list 7, selects the first entry of each
  /// and sends it just as a selection by the operator would. An empty list selects and sends
  /// nothing.
  /// @throws Fault for an item without a number
  void FillSourceCombos(const ValueNames& names);

  /// Sends 1 and -1 in turns, beginning with 1. The command list is not refreshed.
  void Fade();

  /// Puts the key limits and softnesses back to black.
  void Black();

  /// Shrink to a percentage, enabled and centred. 90 is recorded whatever was sent: after an
  /// overscan the unit holds 100 and the command list shows 90, which is intended.
  void ShrinkTo(std::int32_t percent);

  /// Ask first, then send.
  void Store();
  void Reset();

 private:
  struct Write {
    Address address;
    std::int32_t value;
    std::optional<std::int32_t> recorded;
  };
  enum class Refresh { kNo, kYes };

  static Write WriteAndRecord(Address address, std::int32_t value) {
    return {address, value, value};
  }
  void Send(std::string_view control, const std::vector<Write>& writes, Refresh refresh);
  void SendNow(const std::vector<Write>& writes, Refresh refresh);
  [[nodiscard]] std::vector<Write> LockSourceWrites() const;
  [[nodiscard]] std::vector<Write> ProgramWrites() const;
  void Record(const std::vector<Write>& writes);
  void SendOnOk(const char* control, const char* prompt, const char* title, Address address);
  void SendPadAxis(ArrowControl& pad, Address address, int value);

  VornikForm& form_;
  CommandLink& link_;
  ValueStore& values_;
  RefreshTimer& refresh_;
  OperatorQueue& queue_;
  MessageBoxes& boxes_;
};

}  // namespace kalde2
