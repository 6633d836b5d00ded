#include <QApplication>
#include <QMainWindow>

// What a window costs with nothing in it: the reference of the start-up measurement.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1280, 720);
    window.show();
    return QApplication::exec();
}
