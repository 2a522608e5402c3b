// The window tests' main(): one QApplication for the whole program, as a Qt program has.

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    // Offscreen unless told otherwise: the tests need no display, and listing them neither.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
