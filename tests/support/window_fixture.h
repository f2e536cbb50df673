#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QTest>

#include "panel/frm_vornik.h"

namespace kalde2 {

/// A test that works the window as an operator does.
class WindowFixture : public ::testing::Test {
 public:
  [[nodiscard]] virtual frm_vornik& Window() const = 0;
  [[nodiscard]] VornikForm& Form() const { return Window().Form(); }

  /// A control, timer or menu item of the window by its name.
  template <typename Object>
  [[nodiscard]] Object* Find(const char* name) const {
    auto* const object = Window().findChild<Object*>(QLatin1String(name));
    EXPECT_NE(object, nullptr) << name;
    return object;
  }

  /// What the line under the keyer says.
  [[nodiscard]] std::string Status() const { return Form().lbl_status->text().toStdString(); }

  /// A press with the mouse on a button, check box or option button.
  void Press(const char* button) const {
    auto* const widget = Find<QAbstractButton>(button);
    QTest::mouseClick(widget, Qt::LeftButton, {}, {widget->height() / 2, widget->height() / 2});
  }

  void Choose(const char* item) const { Find<QAction>(item)->trigger(); }

  /// Clicks on the one line of the command list that begins with the text.
  void SelectLine(const char* beginning) const {
    QListWidget& list = *Form().lst_commands;
    const auto lines = list.findItems(QLatin1String(beginning), Qt::MatchStartsWith);
    ASSERT_EQ(lines.size(), 1) << beginning;
    list.scrollToItem(lines.front());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualItemRect(lines.front()).center());
  }

  /// The captions and what can be used are those of a port that is open to a K2-6350.
  void ExpectShowsOpen() const {
    EXPECT_EQ(Form().lbl_comstate->text(), "OPEN : K2-6350");
    EXPECT_EQ(Form().Cmd_openclose->text(), "Close &Port");
    EXPECT_FALSE(Form().txt_port->isEnabled() || Form().cbo_baud->isEnabled());
    EXPECT_TRUE(Form().lst_commands->isEnabled() && Form().mnu_clone->isEnabled());
  }

  /// The same of a closed port.
  void ExpectShowsClosed() const {
    EXPECT_EQ(Form().lbl_comstate->text(), "CLOSED");
    EXPECT_EQ(Form().Cmd_openclose->text(), "Open &Port");
    EXPECT_TRUE(Form().txt_port->isEnabled() && Form().cbo_baud->isEnabled());
    EXPECT_FALSE(Form().mnu_clone->isEnabled() || Form().mnu_function->isEnabled());
    EXPECT_EQ(Form().lst_commands->count(), 0);
    for (const QWidget* const control : Form().ReplyControls()) {
      if (control->parentWidget() == Form().fra_control) {
        EXPECT_FALSE(control->isEnabled()) << control->objectName().toStdString();
      }
    }
  }
};

}  // namespace kalde2
