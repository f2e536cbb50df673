#pragma once

#include <QObject>

#include "session/operator_queue.h"

namespace kalde2 {

/// Swallows the operator's input to the unit's controls while a bulk operation runs: they stay as
/// they are, enabled or not, and do nothing. What lets go of a control (a mouse button, a key)
/// passes, and so do the keys that move on (Tab) or close the port (Esc).
class InputGate : public QObject {
 public:
  /// @param controls the frame whose descendants are the unit's controls
  InputGate(const QObject& controls, const OperatorQueue& queue);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool IsUnitControl(const QObject* object) const;

  const QObject& controls_;
  const OperatorQueue& queue_;
};

}  // namespace kalde2
