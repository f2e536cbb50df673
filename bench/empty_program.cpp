// The least that a Qt program without a window is: what the start of kalde2ctl is measured against.

#include <QCoreApplication>

int main(int argc, char* argv[]) {
  const QCoreApplication application(argc, argv);
}
