#pragma once

#include <QSettings>

namespace tessik {

/// A machine on which the program never ran. As a base class it comes before anything that reads the settings.
struct CleanSettings {
    CleanSettings() {
        QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("TessikAutomation"),
                  QStringLiteral("TessikAutomation"))
            .clear();
    }
};

} // namespace tessik
