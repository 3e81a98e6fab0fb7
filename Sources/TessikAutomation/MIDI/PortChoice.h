#pragma once

#include "TessikAutomation/MIDI/MIDIDestinationPort.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"

namespace tessik {

/// One of the MIDI paths that the user chooses from a list and this machine remembers. What it refers to outlives it.
struct PortChoice {
    QLatin1String key; ///< of SavedSettings
    QProperty<std::vector<MIDIPortInfo>>& available;
    QProperty<std::optional<std::int32_t>>& selected; ///< also while the port is missing
    std::function<void(std::optional<std::int32_t>)> select;

    bool isListed(std::int32_t uniqueID) const { return findPort(available.value(), uniqueID); }
    /// Whether the port selected may have changed places with another of its name.
    bool isAmbiguous() const;
    /// Selects and remembers; none forgets the key.
    void choose(std::optional<std::int32_t> uniqueID) const;
    /// Selects the remembered port where it is listed now; else nothing changes.
    void restore() const;
};

PortChoice sourceChoice(QLatin1String key, MIDIInputConnection& connection);
PortChoice destinationChoice(QLatin1String key, MIDIDestinationPort& port);

} // namespace tessik
