#pragma once

#include <QMenuBar>
#include <QPushButton>
#include <vector>

namespace kalde2 {

/// Whose turn it is where several menus and buttons have one letter: Alt with it always opens the
/// first menu that can be used. With Alt still down, the letter goes on to the next menu, and after
/// the last to the button, which gets the focus and is not pressed.
///
/// The toolkit would give them their turns in an order of its own, disabled ones included, and go
/// on where it left off long ago.
class MenuLetters : public QObject {
 public:
  /// @param controls whose buttons come after the menus
  MenuLetters(QMenuBar& bar, const QWidget& controls);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool IsShared(const QKeySequence& letter) const;
  void GoOn(const QKeySequence& letter, const QAction* from);

  QMenuBar& bar_;
  std::vector<QPushButton*> buttons_;
};

}  // namespace kalde2
