#pragma once

#include "TessikKit/MIDI/MIDIService.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

namespace tessik {

/// MIDI inside the process: sources and destinations that appear, vanish and come back on command. Delivers from its
/// own thread, as a real service does, or directly within the sender's call where a test must be repeatable.
class VirtualMIDIService final : public MIDIService {
public:
    enum class Delivery : std::uint8_t { thread, synchronous };
    explicit VirtualMIDIService(Delivery delivery = Delivery::thread, const UptimeClock& clock = UptimeClock::system());
    ~VirtualMIDIService() override;

    MIDIStatus createClient(const QString& name, MIDINotifyBlock notify, MIDIClientRef& client) override;
    void disposeClient(MIDIClientRef client) override;
    MIDIStatus createInputPort(MIDIClientRef client, const QString& name, MIDIReceiveBlock receive,
                               MIDIPortRef& port) override;
    MIDIStatus createOutputPort(MIDIClientRef client, const QString& name, MIDIPortRef& port) override;
    std::vector<MIDIEndpoint> sources() const override;
    std::vector<MIDIEndpoint> destinations() const override;
    MIDIStatus connectSource(MIDIPortRef inputPort, MIDIEndpointRef source) override;
    MIDIStatus disconnectSource(MIDIPortRef inputPort, MIDIEndpointRef source) override;
    MIDIStatus connectDestination(MIDIPortRef outputPort, MIDIEndpointRef destination) override;
    bool isConnected(MIDIPortRef port, MIDIEndpointRef endpoint) const override;
    MIDIStatus send(MIDIPortRef outputPort, MIDIEndpointRef destination, std::span<const std::uint32_t> words) override;
    MIDIStatus createSource(MIDIClientRef client, const QString& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const QString& name, MIDIReceiveBlock receive,
                                 MIDIEndpointRef& destination) override;
    MIDIStatus transmit(MIDIEndpointRef source, std::span<const std::uint32_t> words) override;

    // ---- what a person at the plugs does

    enum class Ends : std::uint8_t { all, sources, destinations };
    /// Removes the endpoints of that name from the setup, with their connections, but keeps their unique ids.
    void unplug(const QString& name, Ends ends = Ends::all) { setPlugged(name, ends, false); }
    /// Puts them back, with new handles.
    void plug(const QString& name, Ends ends = Ends::all) { setPlugged(name, ends, true); }
    /// Another program takes the endpoints of that name exclusively, or releases them. Existing connections stay.
    void hold(const QString& name, bool isHeld);
    /// Removes all connections to the endpoints of that name, as a patch bay does.
    void cut(const QString& name);
    /// Makes the name of every endpoint of that name unreadable.
    void hideName(const QString& name);
    /// Another device from now on stands behind the endpoints of that name.
    void setDevice(const QString& name, const DeviceIdentity& device);
    /// The next call of an operation returns this instead of succeeding.
    enum class Operation : std::uint8_t {
        createClient,
        createInputPort,
        createOutputPort,
        connectSource,
        connectDestination,
        send
    };
    void failNext(Operation operation, MIDIStatus status);
    /// Delivers an event list from that source unchanged, even one that no transmitter could make.
    void inject(MIDIEndpointRef source, const MIDIEventList& list);
    /// Returns once everything sent so far has been passed to the receive blocks.
    void waitUntilDelivered();

private:
    struct Client {
        QString name;
        MIDINotifyBlock notify;
    };
    struct Port {
        MIDIClientRef client = 0;
        std::shared_ptr<MIDIReceiveBlock> receive; // null for an output port
        std::vector<MIDIEndpointRef> connected;    // sources, or one destination
    };
    struct Endpoint {
        MIDIClientRef client = 0;
        MIDIEndpointRef handle = 0;  // changes each time it is plugged in
        MIDIEndpointRef created = 0; // the handle given to the owner
        std::int32_t uniqueID = 0;
        int ordinal = 0;
        QString name;
        DeviceIdentity device;
        bool nameReadable = true;
        bool plugged = true;
        bool held = false;
        std::shared_ptr<MIDIReceiveBlock> receive; // null for a source
    };
    struct Delivered {
        MIDIClientRef client = 0;
        std::shared_ptr<MIDIReceiveBlock> receive;
        Uptime stamp{};
        std::vector<std::uint32_t> words;
        std::vector<MIDIEventPacket> packets; // of an injected list: spans into `words`
        bool dataLost = false;
        MIDINotifyBlock notify; // a setup notice instead of data
    };

    MIDIStatus addEndpoint(MIDIClientRef client, const QString& name, std::shared_ptr<MIDIReceiveBlock> receive,
                           MIDIEndpointRef& out);
    const Endpoint* find(MIDIEndpointRef handle, bool isDestination) const;
    std::vector<MIDIEndpoint> enumerate(bool destinations) const;
    MIDIStatus takeFailure(Operation operation);
    void deliver(Delivered item, std::unique_lock<std::mutex>& lock);
    void notifyAll(std::unique_lock<std::mutex>& lock);
    void setPlugged(const QString& name, Ends ends, bool plugged);
    static void hand(const Delivered& item);
    void run();

    const Delivery _delivery;
    const UptimeClock& _clock;
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    std::map<MIDIClientRef, Client> _clients;
    std::map<MIDIPortRef, Port> _ports;
    std::deque<Endpoint> _endpoints; // in the order of their creation
    std::map<Operation, MIDIStatus> _failures;
    std::deque<Delivered> _waiting;
    MIDIClientRef _delivering = 0; // the client whose block runs on the thread
    bool _ending = false;
    std::uint32_t _nextHandle = 1;
    std::thread _thread;
};

} // namespace tessik
