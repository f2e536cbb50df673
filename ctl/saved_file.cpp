#include "ctl/saved_file.h"

#include <QFileInfo>
#include <QSaveFile>
#include <memory>

#include "ctl/exit_status.h"

namespace kalde2 {
namespace {

[[noreturn]] void Fail(const std::string& path, const QFileDevice& file) {
  throw CommandFault(ExitStatus::kUsage, path + ": " + file.errorString().toStdString() +
                                             "; no file was written or replaced");
}

void Write(QFileDevice& file, const std::string& path, std::string_view text) {
  if (!file.open(QIODevice::WriteOnly)) Fail(path, file);
  const auto size = static_cast<qint64>(text.size());
  // Where only a part could be written, the second try tells why.
  if (file.write(text.data(), size) != size || !(file.flush() || file.flush())) Fail(path, file);
}

}  // namespace

void SaveWhole(const std::string& path, std::string_view text) {
  const QString name = QString::fromStdString(path);
  if (const QFileInfo info(name); info.exists() && !info.isFile()) {
    QFile device(name);
    Write(device, path, text);
    return;
  }
  QSaveFile file(name);
  Write(file, path, text);
  if (!file.commit()) Fail(path, file);
}

}  // namespace kalde2
