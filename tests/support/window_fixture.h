#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QTest>

#include "panel/frm_vornik.h"

namespace kalde2 {

/// A test that works the window as an operator does.
class WindowFixture : public ::testing::Test {
 protected:
  [[nodiscard]] virtual frm_vornik& Window() const = 0;
  [[nodiscard]] VornikForm& Form() const { return Window().Form(); }

  /// A control, timer or menu item of the window by its name.
  template <typename Object>
  [[nodiscard]] Object* Find(const char* name) const {
    auto* const object = Window().findChild<Object*>(QLatin1String(name));
    EXPECT_NE(object, nullptr) << name;
    return object;
  }

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
};

}  // namespace kalde2
