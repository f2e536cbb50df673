#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <memory>

#include "panel/frm_vornik.h"
#include "tests/support/real_adapters.h"
#include "tests/support/unit_process.h"
#include "tests/support/window_fixture.h"

namespace kalde2 {

/// The panel on its real adapters, composed as main() does.
struct RealPanel : RealAdapters {
  RealPanel() {
    boxes.SetParent(&window);
    dialogs.SetParent(&window);
    window.show();
  }

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
