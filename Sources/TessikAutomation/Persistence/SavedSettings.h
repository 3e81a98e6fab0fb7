#pragma once

#include "TessikAutomation/Persistence/AppTheme.h"
#include "TessikKit/MIDI/MIDIService.h"
#include "TessikKit/Models/ConsoleModel.h"
#include "TessikKit/Models/Published.h"

#include <QStringList>

namespace tessik {

/// What belongs to the room and not to the mix: kept per user on this computer, never in a session.
/// A write that fails is logged; the program goes on with the value for this run. A write waits for the disk; every
/// call may be made on any thread.
namespace SavedSettings {

namespace Key {
inline constexpr QLatin1String consoleSourceID{"consoleSourceID"};
inline constexpr QLatin1String midiOutDestinationID{"midiOutDestinationID"};
inline constexpr QLatin1String timecodeSourceID{"timecodeSourceID"};
inline constexpr QLatin1String midiChannel{"midiChannel"};
inline constexpr QLatin1String appTheme{"appTheme"};
inline constexpr QLatin1String transportDestinationID{"transportDestinationID"};
inline constexpr QLatin1String mmcDeviceID{"mmcDeviceID"};
inline constexpr QLatin1String lastSessionPath{"lastSessionPath"};
inline constexpr QLatin1String recentSessions{"recentSessions"};
inline constexpr QLatin1String modelSize{"modelSize"};
inline constexpr QLatin1String midiOutMessagesPerSecond{"midiOutMessagesPerSecond"};
inline constexpr QLatin1String deskZoom{"deskZoom"};
inline constexpr QLatin1String masterFolded{"masterFolded"};
inline constexpr QLatin1String windowGeometry{"windowGeometry"};
inline constexpr QLatin1String windowPanes{"windowPanes"};
inline constexpr QLatin1String welcomeDismissed{"welcomeDismissed"};
} // namespace Key

/// A port's unique id; none if nothing is stored. A number outside signed 32 bits stops the program: only ids are ever
/// stored under these keys.
std::optional<std::int32_t> uniqueID(QLatin1String key);
/// The device behind that port when it was chosen.
DeviceIdentity device(QLatin1String key);
/// The stored number as it is; callers keep it in range.
std::optional<std::int64_t> midiChannel();
std::optional<AppTheme> appTheme();
/// Clamped to 0 to 255.
std::optional<std::uint8_t> mmcDeviceID();
std::optional<ConsoleModel::ModelSize> modelSize();
/// The size in which the desk is shown, in percent.
std::optional<int> deskZoom();
/// Whether the master section is folded away.
bool isMasterFolded();
/// What `setBytes` stored; empty if nothing.
QByteArray bytes(QLatin1String key);
/// Whether the first-run card was dismissed.
bool isWelcomeDismissed();
/// Messages a second to the desk, 1 to 100,000; none if absent or out of range.
std::optional<int> midiOutMessagesPerSecond();

inline constexpr qsizetype maxRecentSessions = 10;
/// Paths of session files, the most recently opened or saved first. A file may be gone by now.
QStringList recentSessions();
/// Puts a path in front; cleared with `remove`.
void addRecentSession(const QString& path);

/// The last write of any setting.
struct Write {
    std::int64_t count = 0; ///< of all writes
    QString problem;        ///< why it failed; empty if it did not

    friend bool operator==(const Write&, const Write&) = default;
};
/// For observing, on the main thread.
const Observable<Write>& lastWrite();

void setInteger(QLatin1String key, std::int64_t value);
void setString(QLatin1String key, const QString& value);
void setBytes(QLatin1String key, const QByteArray& value);
void remove(QLatin1String key);
/// Stores a port choice and its device, or removes both.
void setUniqueID(QLatin1String key, std::optional<std::int32_t> uniqueID, const DeviceIdentity& device = {});

} // namespace SavedSettings
} // namespace tessik
