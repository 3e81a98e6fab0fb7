#pragma once

#include "TessikKit/Models/UptimeClock.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tessik {

/// Handles given out by a MIDI service. 0 is never valid.
using MIDIClientRef = std::uint32_t;
using MIDIPortRef = std::uint32_t;
/// A source or destination. A device that is plugged in again gets a new handle under the same unique id.
using MIDIEndpointRef = std::uint32_t;

/// 0 for success, else the platform's own signed number.
using MIDIStatus = std::int32_t;
/// The service does not know the given client, port or endpoint.
inline constexpr MIDIStatus midiUnknownHandle = -10844;

/// Universal MIDI Packet words in MIDI 1.0 protocol that arrived together. Message types used: 1 system common and real
/// time, 2 channel voice, 3 System Exclusive (two words: data bytes only, without F0 and F7).
struct MIDIEventPacket {
    Uptime stamp; ///< arrival
    std::span<const std::uint32_t> words;
};

/// What one call of a receive block delivers.
struct MIDIEventList {
    std::span<const MIDIEventPacket> packets;
    /// Data was lost before the first packet: discard any partial message.
    bool dataLost = false;
};

/// Runs on one of the service's threads, never concurrently for one port.
using MIDIReceiveBlock = std::function<void(const MIDIEventList&)>;
/// Something in the MIDI setup changed. Runs on one of the service's threads.
using MIDINotifyBlock = std::function<void()>;

/// What distinguishes a device from others like it; empty if the system knows nothing.
struct DeviceIdentity {
    QString socket; ///< where it is plugged in, such as "usb-0000:00:14.0-2"
    QString serial; ///< its serial number, which some makers reuse for every unit

    bool isKnown() const { return !socket.isEmpty() || !serial.isEmpty(); }
    /// Whether both are known and nothing says that they are one device; a serial number holds in any socket.
    bool mayDifferFrom(const DeviceIdentity& other) const {
        return isKnown() && other.isKnown() && *this != other && (serial.isEmpty() || serial != other.serial);
    }
    friend bool operator==(const DeviceIdentity&, const DeviceIdentity&) = default;
};

/// One entry of an enumeration.
struct MIDIEndpoint {
    MIDIEndpointRef ref = 0;
    std::optional<std::int32_t> uniqueID; ///< persistent; none if the platform cannot tell
    std::optional<QString> displayName;
    int ordinal = 0;          ///< among ports of equal names; part of the id
    bool isAmbiguous = false; ///< it may have swapped places with another port of the same name
    DeviceIdentity device;
};

/// The platform's MIDI system: clients with ports, connected to sources and sending to destinations.
/// Called on the main thread; blocks run on the service's threads.
class MIDIService {
public:
    virtual ~MIDIService() = default;

    virtual MIDIStatus createClient(const QString& name, MIDINotifyBlock notify, MIDIClientRef& client) = 0;
    /// Ends the client with its ports, virtual endpoints and connections. Once it returns, none of its blocks runs or
    /// will run. Ignores an unknown client.
    virtual void disposeClient(MIDIClientRef client) = 0;

    virtual MIDIStatus createInputPort(MIDIClientRef client, const QString& name, MIDIReceiveBlock receive,
                                       MIDIPortRef& port) = 0;
    virtual MIDIStatus createOutputPort(MIDIClientRef client, const QString& name, MIDIPortRef& port) = 0;

    virtual std::vector<MIDIEndpoint> sources() const = 0;
    virtual std::vector<MIDIEndpoint> destinations() const = 0;

    virtual MIDIStatus connectSource(MIDIPortRef inputPort, MIDIEndpointRef source) = 0;
    virtual MIDIStatus disconnectSource(MIDIPortRef inputPort, MIDIEndpointRef source) = 0;
    /// Prepares a port for sending to one destination, replacing any other; 0 only releases that.
    virtual MIDIStatus connectDestination(MIDIPortRef outputPort, MIDIEndpointRef destination) = 0;
    /// Whether a connection still exists: other programs may have removed it.
    virtual bool isConnected(MIDIPortRef port, MIDIEndpointRef endpoint) const = 0;

    /// Sends whole messages, in order, without blocking. On any status but 0, assume nothing of this call to have gone
    /// out; `midiWouldBlock` asks to try again later.
    virtual MIDIStatus send(MIDIPortRef outputPort, MIDIEndpointRef destination,
                            std::span<const std::uint32_t> words) = 0;

    /// Endpoints visible to others, like a device's own ports; for the rig.
    virtual MIDIStatus createSource(MIDIClientRef client, const QString& name, MIDIEndpointRef& source) = 0;
    virtual MIDIStatus createDestination(MIDIClientRef client, const QString& name, MIDIReceiveBlock receive,
                                         MIDIEndpointRef& destination) = 0;
    /// Passes words from a source of ours to everyone connected to it. Callable from one thread per source.
    virtual MIDIStatus transmit(MIDIEndpointRef source, std::span<const std::uint32_t> words) = 0;
};

/// The receiver cannot keep up; what was sent is still owed.
inline constexpr MIDIStatus midiWouldBlock = -11;
/// Another program holds the port exclusively.
inline constexpr MIDIStatus midiPortHeld = -16;
/// Another program has removed the connection.
inline constexpr MIDIStatus midiNotConnected = -107;

} // namespace tessik
