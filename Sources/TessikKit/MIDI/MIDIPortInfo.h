#pragma once

#include "TessikKit/MIDI/MIDIService.h"

#include <QStringList>

#include <algorithm>

namespace tessik {

/// One port as listed in the settings. The user's choice is remembered by `uniqueID`; `device` then tells another of
/// the same name.
struct MIDIPortInfo {
    std::int32_t uniqueID = 0;
    QString name;
    MIDIEndpointRef endpoint = 0;
    int ordinal = 0;
    bool isAmbiguous = false; ///< it may have swapped places with a port of the same name
    DeviceIdentity device;

    friend bool operator==(const MIDIPortInfo&, const MIDIPortInfo&) = default;
};

using MIDISourceInfo = MIDIPortInfo;
using MIDIDestinationInfo = MIDIPortInfo;

/// An enumeration as a list to choose from: `nameless` replaces an unreadable name, 0 an unreadable id.
inline std::vector<MIDIPortInfo> describePorts(const std::vector<MIDIEndpoint>& endpoints, const QString& nameless) {
    std::vector<MIDIPortInfo> ports;
    ports.reserve(endpoints.size());
    for (const MIDIEndpoint& endpoint : endpoints)
        ports.push_back({endpoint.uniqueID.value_or(0), endpoint.displayName.value_or(nameless), endpoint.ref,
                         endpoint.ordinal, endpoint.isAmbiguous, endpoint.device});
    return ports;
}

/// Their names, with a number appended to any that would be equal.
inline QStringList distinctNames(const std::vector<MIDIPortInfo>& ports) {
    QStringList names;
    for (const MIDIPortInfo& port : ports) {
        const auto numbered = [&port](int n) { return QStringLiteral("%1 (%2)").arg(port.name).arg(n); };
        int n = port.ordinal + 1;
        QString name = n == 1 ? port.name : numbered(n);
        while (names.contains(name))
            name = numbered(++n);
        names << name;
    }
    return names;
}

/// The first port with that id; null if there is none.
inline const MIDIPortInfo* findPort(const std::vector<MIDIPortInfo>& ports, std::optional<std::int32_t> uniqueID) {
    const auto found =
        std::find_if(ports.begin(), ports.end(), [&](const MIDIPortInfo& port) { return port.uniqueID == uniqueID; });
    return found == ports.end() ? nullptr : &*found;
}

} // namespace tessik
