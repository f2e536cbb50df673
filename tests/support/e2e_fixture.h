#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <memory>

#include "adapters/port_numbers.h"
#include "adapters/qt_clock.h"
#include "adapters/qt_dialogs.h"
#include "adapters/qt_serial_port.h"
#include "adapters/qt_settings_store.h"
#include "panel/frm_vornik.h"
#include "tests/support/window_fixture.h"

namespace kalde2 {

/// kalde2-unit as a process of its own on port 1. Ends with the scope, and with it the link.
class UnitProcess {
 public:
  /// Starts the unit and waits until it is ready.
  explicit UnitProcess(const QStringList& options = {}) {
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(KALDE2_UNIT, options);
    EXPECT_TRUE(Says("ready: port 1"));
  }
  ~UnitProcess() {
    process_.terminate();
    if (!process_.waitForFinished(kPatience)) process_.kill();
  }
  UnitProcess(const UnitProcess&) = delete;
  UnitProcess& operator=(const UnitProcess&) = delete;

  /// A line typed at the unit's front panel.
  void Command(const QByteArray& line) {
    process_.write(line + '\n');
    process_.waitForBytesWritten(kPatience);
  }

  /// Waits for a text behind the one that was waited for last. The panel stands still meanwhile.
  [[nodiscard]] bool Says(const QByteArray& text) {
    output_ += process_.readAll();
    qsizetype found = -1;
    while ((found = output_.indexOf(text, seen_)) < 0) {
      if (!process_.waitForReadyRead(kPatience)) return false;
      output_ += process_.readAll();
    }
    seen_ = found + text.size();
    return true;
  }

  /// The value that the unit holds.
  [[nodiscard]] int Value(int address) {
    // Any other word is answered with itself, which tells the answer's line from those of frames.
    Command("get " + QByteArray::number(address) + " 16\n:");
    EXPECT_TRUE(Says("\nno command \":\""));
    return output_.left(output_.lastIndexOf('\n', seen_ - 1)).split('\n').last().toInt();
  }

  /// The requests that have come since the last call, one a line as the unit shows them; "WRONG"
  /// tells of one that no panel should send.
  [[nodiscard]] QStringList Requests() {
    Command(":");
    EXPECT_TRUE(Says("no command \":\""));
    QStringList requests;
    for (const QByteArray& line : output_.left(seen_).split('\n')) {
      const qsizetype mark = line.indexOf(" <- ");
      if (mark >= 0) requests << QString::fromLatin1(line.mid(mark + 4));
    }
    output_.remove(0, seen_);
    seen_ = 0;
    return requests;
  }

 private:
  static constexpr int kPatience = 5000;

  QProcess process_;
  QByteArray output_;
  qsizetype seen_ = 0;
};

/// The panel on its real adapters, composed as main() does.
struct RealPanel {
  RealPanel() {
    boxes.SetParent(&window);
    dialogs.SetParent(&window);
    window.show();
  }

  QtPortDirectory ports;
  QtSerialPort port{ports};
  QtClock clock;
  QtSettingsStore settings;
  QtMessageBoxes boxes;
  QtFileDialogs dialogs;
  int ends = 0;  ///< how often the program was ended
  frm_vornik window{{port, ports, clock, settings, boxes, dialogs, [this] { ++ends; }}};
};

/// The real window against the real unit. Message boxes are noted and answered with OK, file
/// dialogs with `file_name`, as an operator answers them.
class EndToEnd : public WindowFixture {
 public:
  EndToEnd() { qApp->installEventFilter(&operator_); }
  ~EndToEnd() override { panel.reset(); }

  /// A new panel with nothing remembered but settings and files, and its window.
  void StartPanel() {
    panel.reset();
    panel = std::make_unique<RealPanel>();
  }

  void StartUnit(const QStringList& options = {}) {
    unit.reset();
    unit = std::make_unique<UnitProcess>(options);
  }

  /// Starts both, opens the port and takes the requests of the opening as seen.
  void StartAndOpen(const QStringList& options = {}) {
    StartUnit(options);
    StartPanel();
    Press("Cmd_openclose");
    ASSERT_TRUE(panel->port.PortOpen());
    EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
  }

  [[nodiscard]] frm_vornik& Window() const override { return panel->window; }

  /// Lets the panel work until the condition holds. @return false when it does not come to hold
  template <typename Condition>
  [[nodiscard]] static bool Becomes(Condition condition) {
    return QTest::qWaitFor(condition, 5000);
  }

  /// Lets the panel work for a time; sleeps where it does.
  static void Rest(std::chrono::milliseconds duration) {
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
  }

  /// Boxes since the last call, as "icon, title: text".
  [[nodiscard]] QStringList Boxes() { return std::exchange(operator_.boxes, {}); }

  /// Whether boxes are answered, or left open.
  bool& answers = operator_.answers;

  std::unique_ptr<UnitProcess> unit;
  std::unique_ptr<RealPanel> panel;
  QString& file_name = operator_.file_name;

 private:
  /// Who sits before the window.
  class Operator : public QObject {
   public:
    QStringList boxes;
    QString file_name;
    bool answers = true;

   protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
      const auto* const dialog = qobject_cast<QDialog*>(watched);
      if (answers && event->type() == QEvent::Show && dialog != nullptr && dialog->isModal()) {
        QTimer::singleShot(0, this, [this] { Answer(QApplication::activeModalWidget()); });
      }
      return false;
    }

   private:
    void Answer(QWidget* dialog) {
      if (auto* const box = qobject_cast<QMessageBox*>(dialog)) {
        constexpr std::array kIcons = {"plain", "information", "exclamation", "critical"};
        boxes << QString("%1, %2: %3").arg(kIcons.at(box->icon()), box->windowTitle(), box->text());
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
      } else if (auto* const files = qobject_cast<QFileDialog*>(dialog)) {
        auto* const name = files->findChild<QLineEdit*>("fileNameEdit");
        name->setText(file_name);
        QTest::keyClick(name, Qt::Key_Return);
      }
    }
  };

  Operator operator_;
};

}  // namespace kalde2
