#pragma once

#include <QMetaObject>
#include <QObject>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <utility>

namespace tessik {

/// Carries entries from one MIDI thread to the main thread, in order, without locks or an event for each. A thousand
/// waiting entries cost one posted event; the main thread takes them in slices of at most 2 ms and paints in between.
///
/// Only one producer thread at a time may `push`; everything else belongs to the main thread. Destroying the queue
/// removes its posted events.
template <typename Entry>
class MainThreadQueue {
public:
    explicit MainThreadQueue(std::function<void(Entry&)> run) : _run(std::move(run)) {}
    ~MainThreadQueue() {
        while (_head)
            delete std::exchange(_head, _head->next.load(std::memory_order_acquire));
        delete _spare.load();
    }
    MainThreadQueue(const MainThreadQueue&) = delete;
    MainThreadQueue& operator=(const MainThreadQueue&) = delete;

    void push(Entry entry) {
        if (_tailUsed == chunkSize) {
            Chunk* fresh = _spare.exchange(nullptr);
            if (!fresh) fresh = new Chunk;
            _tail->next.store(fresh, std::memory_order_release);
            _tail = fresh;
            _tailUsed = 0;
        }
        _tail->entries[_tailUsed++] = std::move(entry);
        _tail->published.store(_tailUsed, std::memory_order_release);
        if (!_wakeupPosted.exchange(true)) post();
    }

    /// Runs what is waiting, for at most `slice`, and schedules itself for the rest.
    void drain(std::chrono::nanoseconds slice = std::chrono::milliseconds(2)) {
        const auto end = std::chrono::steady_clock::now() + slice;
        _wakeupPosted.store(false);
        for (int sinceLook = 0; Entry* entry = next();) {
            _run(*entry);
            *entry = Entry();
            if (++sinceLook == 16 && std::exchange(sinceLook, 0) && std::chrono::steady_clock::now() >= end) {
                if (!_wakeupPosted.exchange(true)) post();
                return;
            }
        }
    }

private:
    static constexpr std::size_t chunkSize = 1024;
    struct Chunk {
        std::array<Entry, chunkSize> entries{};
        std::atomic<std::size_t> published = 0;
        std::atomic<Chunk*> next = nullptr;
    };

    void post() {
        QMetaObject::invokeMethod(
            &_context, [this] { drain(); }, Qt::QueuedConnection);
    }

    Entry* next() {
        if (_headUsed == chunkSize) {
            Chunk* following = _head->next.load(std::memory_order_acquire);
            if (!following) return nullptr;
            _head->published.store(0, std::memory_order_relaxed);
            _head->next.store(nullptr, std::memory_order_relaxed);
            delete _spare.exchange(std::exchange(_head, following)); // keep one: a steady stream allocates nothing
            _headUsed = 0;
        }
        if (_headUsed == _head->published.load(std::memory_order_acquire)) return nullptr;
        return &_head->entries[_headUsed++];
    }

    const std::function<void(Entry&)> _run;
    QObject _context; // takes the posted events with it
    std::atomic<bool> _wakeupPosted = false;
    std::atomic<Chunk*> _spare = nullptr;
    Chunk* _head = new Chunk; // main thread
    std::size_t _headUsed = 0;
    Chunk* _tail = _head; // producer
    std::size_t _tailUsed = 0;
};

} // namespace tessik
