#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <stdexcept>

namespace kalde2 {

/// A program beside the one under test that tells on its standard error when it is ready. Ends with
/// the scope.
class HelperProcess {
 public:
  /// Starts it and waits for the line with `ready` in it. @throws std::runtime_error
  HelperProcess(const QString& program, const QStringList& arguments, const QByteArray& ready) {
    process_.setReadChannel(QProcess::StandardError);
    process_.setStandardOutputFile(QProcess::nullDevice());
    process_.start(program, arguments);
    while (process_.canReadLine() || process_.waitForReadyRead(kPatience)) {
      said_ = process_.readLine();
      if (said_.contains(ready)) return;
    }
    throw std::runtime_error(program.toStdString() + " says: " + said_.toStdString());
  }
  ~HelperProcess() {
    process_.terminate();
    if (!process_.waitForFinished(kPatience)) process_.kill();
  }
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

  /// The line that told it was ready.
  [[nodiscard]] const QByteArray& Said() const { return said_; }

 private:
  static constexpr int kPatience = 5000;  // milliseconds

  QProcess process_;
  QByteArray said_;
};

}  // namespace kalde2
