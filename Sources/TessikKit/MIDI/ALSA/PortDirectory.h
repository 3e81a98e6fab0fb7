#pragma once

#include "TessikKit/MIDI/MIDIService.h"
#include "TessikKit/MIDI/StableUniqueID.h"

#include <array>
#include <map>

namespace tessik {

/// The address of a port in the sequencer. Client numbers are reused.
struct SequencerAddress {
    std::uint8_t client = 0;
    std::uint8_t port = 0;

    friend auto operator<=>(const SequencerAddress&, const SequencerAddress&) = default;
};

/// What the sequencer reports about one port.
struct SequencerPort {
    SequencerAddress address;
    QString clientName;
    QString portName;
    unsigned capability = 0; ///< SND_SEQ_PORT_CAP_ bits
    int processID = -1;      ///< of the client's owner; -1 for the kernel's own
    DeviceIdentity device;
};

/// Tells the sequencer's ports apart over time: hands out their endpoint handles and unique ids.
///
/// A handle holds the address and a generation that rises each time something there goes away, so that a device plugged
/// in again looks new and an old handle never reaches it, even if one enumeration covers both announcements. An arrival
/// need not raise it, and one announced late does not make a port new that an enumeration has already found. A unique
/// id is derived from the names; ports with equal names get ordinals that they keep as long as they live, and get back
/// if the device identifies itself.
class PortDirectory {
public:
    /// Ports of `ownProcessID` are not listed.
    explicit PortDirectory(int ownProcessID) : _ownProcessID(ownProcessID) {}

    /// What was announced.
    void portExited(SequencerAddress address);
    void clientExited(std::uint8_t client);
    /// Announcements were lost: any port may have come and gone.
    void announcementsLost() { ++_losses; }

    /// The endpoints among all the ports `present`, in their order.
    std::vector<MIDIEndpoint> list(PortDirection direction, const std::vector<SequencerPort>& present);
    /// The address behind a handle; none once anything went away there.
    std::optional<SequencerAddress> resolve(MIDIEndpointRef endpoint) const;

    /// The port's name, preceded by the client's unless it begins with it.
    static QString displayName(const QString& clientName, const QString& portName);

private:
    struct Identity {
        QString clientName;
        QString portName;
        std::array<std::optional<int>, 2> ordinals; // by direction
        std::array<bool, 2> isGuess{};
    };
    using Names = std::tuple<PortDirection, QString, QString>;

    bool serves(const SequencerPort& port, PortDirection direction) const;
    void identify(const std::vector<SequencerPort>& present);
    void giveOrdinal(Identity& identity, PortDirection direction, const DeviceIdentity& device);
    bool isLiving(const Identity& like, PortDirection direction, int ordinal) const;
    bool isAmbiguous(const Identity& identity, PortDirection direction) const;
    MIDIEndpointRef handle(SequencerAddress address) const;

    const int _ownProcessID;
    std::map<SequencerAddress, Identity> _living;
    std::map<Names, std::vector<DeviceIdentity>> _devices; // the last to have each ordinal
    // A generation is the sum of these: each only rises, and so does the sum.
    std::map<SequencerAddress, std::uint32_t> _portExits;
    std::array<std::uint32_t, 256> _clientExits{};
    std::uint32_t _losses = 0;
};

} // namespace tessik
