#include <QApplication>
#include <QIcon>
#include <cstdlib>
#include <functional>
#include <utility>

#include "adapters/end_signals.h"
#include "adapters/port_numbers.h"
#include "adapters/qt_clock.h"
#include "adapters/qt_dialogs.h"
#include "adapters/qt_serial_port.h"
#include "adapters/qt_settings_store.h"
#include "panel/frm_vornik.h"

namespace {

QIcon AppIcon() {
  QIcon icon;
  for (const int size : {16, 32, 48, 128}) {
    icon.addFile(QStringLiteral(":/icons/hicolor/%1x%1/apps/kalde2.png").arg(size),
                 QSize(size, size));
  }
  return icon;
}

/// Runs a last step in exit(). Qt calls that out of the event loop when the display goes away, as
/// it does in many a logout; everything on the stack of main() is still there.
class AtExit {
 public:
  explicit AtExit(std::function<void()> step) : step_(std::move(step)) {}
  ~AtExit() { step_(); }
  AtExit(const AtExit&) = delete;
  AtExit& operator=(const AtExit&) = delete;

 private:
  std::function<void()> step_;
};

}  // namespace

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KALDE2"));
  QApplication::setDesktopFileName(QStringLiteral("kalde2"));
  QApplication::setWindowIcon(AppIcon());

  kalde2::QtPortDirectory ports;
  kalde2::QtSerialPort port(ports);
  kalde2::QtClock clock;
  kalde2::QtSettingsStore settings;
  kalde2::QtMessageBoxes boxes;
  kalde2::QtFileDialogs dialogs;

  kalde2::frm_vornik window({port, ports, clock, settings, boxes, dialogs,
                             // At once: no further event, no other window is asked.
                             [] { std::_Exit(EXIT_SUCCESS); }});
  boxes.SetParent(&window);
  dialogs.SetParent(&window);

  // Others may end the panel just as its operator does. A logout that begins may be called off.
  const auto end = [&window] { window.Form_Unload(); };
  const kalde2::EndSignals signals_to_end;
  QObject::connect(&signals_to_end, &kalde2::EndSignals::Raised, end);
  QObject::connect(&application, &QCoreApplication::aboutToQuit, end);
  QObject::connect(&application, &QGuiApplication::commitDataRequest,
                   [&window] { window.SaveSerialSettings(); });
  static const AtExit at_exit(end);

  window.show();
  return QApplication::exec();
}
