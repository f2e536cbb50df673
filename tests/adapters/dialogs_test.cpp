#include "adapters/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace kalde2 {
namespace {

/// Acts on the modal window that opens next.
template <typename Window, typename Act>
void OnNext(Act act) {
  QTimer::singleShot(0, qApp, [act] {
    auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
    ASSERT_NE(window, nullptr);
    act(*window);
  });
}

TEST(QtMessageBoxesTest, ShowPlainTextUnderTheGivenTitle) {
  QWidget window;
  QtMessageBoxes boxes;
  boxes.SetParent(&window);
  OnNext<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(box.text(), QString::fromUtf16(u"<b>Ger\u00e4t \u017c</b>\r\n second"));
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.windowTitle(), "Connect");
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  boxes.Show("<b>Ger\xC3\xA4t \xC5\xBC</b>\r\n second", BoxIcon::kCritical, "Connect");
  OnNext<QMessageBox>([](QMessageBox& box) {
    QFont bold = box.font();
    bold.setBold(true);
    EXPECT_GT(box.width(), QFontMetrics(bold).horizontalAdvance(box.windowTitle()) + 100);
    box.reject();
  });
  boxes.Show("No", BoxIcon::kCritical, "Error opening port - choose another port");
  for (const auto& [key, confirmed] : {std::pair{Qt::Key_Escape, false}, {Qt::Key_Return, true}}) {
    OnNext<QMessageBox>([key = key](QMessageBox& box) {
      EXPECT_EQ(box.windowTitle(), "KALDE2 Control Panel");
      QTest::keyClick(&box, key);
    });
    EXPECT_EQ(boxes.Confirm("Store?", ""), confirmed);
  }
}

TEST(QtFileDialogsTest, OverwriteWithoutAsking) {
  QtFileDialogs dialogs;
  OnNext<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_TRUE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    dialog.reject();
  });
  EXPECT_EQ(dialogs.AskSaveName({"Save", "Text file (*.txt)", "*.txt", ".txt"}), std::nullopt);
}

}  // namespace
}  // namespace kalde2
