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
    EXPECT_EQ(box.windowTitle(), "Connect");
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  boxes.Show("<b>50 \xb0</b>\r\n second", BoxIcon::kCritical, "Connect");
  for (const auto& [key, confirmed] : {std::pair{Qt::Key_Escape, false}, {Qt::Key_Return, true}}) {
    OnNext<QMessageBox>([key = key](QMessageBox& box) {
      EXPECT_EQ(box.windowTitle(), "Panel");
      QTest::keyClick(&box, key);
    });
    EXPECT_EQ(boxes.Confirm("Store?", ""), confirmed);
  }
}

TEST(QtFileDialogsTest, TakeAnyNameAndNeverAsk) {
  QTemporaryDir folder;
  ASSERT_TRUE(QFile(folder.filePath("old.txt")).open(QIODevice::WriteOnly));
  const FileDialogSetup save{"Save", "Text file (*.txt)", "*.txt", ".txt"};
  QtFileDialogs dialogs;
  const auto choose = [&](const char* name) {
    OnNext<QFileDialog>([path = folder.filePath(name)](QFileDialog& dialog) {
      dialog.selectFile(path);
      static_cast<QDialog&>(dialog).accept();
    });
    return folder.filePath(name).toStdString();
  };
  OnNext<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Save");
    EXPECT_EQ(dialog.nameFilters(), QStringList("Text file (*.txt)"));
    EXPECT_EQ(dialog.directory().absolutePath(), QCoreApplication::applicationDirPath());
    dialog.reject();
  });
  EXPECT_EQ(dialogs.AskSaveName(save), std::nullopt);
  std::string path = choose("old.txt");
  EXPECT_EQ(dialogs.AskSaveName(save), path);
  path = choose("new");
  EXPECT_EQ(dialogs.AskSaveName(save), path + ".txt");
  path = choose("missing");
  EXPECT_EQ(dialogs.AskOpenName({"Open", "Text (*.txt)", "*.txt", ""}), path);
}

}  // namespace
}  // namespace kalde2
