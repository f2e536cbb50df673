// What assistive tools are told of the window, and its use by keyboard alone.

#include <gmock/gmock.h>

#include <QAccessible>
#include <QMenuBar>
#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;

class AccessibilityTest : public PanelFixture {
 protected:
  /// An opened panel with every control of the window in sight.
  void OpenWithEverythingShown() {
    StartAndOpen(32);
    Choose("mnu_function_advanced");
    Choose("mnu_function_aspect");
    Press("chk_shrinkenable");
    Form().opt_lock[1]->click();
    SelectLine("Zoom Pan H");
  }

  void SelectLine(const char* beginning) {
    const auto lines =
        Form().lst_commands->findItems(QLatin1String(beginning), Qt::MatchStartsWith);
    ASSERT_FALSE(lines.isEmpty()) << beginning;
    Form().lst_commands->setCurrentItem(lines.first());
  }

  static void CollectBelow(QAccessibleInterface* parent, std::vector<QAccessibleInterface*>& all) {
    for (int i = 0; i < parent->childCount(); ++i) {
      QAccessibleInterface* const child = parent->child(i);
      if (child == nullptr || child->state().invisible) continue;
      all.push_back(child);
      CollectBelow(child, all);
    }
  }

  /// What a screen reader finds in the window: everything below it that is not hidden.
  [[nodiscard]] std::vector<QAccessibleInterface*> Tree() {
    std::vector<QAccessibleInterface*> all;
    CollectBelow(QAccessible::queryAccessibleInterface(&Window()), all);
    return all;
  }

  /// What a control is called: by the label that is its own, or else by its name. (A combo box has
  /// no name of its own on Linux.)
  static QString CalledBy(QAccessibleInterface* node) {
    const auto labels = node->relations(QAccessible::Label);
    if (!labels.isEmpty()) return labels.first().first->text(QAccessible::Name);
    return node->role() == QAccessible::ComboBox ? QString() : node->text(QAccessible::Name);
  }

  static std::string NameOf(const QObject* object) {
    return object ? object->objectName().toStdString() : std::string();
  }
};

/// Roles of things that hold a value beside their name.
bool HoldsValue(QAccessible::Role role) {
  return role == QAccessible::Slider || role == QAccessible::ComboBox ||
         role == QAccessible::EditableText || role == QAccessible::Grouping;
}

TEST_F(AccessibilityTest, EveryControlTellsRoleNameAndValue) {
  OpenWithEverythingShown();
  std::multiset<QAccessible::Role> roles;
  std::set<QString> names;
  for (QAccessibleInterface* const node : Tree()) {
    if (!node->state().focusable) continue;
    SCOPED_TRACE(NameOf(node->object()));
    const QAccessible::Role role = node->role();
    const QString name = CalledBy(node);
    EXPECT_NE(role, QAccessible::NoRole);
    EXPECT_NE(role, QAccessible::Client);
    EXPECT_FALSE(name.isEmpty());
    if (HoldsValue(role)) {
      EXPECT_FALSE(node->text(QAccessible::Value).isEmpty());
    }
    // A list's lines may repeat, controls may not: the name is all that tells them apart.
    if (role != QAccessible::ListItem) {
      EXPECT_TRUE(names.insert(name).second) << name.toStdString();
    }
    roles.insert(role);
  }
  EXPECT_EQ(roles.count(QAccessible::Slider), kSliders.size());
  EXPECT_EQ(roles.count(QAccessible::Grouping), kPads.size());
  EXPECT_EQ(roles.count(QAccessible::CheckBox), kChecks.size());
  EXPECT_EQ(roles.count(QAccessible::RadioButton), kLockModes.size());
  EXPECT_EQ(roles.count(QAccessible::ComboBox), 4U) << "input, resolution, lock source, baud rate";
  EXPECT_EQ(roles.count(QAccessible::List), 1U);
  EXPECT_GE(roles.count(QAccessible::ListItem), 10U);

  SelectLine("Lock mode");
  auto* const choice = QAccessible::queryAccessibleInterface(Form().cbo_command);
  EXPECT_FALSE(CalledBy(choice).isEmpty());
  EXPECT_FALSE(choice->text(QAccessible::Value).isEmpty());
}

TEST_F(AccessibilityTest, WhatChangesIsToldAsItIsShown) {
  OpenWithEverythingShown();
  const auto told = [this](const char* name, QAccessible::Text what) {
    return QAccessible::queryAccessibleInterface(Find<QWidget>(name))->text(what);
  };
  Unasked(WriteOf(159, 77));
  Unasked(WriteOf(178, 99));
  EXPECT_THAT(told("arr_zoompan", QAccessible::Value).toStdString(), HasSubstr("77"));
  EXPECT_EQ(told("slide_ymax", QAccessible::Value), "99");
  Unasked(WriteOf(295, 1));
  const auto state = QAccessible::queryAccessibleInterface(Form().chk_keyenable)->state();
  EXPECT_TRUE(state.checkable && state.checked);
  Form().cbo_resolution->setCurrentIndex(5);
  EXPECT_EQ(told("cbo_resolution", QAccessible::Value), Form().cbo_resolution->itemText(5));

  EXPECT_EQ(told("Cmd_openclose", QAccessible::Accelerator), "Alt+P");
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(Form().txt_port)->state().disabled);
  Press("Cmd_openclose");
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(Form().Slider("slide_zoom"))->state().disabled);
}

