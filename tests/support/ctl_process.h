#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QStringList>
#include <QTimer>
#include <functional>
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
  /// @param before runs in the process before the program, for limits and signals
  explicit CtlProcess(const QStringList& words, const std::function<void()>& before = {}) {
    if (before) process_.setChildProcessModifier(before);
    process_.start(QStringLiteral(KALDE2_CTL), words);
    if (!process_.waitForStarted(kPatience)) throw std::runtime_error("kalde2ctl does not start");
  }
  ~CtlProcess() {
    process_.kill();
    process_.waitForFinished(kPatience);
  }
  CtlProcess(const CtlProcess&) = delete;
  CtlProcess& operator=(const CtlProcess&) = delete;

  [[nodiscard]] pid_t Id() const { return static_cast<pid_t>(process_.processId()); }

  /// Waits for a text among the results.
  [[nodiscard]] bool Says(const QByteArray& text) {
    return Becomes([&] {
      out_ += process_.readAllStandardOutput();
      return out_.contains(text);
    });
  }

  /// The same among what is no result.
  [[nodiscard]] bool Notes(const QByteArray& text) {
    return Becomes([&] {
      err_ += process_.readAllStandardError();
      return err_.contains(text);
    });
  }

  [[nodiscard]] CtlEnd End() {
    const bool ended = Becomes([this] { return process_.state() == QProcess::NotRunning; });
    out_ += process_.readAllStandardOutput();
    err_ += process_.readAllStandardError();
    const bool exited = ended && process_.exitStatus() == QProcess::NormalExit;
    return {exited ? process_.exitCode() : -1, out_.toStdString(), err_.toStdString()};
  }

 private:
  static constexpr int kPatience = 20'000;  // milliseconds

  template <typename Condition>
  [[nodiscard]] static bool Becomes(Condition condition) {
    QDeadlineTimer deadline(kPatience);
    QTimer alarm;
    alarm.start(kPatience);
    while (!condition()) {
      if (deadline.hasExpired()) return false;
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
  }

  QProcess process_;
  QByteArray out_;
  QByteArray err_;
};

/// Runs it to its end.
inline CtlEnd RunCtl(const QStringList& words) {
  return CtlProcess(words).End();
}

}  // namespace kalde2
