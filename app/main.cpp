#include <QApplication>
#include <cstdlib>

#include "adapters/port_numbers.h"
#include "adapters/qt_clock.h"
#include "adapters/qt_dialogs.h"
#include "adapters/qt_serial_port.h"
#include "adapters/qt_settings_store.h"
#include "panel/panel_application.h"

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KALDE2"));

  kalde2::QtPortDirectory ports;
  kalde2::QtSerialPort port(ports);
  kalde2::QtClock clock;
  kalde2::QtSettingsStore settings;
  kalde2::QtMessageBoxes boxes;
  kalde2::QtFileDialogs dialogs;

  kalde2::PanelApplication panel({port, ports, clock, settings, boxes, dialogs,
                                  // At once: no further event, no other window is asked.
                                  [] { std::_Exit(EXIT_SUCCESS); }});
  boxes.SetParent(&panel.Window());
  dialogs.SetParent(&panel.Window());
  panel.Window().show();
  return QApplication::exec();
}
