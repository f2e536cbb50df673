#include "bench/real_panel.h"

#include <QEventLoop>
#include <QTimer>

namespace kalde2::bench {

void RealPanel::Open(int baud) {
  Form().cbo_baud->setCurrentText(QString::number(baud));
  Form().Cmd_openclose->click();
  if (!window_.UnitSession().UnitConnected()) throw std::runtime_error("the port did not open");
}

void RealPanel::Close() {
  Form().Cmd_openclose->click();
  if (counted_.PortOpen()) throw std::runtime_error("the port did not close");
}

void RealPanel::Serve(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace kalde2::bench
