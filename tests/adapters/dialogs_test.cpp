#include "adapters/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <functional>

#include "tests/support/ordinary_user.h"
#include "tests/support/temp_folder.h"

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
    OnNext<QMessageBox>([pressed = key](QMessageBox& box) {
      EXPECT_EQ(box.windowTitle(), "KALDE2 Control Panel");
      EXPECT_TRUE(box.defaultButton() == box.button(QMessageBox::Ok));
      QTest::keyClick(&box, pressed);
    });
    EXPECT_EQ(boxes.Confirm("Store?", ""), confirmed);
  }
}

TEST(QtFileDialogsTest, OverwriteWithoutAsking) {
  QtFileDialogs dialogs;
  OnNext<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_TRUE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    EXPECT_EQ(dialog.directory(), QDir(QCoreApplication::applicationDirPath()));
    dialog.reject();
  });
  EXPECT_EQ(dialogs.AskSaveName({"Save", "Text file (*.txt)", "*.txt", ".txt"}), std::nullopt);
}

/// What the dialog says of a file name, or that it took it.
std::string Says(const std::function<std::optional<std::string>(QtFileDialogs&)>& ask,
                 const QString& name) {
  std::string said;
  QtFileDialogs dialogs;
  OnNext<QFileDialog>([&](QFileDialog& dialog) {
    auto* const field = dialog.findChild<QLineEdit*>("fileNameEdit");
    field->setText(name);
    QTest::keyClick(field, Qt::Key_Return);
    if (!dialog.isVisible()) return;
    const auto* const problem = dialog.findChild<QLabel*>("lbl_problem");
    EXPECT_TRUE(problem != nullptr && problem->isVisible());
    said = problem != nullptr ? problem->text().toStdString() : "";
    dialog.reject();
  });
  const auto chosen = ask(dialogs);
  return chosen ? "took " + std::filesystem::path(*chosen).filename().string() : said;
}

TEST(QtFileDialogsTest, StayOpenForAFileThatCannotBeUsedAndTouchNothing) {
  namespace fs = std::filesystem;
  const TempFolder folder;
  fs::create_directory("closed");
  for (const char* file : {"mine.txt", "kept.txt", "closed/old.txt", "closed/open.txt"}) {
    WriteText(file, "as it was");
  }
  fs::permissions("kept.txt", fs::perms::none);
  fs::permissions("closed/old.txt", fs::perms{0444});
  fs::permissions("closed/open.txt", fs::perms{0222});
  fs::permissions("closed", fs::perms{0555});
  fs::permissions(".", fs::perms{0777});
  const auto load = [](QtFileDialogs& dialogs) {
    return dialogs.AskOpenName({"Open", "K2 (*.txt)", "*.txt", ""});
  };
  const auto save = [](QtFileDialogs& dialogs) {
    return dialogs.AskSaveName({"Save", "K2 file (*.txt)", "*.txt", ".txt"});
  };
  const auto unreadable = [](const std::string& name) {
    return '"' + name + "\" cannot be read: choose another file.";
  };
  const auto unwritable = [](const std::string& name) {
    return '"' + name + "\" cannot be written there: choose another folder.";
  };
  const auto path = [](const char* name) { return QDir::current().filePath(name); };
  const auto check_what_anyone_sees = [&] {
    EXPECT_EQ(Says(load, path("mine.txt")), "took mine.txt");
    EXPECT_EQ(Says(load, path("none.txt")), unreadable("none.txt"));
    EXPECT_EQ(Says(save, path("mine")), "took mine.txt");
    EXPECT_EQ(Says(save, path("new")), "took new.txt");
    EXPECT_EQ(Says(save, path("kept.txt")), "took kept.txt") << "it is replaced";
    EXPECT_EQ(Says(save, path("none/new")), unwritable("new.txt"));
    EXPECT_EQ(Says(save, path("mine.txt/new")), unwritable("new.txt"));
    EXPECT_EQ(Says(load, "/dev/null"), unreadable("null"));
  };
  check_what_anyone_sees();
  {
    const OrdinaryUser user;
    check_what_anyone_sees();
    EXPECT_EQ(Says(load, path("kept.txt")), unreadable("kept.txt"));
    EXPECT_EQ(Says(save, path("closed/new")), unwritable("new.txt"));
    EXPECT_EQ(Says(save, path("closed/old")), unwritable("old.txt"));
    EXPECT_EQ(Says(save, path("closed/open")), "took open.txt");
  }
  if (getuid() == 0) {
    EXPECT_EQ(Says(load, path("kept.txt")), "took kept.txt");
    EXPECT_EQ(Says(save, path("closed/new")), "took new.txt");
  }
  fs::permissions("closed", fs::perms::owner_all);
  EXPECT_FALSE(fs::exists("new.txt") || fs::exists("closed/new.txt") || fs::exists("none"));
  for (const char* file : {"mine.txt", "closed/old.txt"}) EXPECT_EQ(ReadText(file), "as it was");
}

}  // namespace
}  // namespace kalde2
