// The least that a Qt program with a window is: what the panel's idling is measured against. With
// a text it has that in it, which is what makes a program load the fonts: what start and memory are
// measured against.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.resize(800, 600);
  if (argc > 1) window.setCentralWidget(new QLabel(QString::fromLocal8Bit(argv[1])));
  window.show();
  return QApplication::exec();
}
