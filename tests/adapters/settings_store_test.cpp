#include "adapters/qt_settings_store.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>

namespace kalde2 {
namespace {

TEST(QtSettingsStoreTest, KeepsTextsAndTellsAbsentFromEmpty) {
  QTemporaryDir folder;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
  EXPECT_EQ(QtSettingsStore().GetSetting("Tessaly", "Serial Port", "1"), "1");
  for (const QString text : {"", "12", "1:2", "1,2", " 7 ", "@x"}) {
    QtSettingsStore().SaveSetting("Tessaly", "Serial Port", text);
    EXPECT_EQ(QtSettingsStore().GetSetting("Tessaly", "Serial Port", "1"), text);
  }
  EXPECT_EQ(QtSettingsStore().GetSetting("Tessaly", "Serial Parameters", "57600"), "57600");
  EXPECT_EQ(QtSettingsStore().GetSetting("Other", "Serial Port", "none"), "none");
}

}  // namespace
}  // namespace kalde2
