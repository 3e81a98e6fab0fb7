#pragma once

#include "TessikKit/MIDI/MIDIPortInfo.h"
#include "TessikKit/MIDI/MainThreadQueue.h"
#include "TessikKit/MIDI/PortCable.h"
#include "TessikKit/MIDI/SysExAssembler.h"
#include "TessikKit/MIDI/WordRing.h"
#include "TessikKit/Models/Published.h"

#include <mutex>

namespace tessik {

/// One system or channel-voice word.
struct MIDIWord {
    Uptime stamp{}; ///< arrival
    std::uint32_t word = 0;

    std::uint8_t messageType() const { return word >> 28; } ///< 1 system, 2 MIDI 1.0 channel voice
    std::uint8_t status() const { return std::uint8_t(word >> 16); }
    int data1() const { return word >> 8 & 0xFF; }
    int data2() const { return word & 0xFF; }
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
    using TaskHandler = WordHandler;

    /// Further words of a packet are dropped, which bounds the work of a callback.
    static constexpr std::size_t maxPacketWords = 64;
    /// Words that may wait for the main thread.
    static constexpr int maxWaiting = 16'384;

    MIDIInputConnection(MIDIService& service, QString clientName, WordHandler onWord);
    ~MIDIInputConnection();

    void setHandler(WordHandler onWord) { _onWord = std::move(onWord); }
    void setSysExHandler(SysExHandler onSysEx) { _onSysEx = std::move(onSysEx); }
    /// Runs on the main thread for each word submitted.
    void setTaskHandler(TaskHandler onTask) { _onTask = std::move(onTask); }
    /// Runs on the main thread, in order with the tasks, when the platform lost incoming data, and after the cable was
    /// restored.
    void setDataLostHandler(std::function<void()> onDataLost) { _onDataLost = std::move(onDataLost); }

    /// Gets the number of words replaced by newer ones, on the main thread and before those.
    void setOvertakenHandler(std::function<void(std::int64_t)> onOvertaken) { _onOvertaken = std::move(onOvertaken); }
    /// For the handlers, on the MIDI thread: has the task handler called with this. While `maxWaiting` wait, the latest
    /// word of a key replaces an older one, and a word without a key is lost.
    void submit(const MIDIWord& word, std::optional<int> key = std::nullopt);

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
    Published<std::int64_t, MIDIInputConnection> rawPacketListCount{0}; ///< event lists received
    Published<std::int64_t, MIDIInputConnection> rawByteCount{0};       ///< 4 per word received
    Published<std::int64_t, MIDIInputConnection> dataLostCount{0};      ///< how often incoming data was lost
    Published<std::int64_t, MIDIInputConnection> overtakenCount{0};     ///< words replaced by newer ones
    /// The words of the last event list that held any, in hex, as far as `words` keeps them; "—" before the first.
    QString lastRawHex() const;
    /// Every word that came, whatever it is, at most `maxPacketWords` of a packet.
    const WordRing& words() const { return _words; }

private:
    enum class Kind : std::uint8_t { none, task, listCounters, dataLost, overflow };
    struct Lists {
        std::int64_t count = 0;
        std::int64_t words = 0;
        std::int64_t lastBegan = 0, lastEnded = 0; // of the last one, in `_words`
    };
    struct Entry {
        Kind kind = Kind::none;
        MIDIWord word;
        Lists lists;
    };

    /// What came while the queue was full, picked up by the entry that was its last.
    struct Overflow {
        std::vector<std::pair<int, MIDIWord>> latest; // by key, in order of arrival
        std::int64_t overtaken = 0;
        std::int64_t lost = 0;
        Lists lists;
    };
    using Waiting = std::atomic<int>;

    void setUpClient();
    void receive(const MIDIEventList& list);
    bool overflows(Waiting& waiting, const std::function<void(Overflow&)>& keep);
    void takeOverflow();
    void takeSysEx(Uptime stamp, std::uint32_t first, std::uint32_t second);
    void run(Entry& entry);
    void countLists(const Lists& lists);
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

    WordRing _words;
    Lists _lastLists; // as counted last, with words

    Waiting _tasksWaiting = 0;
    Waiting _listsWaiting = 0;
    std::atomic<bool> _isOverflowing = false; // set by the MIDI thread, cleared by the main one
    std::mutex _overflowing;                  // guards the following, and that clearing
    Overflow _overflow;
    MainThreadQueue<Entry> _queue;
    QObject _notifications; // receives the setup notices on the main thread
};

} // namespace tessik
