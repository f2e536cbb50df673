#include "adapters/qt_settings_store.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>

namespace kalde2 {
namespace {

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

}  // namespace
}  // namespace kalde2
