#include "adapters/qt_dialogs.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>

#include "controls/title_width.h"
#include "panel/app_info.h"

namespace kalde2 {
namespace {

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString TitleOr(std::string_view title) {
  return title.empty() ? QString::fromLatin1(AppInfo::kTitle) : FromUtf8(title);
}

QMessageBox::Icon IconFor(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kExclamation:
      return QMessageBox::Warning;
    case BoxIcon::kCritical:
      return QMessageBox::Critical;
    case BoxIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

/// A box is as wide as its text; the title, with its icon and buttons, is to be read, too.
void WidenForTitle(QMessageBox& box) {
  auto* const grid = qobject_cast<QGridLayout*>(box.layout());
  if (grid == nullptr) return;
  grid->addItem(new QSpacerItem(WidthForTitle(box), 0), grid->rowCount(), 0, 1,
                grid->columnCount());
}

/// @return the button pressed; Esc stands for the last of `buttons`
int RunBox(QWidget* parent, std::string_view prompt, QMessageBox::Icon icon, std::string_view title,
           QMessageBox::StandardButtons buttons) {
  QMessageBox box(parent);
  box.setIcon(icon);
  box.setWindowTitle(TitleOr(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(FromUtf8(prompt));
  box.setStandardButtons(buttons);
  box.setDefaultButton(QMessageBox::Ok);
  WidenForTitle(box);
  return box.exec();
}

/// Path without the blanks around it, as the file system spells it.
std::string ToPath(const QString& chosen) {
  const std::string path = QFile::encodeName(chosen).toStdString();
  const std::size_t first = path.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return path.substr(first, path.find_last_not_of(' ') - first + 1);
}

std::optional<std::string> AskName(QWidget* parent, const FileDialogSetup& setup,
                                   QFileDialog::AcceptMode mode) {
  // The label names the pattern already, which is the form that the dialog takes a filter in.
  QFileDialog dialog(parent, FromUtf8(setup.title), QCoreApplication::applicationDirPath(),
                     FromUtf8(setup.filter_label));
  dialog.setAcceptMode(mode);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setDefaultSuffix(FromUtf8(setup.default_extension));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return ToPath(dialog.selectedFiles().constFirst());
}

}  // namespace

void QtMessageBoxes::Show(std::string_view prompt, BoxIcon icon, std::string_view title) {
  RunBox(parent_, prompt, IconFor(icon), title, QMessageBox::Ok);
}

bool QtMessageBoxes::Confirm(std::string_view prompt, std::string_view title) {
  return RunBox(parent_, prompt, QMessageBox::NoIcon, title,
                QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

std::optional<std::string> QtFileDialogs::AskOpenName(const FileDialogSetup& setup) {
  return AskName(parent_, setup, QFileDialog::AcceptOpen);
}

std::optional<std::string> QtFileDialogs::AskSaveName(const FileDialogSetup& setup) {
  return AskName(parent_, setup, QFileDialog::AcceptSave);
}

}  // namespace kalde2
