#pragma once

#include <QObject>
#include <QSerialPort>
#include <QString>
#include <functional>
#include <memory>
#include <utility>

#include "link/serial_port.h"

namespace kalde2 {

/// What an open serial line is asked beyond what QSerialPort has words for.
using LineHandle = decltype(std::declval<const QSerialPort&>().handle());

/// Sets RTS/CTS and, where wanted, XON/XOFF in both directions on the line; sending never resumes
/// on any character but XON. @return false when the line did not take it
[[nodiscard]] bool SetFlowControl(LineHandle line, Handshaking handshaking);

/// Resumes sending that an XOFF has stopped.
void RestartOutput(LineHandle line);

/// How a line stands at this moment.
struct LineState {
  bool is_gone;    ///< hung up, or its device taken away
  bool has_input;  ///< characters wait that QSerialPort has not fetched; trying tells for certain
  bool takes_output;  ///< a write goes through at once
};
[[nodiscard]] LineState LookAt(LineHandle line);

/// Calls back from the event loop, once, when the line goes away while the result lives. The result
/// goes before the line is closed. Empty where QSerialPort can be relied on to tell.
[[nodiscard]] std::unique_ptr<QObject> WatchForLoss(LineHandle line, std::function<void()> on_loss);

/// The one path of a device behind all its links, which is what its lock file goes by.
[[nodiscard]] QString CanonicalDevice(const QString& device);

/// The lock file of a device whose owner no longer runs, empty where there is none. QSerialPort
/// removes such a file itself where the user may: one that stays belongs to another user.
[[nodiscard]] QString AbandonedLock(const QString& device);

/// Whether a program that runs has the device locked, as this one and most others do.
[[nodiscard]] bool IsLocked(const QString& device);

/// Whether the user's rights reach for opening the device.
[[nodiscard]] bool MayOpen(const QString& device);

}  // namespace kalde2
