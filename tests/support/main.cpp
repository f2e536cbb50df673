#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#ifdef QT_WIDGETS_LIB
#include <QApplication>
#else
#include <QCoreApplication>
#endif

int main(int argc, char* argv[]) {
  // Ports, settings and files of the tests are their own, here and in the processes they start.
  const QTemporaryDir folder;
  if (!folder.isValid() || !QDir::setCurrent(folder.path())) return 1;
  qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
  qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
  qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef QT_WIDGETS_LIB
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));  // the same geometry on every desktop
#else
  QCoreApplication application(argc, argv);
#endif
  QCoreApplication::setApplicationName(QStringLiteral("KALDE2"));
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
