#include "TessikAutomation/Persistence/SavedSettings.h"

#include "TessikKit/MIDI/Log.h"

#include <QCoreApplication>
#include <QSettings>

#include <algorithm>

namespace tessik {

QString rawValue(AppTheme theme) {
    switch (theme) {
    case AppTheme::system: return QStringLiteral("system");
    case AppTheme::dark: return QStringLiteral("dark");
    case AppTheme::light: break;
    }
    return QStringLiteral("light");
}

std::optional<AppTheme> appThemeFromRawValue(const QString& raw) {
    for (const AppTheme theme : allAppThemes)
        if (rawValue(theme) == raw) return theme;
    return std::nullopt;
}

namespace SavedSettings {
namespace {

std::unique_ptr<QSettings> openStore() {
    const auto open = [](QSettings::Format format) {
        const QString name = QStringLiteral("TessikAutomation");
        return std::make_unique<QSettings>(format, QSettings::UserScope, name, name);
    };
    // Once for the run: what cannot be written later is still the suite's.
    static const bool isSuiteUsable = open(QSettings::IniFormat)->status() == QSettings::NoError;
    return open(isSuiteUsable ? QSettings::IniFormat : QSettings::NativeFormat);
}

QSettings& defaults() {
    thread_local const std::unique_ptr<QSettings> shared = openStore();
    return *shared;
}

/// The last of them.
class Writes : public Observable<Write> {
public:
    void add(const QString& problem) { _property = Write{value().count + 1, problem}; }
};

Writes& writes() {
    static Writes all;
    return all;
}

void write(QAnyStringView key, const QVariant& value) {
    defaults();                                           // holds what cannot be written
    const std::unique_ptr<QSettings> store = openStore(); // fresh: a status, once bad, stays so
    if (value.isValid())
        store->setValue(key, value);
    else
        store->remove(key);
    store->sync();
    QString problem;
    if (store->status() != QSettings::NoError) {
        problem = QStringLiteral("“%1” cannot be written.").arg(store->fileName());
        logLine(QStringLiteral("SavedSettings"), problem);
    }
    QMetaObject::invokeMethod(QCoreApplication::instance(), [problem] { writes().add(problem); });
}

QString deviceKey(QLatin1String key) { return key + QStringLiteral("Device"); }

/// A file returns numbers as text, and QVariant's own toInt wraps: so the whole range is read and checked.
std::optional<std::int64_t> integer(QLatin1String key) {
    bool ok = false;
    const qlonglong value = defaults().value(key).toLongLong(&ok);
    return ok ? std::optional<std::int64_t>(value) : std::nullopt;
}

} // namespace

std::optional<std::int32_t> uniqueID(QLatin1String key) {
    const std::optional<std::int64_t> stored = integer(key);
    if (!stored) return std::nullopt;
    if (*stored != std::int32_t(*stored))
        qFatal("%s holds %lld, which is no port's id", key.data(), static_cast<long long>(*stored));
    return std::int32_t(*stored);
}

DeviceIdentity device(QLatin1String key) {
    const QStringList stored = defaults().value(deviceKey(key)).toStringList();
    return stored.size() == 2 ? DeviceIdentity{stored[0], stored[1]} : DeviceIdentity();
}

const Observable<Write>& lastWrite() { return writes(); }

std::optional<std::int64_t> midiChannel() { return integer(Key::midiChannel); }

std::optional<AppTheme> appTheme() { return appThemeFromRawValue(defaults().value(Key::appTheme).toString()); }

std::optional<std::uint8_t> mmcDeviceID() {
    const std::optional<std::int64_t> stored = integer(Key::mmcDeviceID);
    return stored ? std::optional(std::uint8_t(std::clamp<std::int64_t>(*stored, 0, 255))) : std::nullopt;
}

std::optional<ConsoleModel::ModelSize> modelSize() {
    return ConsoleModel::sizeFromRawValue(defaults().value(Key::modelSize).toString());
}

std::optional<int> midiOutMessagesPerSecond() {
    const std::optional<std::int64_t> stored = integer(Key::midiOutMessagesPerSecond);
    return stored && *stored >= 1 && *stored <= 100'000 ? std::optional(int(*stored)) : std::nullopt;
}

bool isMasterFolded() { return integer(Key::masterFolded).value_or(0) != 0; }

QByteArray bytes(QLatin1String key) { return QByteArray::fromBase64(defaults().value(key).toString().toLatin1()); }

bool isWelcomeDismissed() { return integer(Key::welcomeDismissed).value_or(0) != 0; }

QStringList recentSessions() { return defaults().value(Key::recentSessions).toStringList(); }

void addRecentSession(const QString& path) {
    QStringList paths = recentSessions();
    paths.removeAll(path);
    paths.prepend(path);
    write(Key::recentSessions, QStringList(paths.mid(0, maxRecentSessions)));
}

std::optional<int> deskZoom() {
    const std::optional<std::int64_t> stored = integer(Key::deskZoom);
    return stored && *stored >= 10 && *stored <= 1000 ? std::optional(int(*stored)) : std::nullopt;
}

void setInteger(QLatin1String key, std::int64_t value) { write(key, qlonglong(value)); }
void setString(QLatin1String key, const QString& value) { write(key, value); }
void setBytes(QLatin1String key, const QByteArray& value) { write(key, QString::fromLatin1(value.toBase64())); }
void remove(QLatin1String key) { write(key, {}); }

void setUniqueID(QLatin1String key, std::optional<std::int32_t> uniqueID, const DeviceIdentity& device) {
    const bool isKnown = uniqueID && device.isKnown();
    write(deviceKey(key), isKnown ? QVariant(QStringList{device.socket, device.serial}) : QVariant());
    if (uniqueID)
        setInteger(key, *uniqueID);
    else
        remove(key);
}

} // namespace SavedSettings
} // namespace tessik
