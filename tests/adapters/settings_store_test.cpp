#include "adapters/qt_settings_store.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include "tests/support/file_faults.h"

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
  EXPECT_EQ(QtSettingsStore().GetSetting("Other", "Serial Port", "none"), "none");
}

TEST(QtSettingsStoreTest, WhatCannotBeStoredIsGivenUpInSilenceAndAtOnce) {
  QTemporaryDir folder;
  QFile file(folder.filePath("file"));
  ASSERT_TRUE(file.open(QFile::WriteOnly));
  const auto store_in = [](const QString& path) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    const QDeadlineTimer at_once(5000);
    QtSettingsStore().SaveSetting("Tessaly", "Serial Port", "7");
    EXPECT_FALSE(at_once.hasExpired());
  };
  const auto stored = [] { return QtSettingsStore().GetSetting("Tessaly", "Serial Port", "none"); };
  store_in(file.fileName());  // a file in place of the folder
  const QString path = folder.filePath("full");
  {
    const FullDisk disk(0);
    store_in(path);
  }
  store_in(path);
  EXPECT_EQ(stored(), "7");
  const UnwritableFolder unwritable(folder.path().toStdString());
  store_in(folder.filePath("unwritable"));
  EXPECT_EQ(stored(), "none");
}

}  // namespace
}  // namespace kalde2
