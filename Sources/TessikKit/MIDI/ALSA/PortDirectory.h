#pragma once

#include "TessikKit/MIDI/MIDIService.h"
#include "TessikKit/MIDI/StableUniqueID.h"

#include <array>
#include <map>

namespace tessik {

/// The address of a port in the sequencer. Numbers of clients are given out anew to whoever comes next.
struct SequencerAddress {
    std::uint8_t client = 0;
    std::uint8_t port = 0;

    friend auto operator<=>(const SequencerAddress&, const SequencerAddress&) = default;
};

/// What tells a device from its equals; empty where the system knows nothing.
struct DeviceIdentity {
    QString socket; ///< where it is plugged in, as "usb-0000:00:14.0-2"
    QString serial; ///< its number, which some makers give to every one

    bool isKnown() const { return !socket.isEmpty() || !serial.isEmpty(); }
    friend bool operator==(const DeviceIdentity&, const DeviceIdentity&) = default;
};

/// What the sequencer tells of one port.
struct SequencerPort {
    SequencerAddress address;
    QString clientName;
    QString portName;
    unsigned capability = 0; ///< SND_SEQ_PORT_CAP_ bits
    int processID = -1;      ///< of the client's owner; -1 for the kernel's own
    DeviceIdentity device;
};

/// Keeps apart the sequencer's ports over time: hands out their endpoint handles and unique ids.
///
/// A handle holds the address and a generation that rises with every going there, so that a device plugged in again
/// looks new and an old handle never reaches it, also where both announcements meet one enumeration. A coming need not
/// raise it, and one announced late does not make a port new that an enumeration has found already. A unique id is of
/// the names; ports of equal names get ordinals that they keep as long as they live, and get back where the device
/// tells who it is.
class PortDirectory {
public:
    /// Ports of `ownProcessID` are not listed.
    explicit PortDirectory(int ownProcessID) : _ownProcessID(ownProcessID) {}

    /// What the announcements say.
    void portExited(SequencerAddress address);
    void clientExited(std::uint8_t client);
    /// Announcements were lost: any port may have come and gone.
    void announcementsLost() { ++_losses; }

    /// The endpoints among all the ports `present`, in their order.
    std::vector<MIDIEndpoint> list(PortDirection direction, const std::vector<SequencerPort>& present);
    /// The address of a handle given out; none after anything went there.
    std::optional<SequencerAddress> resolve(MIDIEndpointRef endpoint) const;

    /// The port's name, preceded by the client's where it does not begin with it.
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
    std::map<Names, std::vector<DeviceIdentity>> _devices; // that had each ordinal last
    // A generation is the sum of these: each only rises, and so does the sum.
    std::map<SequencerAddress, std::uint32_t> _portExits;
    std::array<std::uint32_t, 256> _clientExits{};
    std::uint32_t _losses = 0;
};

} // namespace tessik
