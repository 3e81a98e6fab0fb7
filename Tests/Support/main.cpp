// Runs a test program inside a Qt application: with widgets where the program links them.
#include <gtest/gtest.h>

#ifdef QT_WIDGETS_LIB
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    QStandardPaths::setTestModeEnabled(true);
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    Application app(argc, argv);
    Application::setApplicationName(QStringLiteral("tessik-tests"));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
