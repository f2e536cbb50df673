#include "bench/unit_process.h"

#include <QTime>
#include <stdexcept>

namespace kalde2::bench {
namespace {
constexpr int kPatience = 5000;  // milliseconds
}

UnitProcess::UnitProcess(const QStringList& options) {
  process_.setProcessChannelMode(QProcess::MergedChannels);
  process_.start(QStringLiteral(KALDE2_UNIT), options);
  const bool says = process_.waitForStarted(kPatience) && process_.waitForReadyRead(kPatience);
  const QByteArray line = says ? process_.readLine().trimmed() : QByteArray("it does not start");
  if (!line.startsWith("ready:")) throw std::runtime_error("the unit says: " + line.toStdString());
  device_ = line.mid(line.lastIndexOf(' ') + 1).toStdString();
}

UnitProcess::~UnitProcess() {
  process_.terminate();
  if (!process_.waitForFinished(kPatience)) process_.kill();
}

void UnitProcess::Command(const QByteArray& line) {
  process_.write(line + '\n');
  process_.waitForBytesWritten(kPatience);
}

std::optional<int> UnitProcess::LastRequest(const QByteArray& text) {
  constexpr qsizetype kTimeOfDay = 12;  // "HH:MM:SS.mmm"
  while (process_.waitForReadyRead(100)) output_ += process_.readAll();
  output_ += process_.readAll();
  const qsizetype found = output_.lastIndexOf(text);
  if (found < 0) return std::nullopt;
  const qsizetype start = output_.lastIndexOf('\n', found) + 1;
  const QString time = QString::fromLatin1(output_.mid(start, kTimeOfDay));
  return QTime::fromString(time, QStringLiteral("HH:mm:ss.zzz")).msecsSinceStartOfDay();
}

}  // namespace kalde2::bench
