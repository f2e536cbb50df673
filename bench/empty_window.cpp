// The least that a Qt program with a window is: what the panel's start, memory and idling are
// measured against.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.show();
  return QApplication::exec();
}
