#pragma once

#include <QObject>

namespace kalde2 {

/// The signals with which a system asks a program to end: SIGINT, SIGTERM and SIGHUP, each unless
/// the program was started with it ignored (nohup). On Windows there are none. One object in a
/// program.
class EndSignals final : public QObject {
  Q_OBJECT

 public:
  EndSignals();
  ~EndSignals() override;

 signals:
  /// Such a signal has come. Told from the event loop, whatever runs or is open on top of it.
  void Raised();
};

}  // namespace kalde2