TEST_F(AccessibilityTest, EveryMnemonicOfACaptionIsTold) {
  OpenWithEverythingShown();
  int buttons = 0;
  int items = 0;
  const auto mnemonic_of = [](const QString& caption) {
    const auto mark = caption.indexOf('&');
    return mark < 0 ? QString() : "Alt+" + caption.mid(mark + 1, 1).toUpper();
  };
  for (auto* const button : Window().findChildren<QAbstractButton*>()) {
    const QString mnemonic = mnemonic_of(button->text());
    if (mnemonic.isEmpty()) continue;
    ++buttons;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Accelerator),
              mnemonic);
  }
  for (QAccessibleInterface* const node : Tree()) {
    if (node->role() != QAccessible::MenuItem) continue;
    ++items;
    EXPECT_FALSE(node->text(QAccessible::Name).isEmpty());
    EXPECT_FALSE(node->text(QAccessible::Name).contains('&'));
    EXPECT_THAT(node->text(QAccessible::Accelerator).toStdString(), StartsWith("Alt+"));
  }
  EXPECT_EQ(buttons, 6);
  EXPECT_EQ(items, 4);
}

TEST_F(AccessibilityTest, TabReachesEveryControlAndKeysWorkIt) {
  OpenWithEverythingShown();
  Focus(*Form().cbo_program);

  // What reaching a control and working it with its key sends, by the control's name.
  std::map<std::string, std::vector<std::string>> sent;
  for (int i = 0; i < 100; ++i) {
    QWidget* const control = QApplication::focusWidget();
    ASSERT_NE(control, nullptr);
    if (sent.contains(NameOf(control)) || control == Form().Cmd_openclose) {
      QTest::keyClick(control, Qt::Key_Tab);
      continue;
    }
    (void)Written();
    if (qobject_cast<QAbstractButton*>(control) != nullptr) {
      QTest::keyClick(control, Qt::Key_Space);
    } else if (qobject_cast<QLineEdit*>(control) != nullptr) {
      QTest::keyClick(control, Qt::Key_Enter);
    } else {
      // One of them moves it, also from a limit.
      QTest::keyClick(control, Qt::Key_Down);
      QTest::keyClick(control, Qt::Key_Up);
    }
    sent[NameOf(control)] = Written();
    if (NameOf(control) == "chk_shrinkenable" || NameOf(control) == "chk_zoomenable") {
      QTest::keyClick(control, Qt::Key_Space);  // back: the sliders behind it are wanted
    }
    Focus(*control);  // what it did may have shown the progress window
    QTest::keyClick(control, Qt::Key_Tab);
  }

  const std::set<std::string> moves_only = {"chk_zoomenable", "lst_commands"};
  for (QWidget* const control : Form().fra_control->findChildren<QWidget*>()) {
    const bool workable = control->isVisible() && control->isEnabled() &&
                          (control->focusPolicy() & Qt::TabFocus) != 0 &&
                          control->parentWidget() == Form().fra_control;
    const bool in_group = qobject_cast<QRadioButton*>(control) != nullptr;
    if (!workable || in_group) continue;
    SCOPED_TRACE(NameOf(control));
    ASSERT_TRUE(sent.contains(NameOf(control)));
    if (!moves_only.contains(NameOf(control))) {
      EXPECT_THAT(sent[NameOf(control)], Not(IsEmpty()));
    }
  }
}

TEST_F(AccessibilityTest, ListsAndOptionsFollowTheArrows) {
  OpenWithEverythingShown();
  SelectLine("Zoom Pan H");
  const int row = Form().lst_commands->currentRow();
  Focus(*Form().lst_commands);
  QTest::keyClick(Form().lst_commands, Qt::Key_Down);
  EXPECT_EQ(Form().lst_commands->currentRow(), row + 1);
  (void)Written();
  Focus(*Form().cmd_commandplus);
  QTest::keyClick(Form().cmd_commandplus, Qt::Key_Space);
  EXPECT_THAT(Written(), ElementsAre(WriteOf(160, 1)));

  Focus(*Form().opt_lock[1]);
  QTest::keyClick(Form().opt_lock[1], Qt::Key_Right);
  EXPECT_TRUE(Form().opt_lock[2]->isChecked());
  EXPECT_THAT(Written(), Contains(WriteOf(266, 2)));
}

TEST_F(AccessibilityTest, MenusAndThePortAreWorkedByKeysAlone) {
  ConnectUnit({.product_type = 32});
  Start();
  Focus(*Form().cbo_baud);
  QTest::keyClick(&Window(), Qt::Key_P, Qt::AltModifier);
  // A button that a letter presses looks pressed for a moment first.
  ASSERT_TRUE(QTest::qWaitFor([this] { return Form().lbl_comstate->text() == "OPEN : K2-6150"; }));

  Focus(*Form().lst_commands);
  (void)Written();
  QTest::keyClick(&Window(), Qt::Key_L, Qt::AltModifier);
  ASSERT_EQ(QApplication::activePopupWidget(), Form().mnu_clone);
  QTest::keyClick(Form().mnu_clone, Qt::Key_R);
  EXPECT_THAT(Written(), IsSupersetOf({ReadOf(130), ReadOf(159), ReadOf(266)}));

  Focus(*Form().Slider("slide_zoom"));
  QTest::keyClick(&Window(), Qt::Key_Escape);
  EXPECT_EQ(Form().lbl_comstate->text(), "CLOSED");
}

}  // namespace
}  // namespace kalde2
