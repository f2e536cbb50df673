#include "adapters/port_numbers.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <utility>

#include "adapters/end_signals.h"
#include "adapters/qt_settings_store.h"

namespace kalde2 {
namespace {

TEST(PortNumbersTest, NumbersDevicesByKindAndThenByNumber) {
  const QStringList devices = {"/dev/ttyUSB10", "/dev/ttyACM0", "/dev/ttyAMA0", "/dev/ttyS1",
                               "/dev/ttySAC1",  "/dev/ttyUSB9", "/dev/ttyS0",   "/dev/rfcomm0",
                               "/dev/ttyUSB9",  "/dev/ttyS10",  "/dev/ttyS2",   "/dev/ttyAMA0p10",
                               "/dev/ttyAMA0p2"};
  const NumberedPorts expected = {
      {1, "/dev/ttyS0"},   {2, "/dev/ttyS1"},      {3, "/dev/ttyS2"},       {4, "/dev/ttyS10"},
      {5, "/dev/ttyUSB9"}, {6, "/dev/ttyUSB10"},   {7, "/dev/ttyACM0"},     {8, "/dev/rfcomm0"},
      {9, "/dev/ttyAMA0"}, {10, "/dev/ttyAMA0p2"}, {11, "/dev/ttyAMA0p10"}, {12, "/dev/ttySAC1"}};
  EXPECT_EQ(NumberedBySystem(devices), expected);
}

TEST(PortNumbersTest, LinksWinAndDanglingOnesStandForNone) {
  QTemporaryDir folder;
  for (const char* name : {"1", "40", "spare"}) QFile::link("/dev/null", folder.filePath(name));
  QFile::link("/dev/no-such-device", folder.filePath("2"));
  const NumberedPorts by_system = {{1, "/dev/a"}, {2, "/dev/b"}, {3, "/dev/c"}};
  const NumberedPorts expected = {{1, "/dev/null"}, {3, "/dev/c"}, {40, "/dev/null"}};
  EXPECT_EQ(WithLinks(by_system, folder.path()), expected);
  EXPECT_EQ(WithLinks(by_system, folder.filePath("missing")), by_system);

  const QtPortDirectory directory(folder.path());
  EXPECT_EQ(directory.DeviceFor(2), "");
  EXPECT_EQ(directory.PresentPorts().back().number, 40);
  EXPECT_EQ(directory.PresentPorts().back().device, "/dev/null");
}

TEST(PortNumbersTest, TellsChangesOfLinksAlsoWhenTheirFolderComesBack) {
  QTemporaryDir folder;
  const QString links = folder.filePath("KALDE2/ports");
  QtPortDirectory directory(links);
  int told = 0;
  directory.SetListener([&told] { ++told; });
  const auto changed = [&told] {
    return QTest::qWaitFor([&told] { return std::exchange(told, 0) > 0; }, 2000);
  };
  QFile::link("/dev/null", folder.filePath("unrelated"));
  QTest::qWait(200);
  EXPECT_EQ(told, 0);
  for (int round = 0; round < 2; ++round) {
    QDir().mkpath(links);
    ASSERT_TRUE(changed());
    QTest::qWait(200);
    QFile::link("/dev/null", links + "/52");
    ASSERT_TRUE(changed());
    EXPECT_EQ(directory.DeviceFor(52), "/dev/null");
    ASSERT_TRUE(QDir(folder.filePath("KALDE2")).removeRecursively());
    ASSERT_TRUE(changed());
    EXPECT_EQ(directory.DeviceFor(52), "");
    QTest::qWait(200);
  }
}

TEST(QtSettingsStoreTest, OnlyTheUsersOwnStoreAnswers) {
  const QTemporaryDir user;
  const QTemporaryDir system;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, user.path());
  QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, system.path());
  const auto set = [](QSettings&& settings) { settings.setValue("Tessaly/Serial Port", "9"); };
  set({QSettings::SystemScope, "KALDE2", "KALDE2"});
  set({QSettings::UserScope, "KALDE2"});
  QtSettingsStore store;
  EXPECT_EQ(store.GetSetting("Tessaly", "Serial Port", "1"), "1");
  store.SaveSetting("Tessaly", "Serial Port", "");
  EXPECT_EQ(QtSettingsStore().GetSetting("Tessaly", "Serial Port", "1"), "");
}

TEST(EndSignalsTest, TellOfEachThatIsNotIgnoredWhileTheyLast) {
  const auto handler_of = [](int number) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    return action.sa_handler;
  };
  for (const int number : {SIGTERM, SIGINT}) signal(number, SIG_DFL);
  signal(SIGHUP, SIG_IGN);
  {
    const EndSignals signals_to_end;
    const QSignalSpy raised(&signals_to_end, &EndSignals::Raised);
    for (const auto& [number, count] : {std::pair{SIGTERM, 1}, {SIGINT, 2}, {SIGHUP, 2}}) {
      errno = 7;
      raise(number);
      EXPECT_EQ(errno, 7);
      QTest::qWait(20);
      EXPECT_EQ(raised.count(), count);
    }
  }
  EXPECT_EQ(handler_of(SIGTERM), SIG_DFL);
  EXPECT_EQ(handler_of(SIGHUP), SIG_IGN);
  signal(SIGHUP, SIG_DFL);
}

}  // namespace
}  // namespace kalde2
