// What a screen reader calls the controls, and that all can be reached by keyboard alone.

#include <QAccessible>
#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

TEST_F(PanelFixture, TabReachesEveryControlAndEachHasANameOfItsOwn) {
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
  std::set<QString> names;
  for (QWidget* const control :
       Form().fra_control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    if (!control->isVisible() || (control->focusPolicy() & Qt::TabFocus) == 0) continue;
    SCOPED_TRACE(control->objectName().toStdString());
    const bool in_group = qobject_cast<const QRadioButton*>(control) != nullptr;
    EXPECT_TRUE(in_group || reached.contains(control));
    auto* const node = QAccessible::queryAccessibleInterface(control);
    const auto labels = node->relations(QAccessible::Label);
    const QString name = (labels.isEmpty() ? node : labels.first().first)->text(QAccessible::Name);
    EXPECT_TRUE(!name.isEmpty() && names.insert(name).second) << name.toStdString();
  }
  EXPECT_GT(names.size(), 30U);
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
