// What assistive tools are told of the window, and its use by keyboard alone.

#include <gmock/gmock.h>

#include <QAccessible>
#include <QMenuBar>
#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

using Roles = std::map<QAccessible::Role, std::size_t>;

class AccessibilityTest : public PanelFixture {
 protected:
  /// An opened panel with every control of the window in sight and in use.
  void OpenWithEverythingShown() {
    OpenSettled(32);
    Choose("mnu_function_advanced");
    Choose("mnu_function_aspect");
    Press("chk_shrinkenable");
    Press("opt_lockgenlock");
    SelectLine("Zoom Pan H");
  }

  /// What a screen reader finds in the window: everything below it that is not hidden.
  [[nodiscard]] std::vector<QAccessibleInterface*> Tree() {
    std::vector<QAccessibleInterface*> found = {QAccessible::queryAccessibleInterface(&Window())};
    for (std::size_t next = 0; next < found.size(); ++next) {
      for (int i = 0; i < found[next]->childCount(); ++i) {
        QAccessibleInterface* const child = found[next]->child(i);
        if (child != nullptr && !child->state().invisible) found.push_back(child);
      }
    }
    return found;
  }

  /// What a control is called: by the label that is its own, or else by its name. (A combo box has
  /// no name of its own on Linux.)
  static QString CalledBy(QAccessibleInterface* node) {
    const auto labels = node->relations(QAccessible::Label);
    if (!labels.isEmpty()) return labels.first().first->text(QAccessible::Name);
    return node->role() == QAccessible::ComboBox ? QString() : node->text(QAccessible::Name);
  }
};

TEST_F(AccessibilityTest, EveryControlTellsRoleNameAndValue) {
  OpenWithEverythingShown();
  Roles roles;
  std::set<QString> names;
  const std::set<QAccessible::Role> with_value = {QAccessible::Slider, QAccessible::ComboBox,
                                                  QAccessible::EditableText, QAccessible::Grouping};
  for (QAccessibleInterface* const node : Tree()) {
    if (!node->state().focusable) continue;
    const QAccessible::Role role = node->role();
    const QString name = CalledBy(node);
    SCOPED_TRACE(name.toStdString());
    EXPECT_FALSE(name.isEmpty());
    EXPECT_FALSE(with_value.contains(role) && node->text(QAccessible::Value).isEmpty());
    ++roles[role];
    // A list's lines may repeat, controls may not: the name is all that tells them apart.
    EXPECT_TRUE(role == QAccessible::ListItem || names.insert(name).second);
  }
  EXPECT_GE(roles[QAccessible::ListItem], 10U);
  const Roles expected = {
      {QAccessible::NoRole, 0},
      {QAccessible::Client, 0},
      {QAccessible::Slider, kSliders.size()},
      {QAccessible::Grouping, kPads.size()},
      {QAccessible::CheckBox, kChecks.size()},
      {QAccessible::RadioButton, kLockModes.size()},
      {QAccessible::ComboBox, 4},
      {QAccessible::List, 1},
  };
  for (const auto& [role, count] : expected) EXPECT_EQ(roles[role], count) << role;

  SelectLine("Lock mode");
  auto* const choice = QAccessible::queryAccessibleInterface(Form().cbo_command);
  EXPECT_FALSE(CalledBy(choice).isEmpty() || choice->text(QAccessible::Value).isEmpty());
}

TEST_F(AccessibilityTest, WhatChangesIsToldAsItIsShown) {
  OpenWithEverythingShown();
  const auto told = [this](const char* name, QAccessible::Text what) {
    return QAccessible::queryAccessibleInterface(Find<QWidget>(name))->text(what).toStdString();
  };
  const auto state = [this](const char* name) {
    return QAccessible::queryAccessibleInterface(Find<QWidget>(name))->state();
  };
  for (const auto& [address, value] : {std::pair{159, 77}, {178, 99}, {295, 1}, {131, 5}}) {
    Unasked(WriteOf(address, value));
  }
  EXPECT_THAT(told("arr_zoompan", QAccessible::Value), HasSubstr("77"));
  EXPECT_EQ(told("slide_ymax", QAccessible::Value), "99");
  EXPECT_TRUE(state("chk_keyenable").checkable && state("chk_keyenable").checked);
  EXPECT_EQ(told("cbo_resolution", QAccessible::Value), "640 x 400 85Hz");

  EXPECT_TRUE(state("txt_port").disabled);
  Press("Cmd_openclose");
  EXPECT_TRUE(state("slide_zoom").disabled);
}

TEST_F(AccessibilityTest, EveryMnemonicOfACaptionIsTold) {
  OpenWithEverythingShown();
  std::string buttons;
  for (auto* const button : Window().findChildren<QAbstractButton*>()) {
    const auto mark = button->text().indexOf('&');
    if (mark < 0) continue;
    const QString key = button->text().mid(mark + 1, 1).toUpper();
    buttons += key.toStdString();
    auto* const node = QAccessible::queryAccessibleInterface(button);
    EXPECT_EQ(node->text(QAccessible::Accelerator), "Alt+" + key);
  }
  EXPECT_EQ(buttons.size(), 6U);
  std::vector<std::string> menus;
  for (QAccessibleInterface* const node : Tree()) {
    if (node->role() != QAccessible::MenuItem) continue;
    menus.push_back(node->text(QAccessible::Name).toStdString());
    EXPECT_THAT(node->text(QAccessible::Accelerator).toStdString(), StartsWith("Alt+"));
  }
  EXPECT_THAT(menus, ::testing::ElementsAre("File", "Clone", "Function", "About"));
}

TEST_F(AccessibilityTest, TabReachesEveryControl) {
  OpenWithEverythingShown();
  Focus(*Form().cbo_program);
  std::set<const QWidget*> reached;
  while (reached.insert(QApplication::focusWidget()).second) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  for (const QWidget* const control : Form().fra_control->findChildren<QWidget*>()) {
    const bool workable = control->isVisible() && control->isEnabled() &&
                          (control->focusPolicy() & Qt::TabFocus) != 0 &&
                          control->parentWidget() == Form().fra_control;
    const bool in_group = qobject_cast<const QRadioButton*>(control) != nullptr;
    EXPECT_TRUE(!workable || in_group || reached.contains(control))
        << control->objectName().toStdString();
  }
}

TEST_F(AccessibilityTest, MenusOptionsAndThePortAreWorkedByKeysAlone) {
  ConnectUnit();
  Start();
  Focus(*Form().cbo_baud);
  QTest::keyClick(&Window(), Qt::Key_P, Qt::AltModifier);
  // A button that a letter presses looks pressed for a moment first.
  ASSERT_TRUE(QTest::qWaitFor([this] { return Form().lbl_comstate->text() == "OPEN : K2-6350"; }));

  Focus(*Form().opt_lock[1]);
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Right}) QTest::keyClick(Form().opt_lock[1], key);
  EXPECT_TRUE(Form().opt_lock[2]->isChecked());
  EXPECT_THAT(Written(), Contains(WriteOf(266, 2)));

  QTest::keyClick(&Window(), Qt::Key_L, Qt::AltModifier);
  ASSERT_EQ(QApplication::activePopupWidget(), Form().mnu_clone);
  QTest::keyClick(Form().mnu_clone, Qt::Key_R);
  EXPECT_THAT(Written(), IsSupersetOf({ReadOf(130), ReadOf(159), ReadOf(266)}));

  Focus(*Form().Slider("slide_zoom"));
  QTest::keyClick(&Window(), Qt::Key_Escape);
  ExpectShowsClosed();
}

}  // namespace
}  // namespace kalde2
