#pragma once
// Running the Qt event loop inside a test until something has happened, bounded in time.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <functional>

namespace wakeline::testing {

// The one application object of the test program, made on first use.
inline void EnsureCoreApplication() {
    if (QCoreApplication::instance() == nullptr) {
        static int argc = 1;
        static char name[] = "wakeline_platform_tests";
        static char* argv[] = {name, nullptr};
        static QCoreApplication app(argc, argv);
    }
}

// Runs the event loop until `done` is true or `timeoutMs` have passed; returns `done`.
inline bool WaitUntil(const std::function<bool()>& done, int timeoutMs = 10000) {
    QTimer wake;  // wakes the loop every few milliseconds to look at `done` and the time
    wake.start(5);
    QElapsedTimer elapsed;
    elapsed.start();
    while (!done()) {
        if (elapsed.elapsed() > timeoutMs) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

}  // namespace wakeline::testing
