#include "panel/menu_letters.h"

#include <QKeyEvent>
#include <QMenu>
#include <QShortcutEvent>
#include <algorithm>

namespace kalde2 {
namespace {

bool HasLetter(const QString& caption, const QKeySequence& letter) {
  return !letter.isEmpty() && QKeySequence::mnemonic(caption) == letter;
}

/// Opens a menu of the bar with its first item chosen.
void Open(QMenuBar& bar, QAction* item) {
  bar.setActiveAction(item);
  if (QMenu* const menu = item->menu()) menu->setActiveAction(menu->actions().value(0));
}

}  // namespace

MenuLetters::MenuLetters(QMenuBar& bar, const QWidget& controls) : QObject(&bar), bar_(bar) {
  bar.installEventFilter(this);
  for (const QAction* const item : bar.actions()) {
    if (item->menu() != nullptr) item->menu()->installEventFilter(this);
    for (QPushButton* const button : controls.findChildren<QPushButton*>()) {
      if (!HasLetter(button->text(), QKeySequence::mnemonic(item->text()))) continue;
      button->setShortcut({});  // the letter stays underlined
      if (std::ranges::find(buttons_, button) == buttons_.end()) buttons_.push_back(button);
    }
  }
}

bool MenuLetters::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut && watched == &bar_) {
    const QKeySequence& letter = static_cast<QShortcutEvent*>(event)->key();
    if (!IsShared(letter)) return false;
    GoOn(letter, nullptr);
    return true;
  }
  const auto* const menu = qobject_cast<QMenu*>(watched);
  if (event->type() != QEvent::KeyPress || menu == nullptr) return false;
  const QKeySequence letter(static_cast<QKeyEvent*>(event)->keyCombination());
  if (!IsShared(letter) || !HasLetter(menu->title(), letter)) return false;
  GoOn(letter, menu->menuAction());
  return true;
}

bool MenuLetters::IsShared(const QKeySequence& letter) const {
  const auto items = bar_.actions();
  return std::ranges::count_if(
             items, [&](const QAction* item) { return HasLetter(item->text(), letter); }) > 1;
}

/// @param from the menu that is open, none to begin with the first
void MenuLetters::GoOn(const QKeySequence& letter, const QAction* from) {
  bool is_next = from == nullptr;
  for (QAction* const item : bar_.actions()) {
    if (is_next && item->isEnabled() && HasLetter(item->text(), letter)) return Open(bar_, item);
    is_next = is_next || item == from;
  }
  if (from == nullptr) return;
  for (QPushButton* const button : buttons_) {
    if (!button->isEnabled() || !HasLetter(button->text(), letter)) continue;
    from->menu()->close();
    bar_.setActiveAction(nullptr);
    button->setFocus(Qt::ShortcutFocusReason);
    return;
  }
}

}  // namespace kalde2
