#pragma once

#include <cstdint>
#include <vector>

#include "model/reply_display.h"
#include "panel/vornik_form.h"
#include "session/operator_queue.h"

namespace kalde2 {

/// Index of the first entry whose item data equals the value; 0 when none does.
[[nodiscard]] int FindItemDataIndex(std::int16_t value, const QComboBox& list);

/// Shows decoded values on the controls of the main window, found by their `Tag`. Sends nothing.
/// A control that the operator holds, or that has a newer change waiting to be sent, is not moved:
/// what came is older than what he wants.
class ReplyPainter : public ReplyDisplay {
 public:
  /// Notes the tags, which stay as the form has set them: to ask every control at every reply would
  /// cost more than all the rest of a reply.
  /// @param queue where newer changes of the operator wait
  ReplyPainter(VornikForm& form, const OperatorQueue& queue);

  void ShowAspectAdjust(bool advanced) override;
  void ShowLockMode(std::int32_t value) override;

  /// @throws Fault for a list position that a list does not have; nothing is selected then
  void ShowValue(std::int16_t address, std::int32_t value) override;

 private:
  struct Tagged {
    QWidget* widget;
    int tag;
    int tag2;  ///< of a pad, its vertical axis; else 0, which is no address
  };

  void ShowOnCombo(QComboBox& combo, std::int16_t address, std::int32_t value) const;
  void ShowOnPad(ArrowControl& pad, bool is_horizontal, std::int32_t value) const;
  void ShowOnOther(QWidget& control, std::int32_t value) const;
  [[nodiscard]] bool HasNewer(const QWidget& control) const;

  VornikForm& form_;
  const OperatorQueue& queue_;
  std::vector<Tagged> tagged_;
};

/// `tmr_updatelstCommands` as the link knows it.
class ListRefreshTimer : public RefreshTimer {
 public:
  explicit ListRefreshTimer(QTimer& timer) : timer_(timer) {}

  void Enable() override {
    if (!timer_.isActive()) timer_.start();
  }
  void Disable() override { timer_.stop(); }

 private:
  QTimer& timer_;
};

}  // namespace kalde2
