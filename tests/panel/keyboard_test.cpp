// Where letters go in the main window.

#include <QMenu>

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

}  // namespace
}  // namespace kalde2
