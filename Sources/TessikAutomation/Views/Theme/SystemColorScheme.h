#pragma once

#include "TessikAutomation/Views/Theme/Palette.h"
#include "TessikKit/Models/Published.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

#include <optional>

namespace tessik {

/// Whether the desktop asks for dark or light: what it reported at startup and, once `follow` is called, what its
/// portal says, if there is one.
class SystemColorScheme final : public QObject {
    Q_OBJECT

public:
    explicit SystemColorScheme(ColorScheme reportedAtStart) : scheme(reportedAtStart), _atStart(reportedAtStart) {}

    Published<ColorScheme, SystemColorScheme> scheme;

    /// Asks the portal on the user's bus and listens to it from then on. Does nothing without a bus, or when called
    /// again.
    void follow();
    void follow(QDBusConnection bus);

    /// The portal's colour-scheme setting; none for "no preference" or anything that is not such a setting.
    static std::optional<ColorScheme> fromPortal(QVariant value);

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void read(const QDBusConnection& bus, const QString& method);
    void apply(const QVariant& value) { scheme = fromPortal(value).value_or(_atStart); }

    const ColorScheme _atStart;
    bool _following = false;
};

} // namespace tessik
