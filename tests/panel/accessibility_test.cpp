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

}  // namespace
}  // namespace kalde2
