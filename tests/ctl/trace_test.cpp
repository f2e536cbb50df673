// A session that the panel has had through a trace, replayed; and a unit behind a network.

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QStandardPaths>
#include <csignal>

#include "adapters/serial_line.h"
#include "tests/support/ctl_process.h"
#include "tests/support/e2e_fixture.h"
#include "tests/support/helper_process.h"

namespace kalde2 {
namespace {

class Trace : public EndToEnd {
 protected:
  /// Starts a panel on a port, opens it and reads all values.
  void ReadAllFrom(const char* port) {
    StartPanel();
    Form().txt_port->setText(port);
    Press("Cmd_openclose");
    ASSERT_TRUE(panel->port.PortOpen());
    Choose("mnu_clone_read");
    ASSERT_TRUE(Becomes([this] { return !Form().tmr_updatelstCommands->isActive(); }));
  }

  /// All that the window shows of the unit.
  [[nodiscard]] QStringList Shown() const {
    QStringList seen{Window().windowTitle(), Form().lbl_comstate->text(),
                     Form().lbl_status->text()};
    const QListWidget& list = *Form().lst_commands;
    for (int i = 0; i < list.count(); ++i) seen << list.item(i)->text();
    for (const auto* const slider : Window().findChildren<QAbstractSlider*>()) {
      seen << QString("%1 %2 %3")
                  .arg(slider->objectName())
                  .arg(slider->isEnabled())
                  .arg(slider->value());
    }
    for (const auto* const check : Window().findChildren<QCheckBox*>()) {
      seen << QString("%1 %2").arg(check->objectName()).arg(check->isChecked());
    }
    for (const auto* const combo : Window().findChildren<QComboBox*>()) {
      seen << combo->objectName() << combo->currentText();
      for (int i = 0; i < combo->count(); ++i) seen << combo->itemText(i);
    }
    return seen;
  }
};

TEST_F(Trace, OfASessionGivesTheSameWindowWhenItIsReplayed) {
  StartUnit({"--sources", "16,48"});
  unit->Command("set 178 77");
  EXPECT_EQ(unit->Value(178), 77);
  CtlProcess trace("kalde2ctl -p 1 -b 57600 trace --as 2 --record session");
  ASSERT_TRUE(trace.Says("port 2 is"));
  ReadAllFrom("2");
  const QStringList seen = Shown();
  EXPECT_FALSE(seen.filter("77").isEmpty());
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
  EXPECT_TRUE(trace.Says(" [178] is 77\n"));
  Press("Cmd_openclose");
  kill(trace.Id(), SIGINT);
  EXPECT_EQ(trace.End().status, 130);
  EXPECT_FALSE(QFileInfo("KALDE2/ports/2").isSymLink());
  EXPECT_FALSE(IsLocked(QString::fromStdString(unit->Device())));

  StartUnit({"--replay", QFileInfo("session").absoluteFilePath()});
  ReadAllFrom("1");
  EXPECT_EQ(Shown(), seen);
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
}

TEST_F(Trace, HangsUpWithTheUnitsLine) {
  StartUnit();
  CtlProcess trace("kalde2ctl -p " + QString::fromStdString(unit->Device()) + " trace --as 2");
  ASSERT_TRUE(trace.Says("port 2 is"));
  StartPanel();
  Form().txt_port->setText("2");
  Press("Cmd_openclose");
  ExpectShowsOpen();
  unit->Command("hang-up");
  EXPECT_TRUE(Becomes([this] { return Boxes().join("; ").contains("The serial port was lost"); }));
  ExpectShowsClosed();
  EXPECT_EQ(trace.End().status, 3);
  EXPECT_FALSE(QFileInfo("KALDE2/ports/2").isSymLink());
}

TEST_F(Trace, AUnitBehindASerialServerOnTheNetworkIsAPort) {
  const QString socat = QStandardPaths::findExecutable("socat");
  if (socat.isEmpty()) GTEST_SKIP() << "socat is missing";
  StartUnit();
  const QString device = QString::fromStdString(unit->Device());
  HelperProcess server(socat, {"-d", "-d", "TCP-LISTEN:0,bind=127.0.0.1", device + ",raw,echo=0"},
                       "listening on");
  const QByteArray address = server.Said().trimmed().split(' ').last();
  const QString link = QDir::current().absoluteFilePath("KALDE2/ports/5");
  HelperProcess client(
      socat, {"-d", "-d", "PTY,raw,echo=0,link=" + link, "TCP:" + QString::fromLatin1(address)},
      "starting data transfer");
  EXPECT_EQ(RunCtl("kalde2ctl -p 5 -b 57600 get 'Lock mode'").status, 0);
  ReadAllFrom("5");
  ExpectShowsOpen();
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
}

}  // namespace
}  // namespace kalde2
