#pragma once

#include <QObject>
#include <cstdint>
#include <string>
#include <vector>

#include "model/reply_display.h"
#include "panel/vornik_form.h"
#include "session/operator_queue.h"

namespace kalde2 {

/// Index of the first entry whose item data equals the value; 0 when none does.
[[nodiscard]] int FindItemDataIndex(std::int16_t value, const QComboBox& list);

/// Shows decoded values on the controls of the main window, found by their `Tag`. Sends nothing.
/// A control that has a newer change waiting to be sent is not moved: what came is older than what
/// the operator wants. A slider that he holds follows when he lets go.
class ReplyPainter : public QObject, public ReplyDisplay {
 public:
  /// Notes the tags, now and whenever one is set: to ask every control at every reply would cost
  /// more than all the rest of a reply.
  /// @param queue where newer changes of the operator wait
  ReplyPainter(VornikForm& form, const OperatorQueue& queue);

  void ShowAspectAdjust(bool advanced) override;
  void ShowLockMode(std::int32_t value) override;

  /// @throws Fault for a list position that a list does not have, which leaves the list as it is,
  ///   and for a control that shows no value
  void ShowValue(std::int16_t address, std::int32_t value) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// A control, or one axis of a pad, that shows an address.
  struct Tagged {
    QWidget* widget;
    int address;
    bool is_vertical;
    std::string name;  ///< under which a newer change of it is kept
  };

  void NoteTags();
  void NoteTag(QWidget& control, const QVariant& tag, bool is_vertical);
  void Show(const Tagged& control, std::int32_t value) const;
  void ShowOnList(const Tagged& control, std::int32_t value) const;
  [[nodiscard]] bool HasNewer(const Tagged& control) const;

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
