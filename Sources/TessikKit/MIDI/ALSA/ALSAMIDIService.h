#pragma once

#include "TessikKit/MIDI/MIDIService.h"

#include <map>
#include <mutex>

namespace tessik {

class ALSAClient;
class PortWatcher;

/// MIDI by the ALSA sequencer. Each client is a sequencer client with its own pool and thread, so that a flood at one
/// loses nothing of another; statuses are errno values below 0. Ports of this process are not listed. If the sequencer
/// cannot be opened, everything fails with the reason and the lists are empty.
class ALSAMIDIService final : public MIDIService {
public:
    ALSAMIDIService();
    ~ALSAMIDIService() override;

    /// Why the sequencer cannot be opened, for example "/dev/snd/seq: No such file or directory"; none if it can.
    static std::optional<QString> problem();

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

private:
    std::shared_ptr<ALSAClient> find(MIDIClientRef client) const;
    MIDIStatus addPort(MIDIClientRef client, std::uint32_t& handle, const std::function<int(ALSAClient&)>& create);
    void notifyClients();

    mutable std::mutex _mutex;
    std::map<MIDIClientRef, std::shared_ptr<ALSAClient>> _clients; // by number in the sequencer
    std::mutex _notifyMutex;                                       // held while a notify block runs
    std::map<MIDIClientRef, MIDINotifyBlock> _notifyBlocks;
    std::unique_ptr<PortWatcher> _watcher;
};

} // namespace tessik
