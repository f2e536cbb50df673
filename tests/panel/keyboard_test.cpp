// The main window without a mouse: where letters and the focus go, and what assistive tools do.

#include <QAccessible>
#include <QMenu>
#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

class Keyboard : public PanelFixture {
 protected:
  /// Presses a letter while Alt is down.
  void Letter(Qt::Key letter) {
    QTest::simulateEvent(KeyTarget(), true, letter, Qt::AltModifier, QString(), false);
  }

  /// Presses Alt, which closes an open menu, and a letter.
  void Alt(Qt::Key letter) {
    if (KeyTarget() == &Window()) Window().activateWindow();  // closed menus stay active headless
    QTest::simulateEvent(KeyTarget(), true, Qt::Key_Alt, Qt::AltModifier, QString(), false);
    Letter(letter);
    QTest::simulateEvent(KeyTarget(), false, Qt::Key_Alt, {}, QString(), false);
  }

  [[nodiscard]] QWidget* KeyTarget() const {
    QWidget* const menu = QApplication::activePopupWidget();
    return menu != nullptr ? menu : &Window();
  }

  /// The menu that is open; what has the focus where none is.
  [[nodiscard]] static std::string Reached() {
    const QWidget* const menu = QApplication::activePopupWidget();
    return (menu != nullptr ? menu : QApplication::focusWidget())->objectName().toStdString();
  }

  static void LeaveMenus() {
    while (QWidget* const menu = QApplication::activePopupWidget()) menu->close();
  }
};

TEST_F(Keyboard, ALetterOfSeveralOpensTheFirstMenuThatCanBeUsed) {
  Start();
  for (int i = 0; i < 3; ++i) {
    Alt(Qt::Key_F);
    EXPECT_EQ(Reached(), "mnu_file") << "closed";
    Letter(Qt::Key_F);
    EXPECT_EQ(Reached(), "mnu_file") << "there is no other";
    LeaveMenus();
  }
  ConnectUnit({.product_type = 35});
  Press("Cmd_openclose");
  Tick("tmr_updatelstCommands");
  (void)Written();
  Focus(*Form().lst_commands);
  for (int i = 0; i < 3; ++i) {
    Alt(Qt::Key_F);
    EXPECT_EQ(Reached(), "mnu_file") << "connected";
    Letter(Qt::Key_F);
    EXPECT_EQ(Reached(), "mnu_function");
    Letter(Qt::Key_F);
    EXPECT_EQ(Reached(), "cmd_fade");
    EXPECT_FALSE(Form().mnu_file->isVisible() || Form().mnu_function->isVisible());
  }
  Alt(Qt::Key_B);
  QTest::qWait(150);
  EXPECT_EQ(Written().size(), 9U) << "a letter of one button presses it";
  for (int i = 0; i < 2; ++i) {
    Alt(Qt::Key_A);
    auto* const about = Window().findChild<QWidget*>("frm_About");
    ASSERT_TRUE(about != nullptr && about->isVisible());
    delete about;
  }
  EXPECT_TRUE(Written().empty());
}

TEST_F(Keyboard, AboutComesUpAgainInTheEventThatClosesIt) {
  Start();
  const auto shown = [this] {
    int count = 0;
    for (const QWidget* box : Window().findChildren<QWidget*>("frm_About")) {
      count += box->isVisible() ? 1 : 0;
    }
    return count;
  };
  Choose("mnu_about");
  Choose("mnu_about");
  EXPECT_EQ(shown(), 1);
  Window().findChild<QWidget*>("frm_About")->close();
  Choose("mnu_about");
  QTest::qWait(10);
  EXPECT_EQ(shown(), 1);
}

