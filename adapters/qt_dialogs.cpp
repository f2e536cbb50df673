#include "adapters/qt_dialogs.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <filesystem>

#include "controls/title_width.h"
#include "files/text_file.h"
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

/// @return true where saving would bring a file about. Tried without creating or changing anything.
bool CanBeSaved(const std::string& path) {
  const QFileInfo file(QFile::decodeName(path.c_str()));
  const QFileInfo folder(file.absolutePath());
  constexpr auto kWithoutChange =
      QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly;
  if (file.exists()) {
    if (!file.isFile()) return false;
    if (QFile(file.filePath()).open(kWithoutChange)) return true;
    // It would be replaced, where others may not keep theirs from that.
    std::error_code error;
    const auto rights = std::filesystem::status(folder.filesystemFilePath(), error).permissions();
    if ((rights & std::filesystem::perms::sticky_bit) != std::filesystem::perms::none) return false;
  }
  return folder.isDir() && folder.isWritable() && folder.isExecutable();
}

/// A file dialog that stays open, and says why, as long as the chosen file cannot be used.
class CheckedFileDialog : public QFileDialog {
 public:
  CheckedFileDialog(QWidget* parent, const FileDialogSetup& setup, AcceptMode mode)
      // The label names the pattern already, which is the form that the dialog takes a filter in.
      : QFileDialog(parent, FromUtf8(setup.title), QCoreApplication::applicationDirPath(),
                    FromUtf8(setup.filter_label)) {
    setAcceptMode(mode);
    setOption(DontConfirmOverwrite);
    setDefaultSuffix(FromUtf8(setup.default_extension));
  }

  /// The chosen path, in the file system's encoding; nullopt when the operator cancels.
  std::optional<std::string> Ask() {
    while (exec() == Accepted && !selectedFiles().isEmpty()) {
      const std::string path = Chosen();
      const QString problem = ProblemWith(path);
      if (problem.isEmpty()) return path;
      // A dialog of the desktop's own has closed before it could be asked to stay.
      RunBox(this, problem.toStdString(), QMessageBox::Warning, {}, QMessageBox::Ok);
    }
    return std::nullopt;
  }

 protected:
  void done(int result) override {
    const bool can_stay = layout() != nullptr;
    const QString problem =
        result == Accepted && can_stay && !selectedFiles().isEmpty() ? ProblemWith(Chosen()) : "";
    if (problem.isEmpty()) {
      QFileDialog::done(result);
    } else {
      Say(problem);
    }
  }

 private:
  [[nodiscard]] std::string Chosen() const { return ToPath(selectedFiles().constFirst()); }

  [[nodiscard]] QString ProblemWith(const std::string& path) const {
    const QString name = FromUtf8(ShownFileName(path));
    if (acceptMode() == AcceptSave) {
      if (CanBeSaved(path)) return {};
      return QStringLiteral("\"%1\" cannot be written there: choose another folder.").arg(name);
    }
    if (OpenForReading(path).is_open()) return {};
    return QStringLiteral("\"%1\" cannot be read: choose another file.").arg(name);
  }

  void Say(const QString& problem) {
    if (lbl_problem_ == nullptr) {
      lbl_problem_ = new QLabel(this);
      lbl_problem_->setObjectName(QStringLiteral("lbl_problem"));
      lbl_problem_->setTextFormat(Qt::PlainText);
      lbl_problem_->setWordWrap(true);
      auto* const grid = static_cast<QGridLayout*>(layout());
      grid->addWidget(lbl_problem_, grid->rowCount(), 0, 1, -1);
    }
    lbl_problem_->setText(problem);
    lbl_problem_->show();
  }

  QLabel* lbl_problem_ = nullptr;
};

}  // namespace

void QtMessageBoxes::Show(std::string_view prompt, BoxIcon icon, std::string_view title) {
  RunBox(parent_, prompt, IconFor(icon), title, QMessageBox::Ok);
}

bool QtMessageBoxes::Confirm(std::string_view prompt, std::string_view title) {
  return RunBox(parent_, prompt, QMessageBox::NoIcon, title,
                QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

std::optional<std::string> QtFileDialogs::AskOpenName(const FileDialogSetup& setup) {
  return CheckedFileDialog(parent_, setup, QFileDialog::AcceptOpen).Ask();
}

std::optional<std::string> QtFileDialogs::AskSaveName(const FileDialogSetup& setup) {
  return CheckedFileDialog(parent_, setup, QFileDialog::AcceptSave).Ask();
}

}  // namespace kalde2
