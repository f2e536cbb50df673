#include "adapters/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
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
  window.setWindowTitle("Panel");
  QtMessageBoxes boxes;
  boxes.SetParent(&window);
  OnNext<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(box.text(), QString::fromUtf8("<b>50 \u00b0</b>\r\n second"));
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.icon(), QMessageBox::Critical);
    EXPECT_EQ(box.windowTitle(), "Connect");
    EXPECT_EQ(box.parentWidget(), &window);
    EXPECT_TRUE(box.isModal());
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  boxes.Show("<b>50 \xb0</b>\r\n second", BoxIcon::kCritical, "Connect");
  OnNext<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    EXPECT_EQ(box.windowTitle(), "Panel");
    QTest::keyClick(&box, Qt::Key_Return);
  });
  boxes.Show("text", BoxIcon::kExclamation, "");
}

TEST(QtMessageBoxesTest, ConfirmOnlyOnOk) {
  QtMessageBoxes boxes;
  OnNext<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.icon(), QMessageBox::NoIcon);
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  EXPECT_FALSE(boxes.Confirm("Store?", "Store"));
  OnNext<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
  EXPECT_TRUE(boxes.Confirm("Store?", "Store"));
}

TEST(QtFileDialogsTest, TakeAnyNameAndNeverAsk) {
  QTemporaryDir folder;
  const QString existing = folder.filePath("old.txt");
  ASSERT_TRUE(QFile(existing).open(QIODevice::WriteOnly));
  const FileDialogSetup save{"Save", "Text file (*.txt)", "*.txt", ".txt"};
  const FileDialogSetup open{"Open", "Text (*.txt)", "*.txt", ""};
  const auto choose = [](const QString& name) {
    return [name](QFileDialog& dialog) {
      dialog.selectFile(name);
      static_cast<QDialog&>(dialog).accept();
    };
  };
  QtFileDialogs dialogs;
  OnNext<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Save");
    EXPECT_EQ(dialog.nameFilters(), QStringList("Text file (*.txt)"));
    EXPECT_EQ(dialog.directory().absolutePath(), QCoreApplication::applicationDirPath());
    dialog.reject();
  });
  EXPECT_EQ(dialogs.AskSaveName(save), std::nullopt);
  OnNext<QFileDialog>(choose(existing));
  EXPECT_EQ(dialogs.AskSaveName(save), existing.toStdString());
  OnNext<QFileDialog>(choose(folder.filePath("new")));
  EXPECT_EQ(dialogs.AskSaveName(save), folder.filePath("new.txt").toStdString());
  OnNext<QFileDialog>(choose(folder.filePath("missing")));
  EXPECT_EQ(dialogs.AskOpenName(open), folder.filePath("missing").toStdString());
}

}  // namespace
}  // namespace kalde2
