#pragma once

#include <QCursor>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <optional>
#include <vector>

#include "session/operator_queue.h"

namespace kalde2 {

/// Looks of controls that take no input for a while: the pointer over them says that they are busy,
/// and a click gives none of them the focus. Ends with the scope.
class BusyControls {
 public:
  explicit BusyControls(QWidget& frame);
  ~BusyControls();
  BusyControls(const BusyControls&) = delete;
  BusyControls& operator=(const BusyControls&) = delete;

 private:
  /// A pointer of its own, where the control has one.
  struct Pointer {
    QPointer<QWidget> control;
    QCursor before;
  };
  struct Focusable {
    QPointer<QWidget> control;
    Qt::FocusPolicy before;
    Qt::FocusPolicy meanwhile;
  };

  QWidget& frame_;
  std::vector<Pointer> pointers_;
  std::vector<Focusable> focusables_;
};

/// Swallows the operator's input to the unit's controls while a bulk operation runs: they stay as
/// they are, enabled or not, and do nothing. What lets go of a control (a mouse button, a key)
/// passes, and so do the keys that move on (Tab) or close the port (Esc).
class InputGate : public QObject {
 public:
  /// @param controls the frame whose descendants are the unit's controls
  InputGate(QWidget& controls, const OperatorQueue& queue);

  /// A bulk operation begins or ends: what the controls look like.
  void ShowBusy(bool is_busy);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool IsUnitControl(const QObject* object) const;

  QWidget& controls_;
  const OperatorQueue& queue_;
  std::optional<BusyControls> busy_;
};

}  // namespace kalde2
