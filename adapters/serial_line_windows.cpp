#include <windows.h>

#include <string>

#include "adapters/serial_line.h"

namespace kalde2 {
namespace {

constexpr char kXon = 0x11;
constexpr char kXoff = 0x13;

}  // namespace

bool SetFlowControl(LineHandle line, Handshaking handshaking) {
  const DWORD software = handshaking == Handshaking::kRtsXonXoff ? TRUE : FALSE;
  DCB wanted{};
  wanted.DCBlength = sizeof(wanted);
  if (!GetCommState(line, &wanted)) return false;
  wanted.fOutxCtsFlow = TRUE;
  wanted.fRtsControl = RTS_CONTROL_HANDSHAKE;
  wanted.fOutX = software;
  wanted.fInX = software;
  wanted.XonChar = kXon;
  wanted.XoffChar = kXoff;
  if (!SetCommState(line, &wanted)) return false;
  DCB actual{};
  actual.DCBlength = sizeof(actual);
  return GetCommState(line, &actual) && actual.fOutxCtsFlow &&
         actual.fRtsControl == RTS_CONTROL_HANDSHAKE && actual.fOutX == software &&
         actual.fInX == software;
}

void RestartOutput(LineHandle line) {
  EscapeCommFunction(line, SETXON);
}

// Reads and writes overlap: what is on its way is seen by trying, and output is taken at any time.
LineState LookAt(LineHandle line) {
  DWORD errors = 0;
  return {
      .is_gone = !ClearCommError(line, &errors, nullptr), .has_input = true, .takes_output = true};
}

// The read that is always under way fails with the line, which QSerialPort tells.
std::unique_ptr<QObject> WatchForLoss(LineHandle, std::function<void()>) {
  return nullptr;
}

// COM<n> has no links.
QString CanonicalDevice(const QString& device) {
  return device;
}

// The system itself keeps a port for one program.
QString AbandonedLock(const QString&) {
  return {};
}

bool IsLocked(const QString& device) {
  const std::wstring path = L"\\\\.\\" + device.toStdWString();
  const HANDLE line = CreateFileW(path.c_str(), 0, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (line == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_ACCESS_DENIED;
  CloseHandle(line);
  return false;
}

// Ports carry no rights of their own: a port that refuses is in use.
bool MayOpen(const QString&) {
  return true;
}

}  // namespace kalde2
