#pragma once

#include <QByteArray>
#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <csignal>
#include <stdexcept>
#include <string>

namespace kalde2 {

/// How a run of kalde2ctl ended, and what it said.
struct CtlEnd {
  int status = -1;  ///< -1 where it did not end by itself
  std::string out;
  std::string err;
};

/// kalde2ctl as a process of its own. Waiting for it serves events, so that what a unit beside it
/// says is taken, too.
class CtlProcess {
 public:
  /// @param line as it is typed in a shell. A command alone takes the shell's place, and its
  ///     signals; a pipe ends with the status of the last one in it that fails.
  explicit CtlProcess(const QString& line) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString folder = QFileInfo(QStringLiteral(KALDE2_CTL)).path();
    environment.insert("PATH", folder + ':' + environment.value("PATH"));
    process_.setProcessEnvironment(environment);
    process_.setChildProcessModifier([] {  // a test in the background is started with some ignored
      for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
    });
    process_.start("bash", {"-o", "pipefail", "-c", line});
    if (!process_.waitForStarted(kPatience)) throw std::runtime_error("bash does not start");
  }
  ~CtlProcess() {
    process_.kill();
    process_.waitForFinished(kPatience);
  }
  CtlProcess(const CtlProcess&) = delete;
  CtlProcess& operator=(const CtlProcess&) = delete;

  [[nodiscard]] pid_t Id() const { return static_cast<pid_t>(process_.processId()); }

  /// Waits for a text among the results, or among what is none.
  [[nodiscard]] bool Says(const QByteArray& text) {
    const auto said = [&] {
      Take();
      return out_.contains(text) || err_.contains(text);
    };
    return QTest::qWaitFor(said, kPatience);
  }

  [[nodiscard]] CtlEnd End() {
    const bool ended =
        QTest::qWaitFor([this] { return process_.state() == QProcess::NotRunning; }, kPatience);
    Take();
    const bool exited = ended && process_.exitStatus() == QProcess::NormalExit;
    return {exited ? process_.exitCode() : -1, out_.toStdString(), err_.toStdString()};
  }

 private:
  static constexpr int kPatience = 20'000;  // milliseconds

  void Take() {
    out_ += process_.readAllStandardOutput();
    err_ += process_.readAllStandardError();
  }

  QProcess process_;
  QByteArray out_;
  QByteArray err_;
};

/// Runs a line to its end.
inline CtlEnd RunCtl(const QString& line) {
  return CtlProcess(line).End();
}

}  // namespace kalde2
