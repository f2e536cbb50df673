// Takes the pictures of the documentation from the real panel on a running kalde2-unit.
//
//   take_pictures FOLDER SUFFIX [dark]
//
// The unit has to be linked as port 1. QT_SCALE_FACTOR sets the scale of the pictures.

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QProgressBar>
#include <QStyleFactory>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "adapters/port_numbers.h"
#include "adapters/qt_clock.h"
#include "adapters/qt_dialogs.h"
#include "adapters/qt_serial_port.h"
#include "panel/frm_vornik.h"

namespace {

using namespace std::chrono_literals;

/// The pictures must not depend on what the user has stored, nor change it.
class DefaultSettings : public kalde2::SettingsStore {
 public:
  [[nodiscard]] std::string GetSetting(const std::string&, const std::string&,
                                       const std::string& fallback) const override {
    return fallback;
  }
  void SaveSetting(const std::string&, const std::string&, const std::string&) override {}
};

void Serve(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, &loop, &QEventLoop::quit);
  loop.exec();
}

QPalette DarkPalette() {
  const QColor base(0x1e, 0x1f, 0x22);
  const QColor window(0x2b, 0x2d, 0x30);
  const QColor text(0xdf, 0xe1, 0xe5);
  const QColor disabled(0x80, 0x82, 0x86);
  QPalette palette(text, window.lighter(115), window.lighter(160), window.darker(160),
                   window.lighter(130), text, Qt::white, base, window);
  palette.setColor(QPalette::Highlight, QColor(0x35, 0x74, 0xc8));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, window);
  palette.setColor(QPalette::ToolTipText, text);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, disabled);
  }
  return palette;
}

/// Whether two pictures show the same. A few points may differ: the number of a device does.
bool ShowTheSame(const QImage& one, const QImage& other) {
  constexpr int kHardlySeen = 24;  // of 255
  constexpr double kFew = 0.003;   // of all points
  if (one.size() != other.size()) return false;
  const auto differ = [](QRgb left, QRgb right) {
    const auto far = [](int a, int b) { return std::abs(a - b) > kHardlySeen; };
    return far(qRed(left), qRed(right)) || far(qGreen(left), qGreen(right)) ||
           far(qBlue(left), qBlue(right));
  };
  int differing = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      if (differ(one.pixel(x, y), other.pixel(x, y))) ++differing;
    }
  }
  return differing <= kFew * one.width() * one.height();
}

/// The pictures of a folder, which are taken or compared with what is drawn now.
class Album {
 public:
  static constexpr int kDrawnByAnotherQt = 77;

  Album(const QDir& folder, bool compares) : folder_(folder), compares_(compares) {}

  /// Other versions of Qt draw otherwise: what they drew is not to be compared.
  [[nodiscard]] bool IsOfThisQt() {
    QFile note(folder_.filePath(QStringLiteral("drawn-with")));
    const QByteArray version = QByteArray("Qt ") + qVersion() + '\n';
    if (compares_) return note.open(QIODevice::ReadOnly) && note.readAll() == version;
    return note.open(QIODevice::WriteOnly) && note.write(version) == version.size();
  }

  /// @return whether it could be saved, or shows the same
  [[nodiscard]] bool Take(QWidget& widget, const QString& name) {
    const QImage picture = widget.grab().toImage();
    const QString path = folder_.filePath(name + QStringLiteral(".png"));
    if (!compares_) return picture.save(path);
    const bool same = ShowTheSame(picture.convertToFormat(QImage::Format_RGB32),
                                  QImage(path).convertToFormat(QImage::Format_RGB32));
    if (!same) std::fprintf(stderr, "%s.png shows something else\n", qPrintable(name));
    return same;
  }

 private:
  QDir folder_;
  bool compares_;
};

}  // namespace

/// take_pictures FOLDER SUFFIX [dark] [--compare]
int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() < 3) return EXIT_FAILURE;
  const QString suffix = arguments[2];
  if (arguments.contains(QLatin1String("dark"))) QApplication::setPalette(DarkPalette());
  Album album(QDir(arguments[1]), arguments.contains(QLatin1String("--compare")));
  if (!album.IsOfThisQt()) return Album::kDrawnByAnotherQt;

  kalde2::QtPortDirectory ports;
  kalde2::QtSerialPort port(ports);
  kalde2::QtClock clock;
  DefaultSettings settings;
  kalde2::QtMessageBoxes boxes;
  kalde2::QtFileDialogs dialogs;
  kalde2::frm_vornik window({port, ports, clock, settings, boxes, dialogs, [] {}});
  kalde2::VornikForm& form = window.Form();
  bool done = true;
  const auto take = [&](QWidget& widget, const QString& name) {
    Serve(100ms);
    done = album.Take(widget, name + suffix) && done;
  };

  window.show();
  take(window, QStringLiteral("closed"));

  QTimer reading;
  reading.callOnTimeout([&] {
    const auto* const bar = window.Progress().findChild<QProgressBar*>();
    if (bar->value() < bar->maximum()) return;
    reading.stop();  // what has been read stands for two seconds
    take(window.Progress(), QStringLiteral("progress"));
  });
  reading.start(100ms);
  form.Cmd_openclose->click();
  form.mnu_clone_read->trigger();
  Serve(1500ms);
  form.lst_commands->setCurrentRow(14);
  take(window, QStringLiteral("compact"));

  form.mnu_function_advanced->trigger();
  take(window, QStringLiteral("advanced"));
  // A unit in "Simple" shows one zoom for both axes; the aspect view shows two.
  if (!form.mnu_function_aspect->isChecked()) form.mnu_function_aspect->trigger();
  take(window, QStringLiteral("aspect"));

  form.mnu_about->trigger();
  if (auto* const about = window.findChild<QDialog*>(QStringLiteral("frm_About"))) {
    take(*about, QStringLiteral("about"));
  }
  return done && window.UnitSession().UnitConnected() ? EXIT_SUCCESS : EXIT_FAILURE;
}
