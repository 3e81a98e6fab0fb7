#pragma once

#include "TessikKit/MIDI/MIDIPortInfo.h"
#include "TessikKit/MIDI/MainThreadQueue.h"
#include "TessikKit/MIDI/PortCable.h"
#include "TessikKit/MIDI/SysExAssembler.h"
#include "TessikKit/Models/Published.h"

#include <QByteArray>

#include <mutex>

namespace tessik {

/// One system or channel-voice word, decoded.
struct MIDIWord {
    Uptime stamp;             ///< arrival
    std::uint8_t messageType; ///< 1 system, 2 MIDI 1.0 channel voice
    std::uint8_t status;
    int data1;
    int data2;
};

/// A MIDI client with one input port, connected to at most one source, which it reconnects to when it comes back.
///
/// Words and System Exclusive data go to handlers that run on the MIDI thread and only filter; they `submit` what
/// matters, and it reaches the task handler on the main thread, in order and with its stamp. Set the handlers before
/// selecting a source. Everything else here is main-thread only; platform failures are logged and shown in
/// `statusText`, never thrown.
class MIDIInputConnection {
public:
    using WordHandler = std::function<void(const MIDIWord&)>;
    /// Gets the data bytes of a whole message, without F0 and F7. Messages that are too long are dropped; the first is
    /// logged.
    using SysExHandler = std::function<void(Uptime stamp, std::span<const std::uint8_t> bytes)>;
    using TaskHandler = std::function<void(Uptime stamp, std::uint64_t payload)>;

    /// Further words of a packet are dropped, which bounds the work of a callback.
    static constexpr std::size_t maxPacketWords = 64;
    /// Payloads that may wait for the main thread.
    static constexpr int maxWaiting = 16'384;

    MIDIInputConnection(MIDIService& service, QString clientName, WordHandler onWord);
    ~MIDIInputConnection();

    void setHandler(WordHandler onWord) { _onWord = std::move(onWord); }
    void setSysExHandler(SysExHandler onSysEx) { _onSysEx = std::move(onSysEx); }
    /// Runs on the main thread for each payload submitted.
    void setTaskHandler(TaskHandler onTask) { _onTask = std::move(onTask); }
    /// Runs on the main thread, in order with the tasks, when the platform lost incoming data, and after the cable was
    /// restored.
    void setDataLostHandler(std::function<void()> onDataLost) { _onDataLost = std::move(onDataLost); }

    /// Gets the number of payloads replaced by newer ones, on the main thread and before those.
    void setOvertakenHandler(std::function<void(std::int64_t)> onOvertaken) { _onOvertaken = std::move(onOvertaken); }
    /// For the handlers, on the MIDI thread: has the task handler called with this. While `maxWaiting` wait, the latest
    /// payload of a key replaces an older one, and a payload without a key is lost.
    void submit(Uptime stamp, std::uint64_t payload, std::optional<int> key = std::nullopt);

    /// Lists the sources again and reconnects the chosen one if it came back.
    void refreshSources();
    /// Connects to that source; none or an unlisted id disconnects.
    void selectSource(std::optional<std::int32_t> uniqueID);
    /// `reconnecting`: the previous endpoint is gone, so it is not disconnected.
    void connect(const MIDISourceInfo& source, bool reconnecting);
    /// Does nothing while the chosen source is missing: the choice stays.
    void disconnect();

    /// The cable from the chosen source. Its state is not in `statusText`.
    PortCable cable;

    const QString clientName;
    MIDIClientRef client() const { return _client; }
    MIDIPortRef inputPort() const { return _inputPort; }

    Published<std::vector<MIDISourceInfo>, MIDIInputConnection> availableSources;
    Published<std::optional<std::int32_t>, MIDIInputConnection> connectedSourceID{
        std::nullopt}; ///< kept while the source is missing
    Published<std::optional<QString>, MIDIInputConnection> connectedSourceName{std::nullopt};
    Published<std::optional<MIDIEndpointRef>, MIDIInputConnection> connectedEndpoint{std::nullopt};
    Published<bool, MIDIInputConnection> connectedSourceWasRecentlyMissing{false};
    Published<QString, MIDIInputConnection> statusText{QStringLiteral("Not connected")};
    Published<std::int64_t, MIDIInputConnection> rawPacketListCount{0};      ///< event lists received
    Published<std::int64_t, MIDIInputConnection> rawByteCount{0};            ///< 4 per word received
    Published<QString, MIDIInputConnection> lastRawHex{QStringLiteral("—")}; ///< the words of the last event list
    Published<std::int64_t, MIDIInputConnection> dataLostCount{0};           ///< how often incoming data was lost
    Published<std::int64_t, MIDIInputConnection> overtakenCount{0};          ///< payloads replaced by newer ones

private:
    enum class Kind : std::uint8_t { none, task, listCounters, dataLost, overflow };
    struct Entry {
        Kind kind = Kind::none;
        Uptime stamp{};
        std::uint64_t payload = 0; // the task's, or the number of words of a list
        QByteArray hex;            // of a list
    };

    /// What came while the queue was full, picked up by the entry that was its last.
    struct Overflow {
        struct Payload {
            int key;
            Uptime stamp;
            std::uint64_t payload;
        };
        std::vector<Payload> latest; // of each key, in order of arrival
        std::int64_t overtaken = 0;
        std::int64_t lost = 0;
        std::int64_t lists = 0, words = 0;
        QByteArray hex;
    };
    using Waiting = std::atomic<int>;

    void setUpClient();
    void receive(const MIDIEventList& list);
    bool overflows(Waiting& waiting, const std::function<void(Overflow&)>& keep);
    void takeOverflow();
    void takeSysEx(Uptime stamp, std::uint32_t first, std::uint32_t second);
    void run(Entry& entry);
    void countLists(std::int64_t lists, std::int64_t words, const QByteArray& hex);
    void noteDataLost();
    void log(const QString& message) const;

    MIDIService& _service;
    MIDIClientRef _client = 0;
    MIDIPortRef _inputPort = 0;
    WordHandler _onWord;
    SysExHandler _onSysEx;
    TaskHandler _onTask;
    std::function<void()> _onDataLost;
    std::function<void(std::int64_t)> _onOvertaken;

    // MIDI thread only
    SysExAssembler _sysEx;

    Waiting _tasksWaiting = 0;
    Waiting _listsWaiting = 0;
    std::atomic<bool> _isOverflowing = false; // set by the MIDI thread, cleared by the main one
    std::mutex _overflowing;                  // guards the following, and that clearing
    Overflow _overflow;
    MainThreadQueue<Entry> _queue;
    QObject _notifications; // receives the setup notices on the main thread
};

} // namespace tessik
