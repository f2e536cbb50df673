#include "controls/accessible_mark.h"

#include <QAccessibleWidget>
#include <QCheckBox>
#include <QRadioButton>

namespace kalde2 {
namespace {

/// The caption without the mark of its letter.
QString PlainCaption(const QAbstractButton& button) {
  QString caption = button.text();
  return caption.remove(QLatin1Char('&'));
}

class AccessibleMark : public QAccessibleWidget {
 public:
  AccessibleMark(QAbstractButton* button, QAccessible::Role role)
      : QAccessibleWidget(button, role), button_(button) {}

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    const QString own = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && own.isEmpty() ? PlainCaption(*button_) : own;
  }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = button_->isChecked();
    return state;
  }

  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (button_->isEnabled()) names.prepend(toggleAction());
    return names;
  }

  void doAction(const QString& action) override {
    if (action == toggleAction() || action == pressAction()) {
      button_->click();
    } else {
      QAccessibleWidget::doAction(action);
    }
  }

 private:
  QAbstractButton* const button_;
};

QAccessibleInterface* MakeAccessibleMark(const QString& /*class_name*/, QObject* object) {
  if (auto* const box = qobject_cast<QCheckBox*>(object)) {
    return new AccessibleMark(box, QAccessible::CheckBox);
  }
  if (auto* const option = qobject_cast<QRadioButton*>(object)) {
    return new AccessibleMark(option, QAccessible::RadioButton);
  }
  return nullptr;
}

}  // namespace

void InstallAccessibleMarks() {
  QAccessible::installFactory(MakeAccessibleMark);  // a second installation changes nothing
}

}  // namespace kalde2
