#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <stdexcept>
#include <string>

namespace kalde2 {

/// kalde2-unit as a process of its own on port 1. Ends with the scope, and with it the link.
class UnitProcess {
 public:
  /// Starts the unit and waits until it is ready. @throws std::runtime_error, as the others do
  explicit UnitProcess(const QStringList& options = {}) {
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(QStringLiteral(KALDE2_UNIT), options);
    if (!Says("ready: port 1") || !Says("\n")) {
      throw std::runtime_error("the unit says: " + output_.toStdString());
    }
    const QByteArray line = output_.left(seen_).trimmed();
    device_ = line.mid(line.lastIndexOf(' ') + 1).toStdString();
  }
  ~UnitProcess() {
    process_.terminate();
    if (!process_.waitForFinished(kPatience)) process_.kill();
  }
  UnitProcess(const UnitProcess&) = delete;
  UnitProcess& operator=(const UnitProcess&) = delete;

  /// The link of port 1, which is there while its line is.
  [[nodiscard]] static QString Link() {
    return qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/KALDE2/ports/1");
  }

  /// The device that the panel opens.
  [[nodiscard]] const std::string& Device() const { return device_; }

  [[nodiscard]] QProcess& Process() { return process_; }

  /// A line typed at the unit's front panel.
  void Command(const QByteArray& line) {
    process_.write(line + '\n');
    process_.waitForBytesWritten(kPatience);
  }

  /// Waits for a text behind the one that was waited for last. The panel stands still meanwhile.
  [[nodiscard]] bool Says(const QByteArray& text) {
    output_ += process_.readAll();
    qsizetype found = -1;
    while ((found = output_.indexOf(text, seen_)) < 0) {
      if (!process_.waitForReadyRead(kPatience)) return false;
      output_ += process_.readAll();
    }
    seen_ = found + text.size();
    return true;
  }

  /// The value that the unit holds.
  [[nodiscard]] int Value(int address) {
    // Any other word is answered with itself, which tells the answer's line from those of frames.
    Command("get " + QByteArray::number(address) + " 16\n:");
    Require(Says("\nno command \":\""));
    return output_.left(output_.lastIndexOf('\n', seen_ - 1)).split('\n').last().toInt();
  }

  /// The requests that have come since the last call, one a line as the unit shows them; "WRONG"
  /// tells of one that no panel should send.
  [[nodiscard]] QStringList Requests() {
    Command(":");
    Require(Says("no command \":\""));
    QStringList requests;
    for (const QByteArray& line : output_.left(seen_).split('\n')) {
      const qsizetype mark = line.indexOf(" <- ");
      if (mark >= 0) requests << QString::fromLatin1(line.mid(mark + 4));
    }
    output_.remove(0, seen_);
    seen_ = 0;
    return requests;
  }

 private:
  static constexpr int kPatience = 5000;  // milliseconds

  static void Require(bool answered) {
    if (!answered) throw std::runtime_error("the unit does not answer at its front panel");
  }

  QProcess process_;
  std::string device_;
  QByteArray output_;
  qsizetype seen_ = 0;
};

}  // namespace kalde2
