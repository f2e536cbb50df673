#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

int main(int argc, char* argv[]) {
  // Ports, settings and files of the tests are their own, here and in the processes they start.
  const QTemporaryDir folder;
  if (!folder.isValid() || !QDir::setCurrent(folder.path())) return 1;
  qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
  QCoreApplication application(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
