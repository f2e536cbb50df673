// A session that the panel has had through a trace, replayed; and a unit behind a network.

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QStandardPaths>

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
  HelperProcess trace(KALDE2_CTL,
                      {"-p", "1", "-b", "57600", "trace", "--as", "2", "--record", "session"},
                      "port 2 is");
  ReadAllFrom("2");
  const QStringList seen = Shown();
  EXPECT_FALSE(seen.filter("77").isEmpty());
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
  Press("Cmd_openclose");
  EXPECT_EQ(trace.End(), 130);
  EXPECT_FALSE(QFileInfo("KALDE2/ports/2").isSymLink());
  EXPECT_FALSE(QFile::exists("/var/lock/LCK..pts_" +
                             QString::fromStdString(unit->Device()).section('/', -1)));

  StartUnit({"--replay", QFileInfo("session").absoluteFilePath()});
  ReadAllFrom("1");
  EXPECT_EQ(Shown(), seen);
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
}

TEST_F(Trace, HangsUpWithTheUnitsLine) {
  StartUnit();
  HelperProcess trace(KALDE2_CTL,
                      {"-p", QString::fromStdString(unit->Device()), "trace", "--as", "2"},
                      "port 2 is");
  StartPanel();
  Form().txt_port->setText("2");
  Press("Cmd_openclose");
  ExpectShowsOpen();
  unit->Command("hang-up");
  EXPECT_TRUE(Becomes([this] { return Boxes().join("; ").contains("The serial port was lost"); }));
  ExpectShowsClosed();
  EXPECT_EQ(trace.WaitForEnd(), 3);
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
  ReadAllFrom("5");
  ExpectShowsOpen();
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());
}

}  // namespace
}  // namespace kalde2
