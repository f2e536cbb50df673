#pragma once

#include <QSerialPort>
#include <QString>
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

/// Whether a write goes through at once. True also for a line that is gone, whose write fails.
[[nodiscard]] bool CanWriteNow(LineHandle line);

/// The one path of a device behind all its links, which is what its lock file goes by.
[[nodiscard]] QString CanonicalDevice(const QString& device);

/// Whether the user's rights reach for opening the device.
[[nodiscard]] bool MayOpen(const QString& device);

}  // namespace kalde2
