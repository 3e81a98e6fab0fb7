#pragma once

#include <QDir>
#include <QSettings>
#include <gtest/gtest.h>

namespace tessik {

/// A machine on which the program never ran. As a base class it comes before anything that reads the settings.
struct CleanSettings {
    CleanSettings() {
        QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("TessikAutomation"),
                  QStringLiteral("TessikAutomation"))
            .clear();
    }
};

/// While it lives, a file stands where the settings' folder was, and nothing can be written.
class UnwritableSettings {
public:
    UnwritableSettings() {
        EXPECT_TRUE(QDir().rename(_folder, _folder + QStringLiteral(".aside")));
        EXPECT_TRUE(QFile(_folder).open(QIODevice::WriteOnly));
    }
    ~UnwritableSettings() {
        EXPECT_TRUE(QFile::remove(_folder));
        EXPECT_TRUE(QDir().rename(_folder + QStringLiteral(".aside"), _folder));
    }
    UnwritableSettings(const UnwritableSettings&) = delete;
    UnwritableSettings& operator=(const UnwritableSettings&) = delete;

private:
    const QString _folder = QFileInfo(QSettings(QSettings::IniFormat, QSettings::UserScope,
                                                QStringLiteral("TessikAutomation"), QStringLiteral("TessikAutomation"))
                                          .fileName())
                                .path();
};

} // namespace tessik
