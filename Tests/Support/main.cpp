// Runs a test program inside a Qt application: with widgets where the program links them.
#include <gtest/gtest.h>

#ifdef QT_WIDGETS_LIB
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif
#include <QStandardPaths>

int main(int argc, char** argv) {
    QStandardPaths::setTestModeEnabled(true);
    Application app(argc, argv);
    Application::setOrganizationName(QStringLiteral("TessikTests"));
    Application::setApplicationName(QStringLiteral("tessik-tests"));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
