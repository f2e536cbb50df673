#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char* argv[]) {
  // The resolution list of a test must not depend on where it is started.
  const QTemporaryDir folder;
  if (!folder.isValid() || !QDir::setCurrent(folder.path())) return 1;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
