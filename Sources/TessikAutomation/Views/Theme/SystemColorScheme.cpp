#include "TessikAutomation/Views/Theme/SystemColorScheme.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>

namespace tessik {
namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String path("/org/freedesktop/portal/desktop");
constexpr QLatin1String interface("org.freedesktop.portal.Settings");
constexpr QLatin1String appearance("org.freedesktop.appearance");
constexpr QLatin1String colorScheme("color-scheme");

/// Looking for a bus where there is none would start one.
bool hasUserBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

} // namespace

void SystemColorScheme::follow() {
    if (!_following && hasUserBus()) follow(QDBusConnection::sessionBus());
}

void SystemColorScheme::follow(QDBusConnection bus) {
    if (std::exchange(_following, true)) return;
    qRegisterMetaType<QDBusVariant>(); // or the slot below has an argument of unknown type, and nothing reaches it
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    read(bus, QStringLiteral("ReadOne"));
}

void SystemColorScheme::read(const QDBusConnection& bus, const QString& method) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call << QString(appearance) << QString(colorScheme);
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, bus, method, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (!reply.isError())
            apply(reply.value().variant());
        else if (method == QLatin1String("ReadOne"))
            read(bus, QStringLiteral("Read")); // the name in older portals
    });
}

void SystemColorScheme::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == appearance && key == colorScheme) apply(value.variant());
}

std::optional<ColorScheme> SystemColorScheme::fromPortal(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) // older portals wrap it twice
        value = value.value<QDBusVariant>().variant();
    if (value.metaType() != QMetaType::fromType<uint>()) return std::nullopt;
    switch (value.toUInt()) {
    case 1: return ColorScheme::dark;
    case 2: return ColorScheme::light;
    default: return std::nullopt;
    }
}

} // namespace tessik