TEST_F(Keyboard, TabReachesEveryControl) {
  OpenSettled(32);
  Choose("mnu_function_advanced");
  Choose("mnu_function_aspect");
  Press("chk_shrinkenable");
  Press("opt_lockgenlock");
  SelectLine("Zoom Pan H");
  Focus(*Form().cbo_program);
  std::set<const QWidget*> reached;
  while (reached.insert(QApplication::focusWidget()).second) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  for (const QWidget* const control :
       Form().fra_control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    const bool in_group = qobject_cast<const QRadioButton*>(control) != nullptr;
    if (!control->isVisible() || (control->focusPolicy() & Qt::TabFocus) == 0 || in_group) continue;
    EXPECT_TRUE(reached.contains(control)) << control->objectName().toStdString();
  }
  EXPECT_GT(reached.size(), 30U);
}

/// What an assistive tool does on a check box or option button.
void Toggle(QWidget* mark) {
  QAccessible::queryAccessibleInterface(mark)->actionInterface()->doAction(
      QAccessibleActionInterface::toggleAction());
}

TEST_F(PanelFixture, AssistiveToolsClickMarksAndCodeDoesNot) {
  OpenSettled(32);
  const std::tuple<const char*, int, int> rows[] = {
      {"chk_keyenable", 295, 1},    {"chk_keyenable", 295, 0},   {"chk_swapforback", 324, 1},
      {"chk_shrinkenable", 398, 1}, {"opt_lockgenlock", 266, 1}, {"opt_lockmix", 266, 2},
      {"opt_lockmix", 266, 2},      {"opt_lockoff", 266, 0}};
  for (const auto& [name, address, value] : rows) {
    auto* const mark = Find<QAbstractButton>(name);
    Toggle(mark);
    EXPECT_EQ(Written(), std::vector{WriteOf(address, value)}) << name;
    EXPECT_EQ(mark->isChecked(), name[0] == 'o' || value != 0);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(mark)->state().checked, mark->isChecked());
    EXPECT_TRUE(address != 266 || Form().cbo_lock->isVisible() == (value != 0));
  }
  for (const int value : {0, 1}) {
    for (const int address : {295, 324, 398, 266}) Unasked(WriteOf(address, value));
  }
  Press("Cmd_openclose");
  Toggle(Form().Check("chk_keyenable"));
  cpvSlider* const zoom = Form().Slider("slide_zoom");
  QAccessible::queryAccessibleInterface(zoom)->valueInterface()->setCurrentValue(500);
  EXPECT_TRUE(Form().Check("chk_keyenable")->isChecked() && zoom->Value() == 100) << "disabled";
  EXPECT_TRUE(Written().empty());
}

TEST_F(PanelFixture, WhatAssistiveToolsMoveInABulkOperationGoesBackAtOnce) {
  OpenSettled(32);
  Unasked(WriteOf(266, 1));
  Unasked(WriteOf(134, 300));
  ASSERT_FALSE(unit->Faults().Add("late=5"));
  std::vector<QWidget*> moved(Form().sliders.begin(), Form().sliders.end());
  for (const char* name : {"chk_keyenable", "chk_swapforback", "chk_zoomenable", "opt_lockoff"}) {
    moved.push_back(Find<QWidget>(name));
  }
  const auto state = [&] {
    std::string text = Form().cbo_lock->isVisible() ? "lock source" : "";
    for (const QWidget* const control : moved) {
      text += control->isEnabled() ? " +" : " -";
      text += control->property("checked").toString().toStdString() +
              control->property("Value").toString().toStdString();
    }
    return text + (Form().opt_lock[1]->isChecked() ? " genlock" : "");
  };
  const std::string before = state();
  clock.After(std::chrono::milliseconds(7), [&] {
    for (QWidget* const control : moved) {
      auto* const node = QAccessible::queryAccessibleInterface(control);
      if (auto* const value = node->valueInterface()) {
        value->setCurrentValue(90);
      } else {
        Toggle(control);
      }
      EXPECT_EQ(state(), before) << control->objectName().toStdString();
    }
  });
  Choose("mnu_clone_read");
  for (const std::string& frame : Written()) EXPECT_EQ(frame.substr(0, 3), "F84");
}

}  // namespace
}  // namespace kalde2
