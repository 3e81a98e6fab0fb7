#pragma once

#include "TessikAutomation/MIDI/MIDIDestinationPort.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"
#include "TessikKit/Models/Published.h"

namespace tessik {

/// One of the MIDI paths that the user picks from a list and this machine remembers. What it refers to must outlive it.
struct PortChoice {
    QLatin1String key; ///< of SavedSettings
    const Observable<std::vector<MIDIPortInfo>>& available;
    const Observable<std::optional<std::int32_t>>& selected; ///< kept while the port is missing
    std::function<void(std::optional<std::int32_t>)> select;

    bool isListed(std::int32_t uniqueID) const { return findPort(available.value(), uniqueID); }
    /// Whether the selected port may have swapped places with another of the same name.
    bool isAmbiguous() const;
    /// Whether the selected port may belong to another device of that name than the one chosen.
    bool isAnotherDevice() const;
    /// Selects and remembers, with its device; none removes the key.
    void choose(std::optional<std::int32_t> uniqueID) const;
    /// Selects the remembered port if it is listed now; else does nothing.
    void restore() const;
};

PortChoice sourceChoice(QLatin1String key, MIDIInputConnection& connection);
PortChoice destinationChoice(QLatin1String key, MIDIDestinationPort& port);

} // namespace tessik
