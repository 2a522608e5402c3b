// wakeline_empty_window: the least a Qt Widgets window costs at sea. A plain widget, shown, with
// a timer at the main window's 100 ms that does nothing, so that the window benchmark can tell
// what the navigation centre adds to what any window costs. It prints "shown" once the event
// loop runs, so that the benchmark knows when its start-up is behind it.

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Empty window"));
    window.resize(240, 720);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, [] {});
    timer.start(100);
    window.show();
    QTimer::singleShot(0, &window, [] {
        std::puts("shown");
        std::fflush(stdout);
    });
    return QApplication::exec();
}
