#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "link/mod_comms.h"
#include "link/value_store.h"
#include "model/reply_display.h"
#include "model/unit_actions.h"
#include "model/value_names.h"
#include "panel/dialogs.h"
#include "panel/vornik_form.h"
#include "session/operator_queue.h"

namespace kalde2 {

/// What each control of the main window sends, with which value, and what is recorded of it. All
/// values go to source 0x10 as they are, without scaling, and are recorded once they are written.
/// While another transaction waits, the controls' own effects and the records come at once and the
/// sending follows it. In the midst of a bulk operation, or disabled, a control that is moved all
/// the same (assistive tools pass by mouse and keys) goes back at once.
class DirectControls {
 public:
  DirectControls(VornikForm& form, CommandLink& link, ValueStore& values, RefreshTimer& refresh,
                 OperatorQueue& queue, MessageBoxes& boxes);

  void SliderMoved(cpvSlider& slider, const SliderRow& row, int value);

  /// Sends at most one axis: the horizontal one when it differs from the recorded value, else the
  /// vertical one when that differs.
  void PadStepped(ArrowControl& pad, int x, int y);

  void CheckClicked(QCheckBox& box, const CheckRow& row);

  /// What a mark does on the form itself, whoever set it: enables or disables the sliders.
  void CheckChanged(const QCheckBox& box, const CheckRow& row);

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
  [[nodiscard]] std::int32_t Recorded(Address address) const;
  void Record(Address address, std::int32_t value);
  void Write(Address address, std::int32_t value);
  void WriteAndRecord(Address address, std::int32_t value);
  void SendOne(std::string_view control, Address address, std::int32_t value);
  void SendPadAxis(ArrowControl& pad, Address address, int value);
  void SendLockSource(std::int32_t source);
  void SendProgram(std::int32_t source);
  void SendOnOk(const char* control, const char* prompt, const char* title,
                const UnitAction& action);
  [[nodiscard]] static std::string AxisOf(const ArrowControl& pad, Address address);

  VornikForm& form_;
  CommandLink& link_;
  ValueStore& values_;
  RefreshTimer& refresh_;
  OperatorQueue& queue_;
  MessageBoxes& boxes_;
};

}  // namespace kalde2
