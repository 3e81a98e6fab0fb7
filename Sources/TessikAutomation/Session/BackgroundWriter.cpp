#include "TessikAutomation/Session/BackgroundWriter.h"

namespace tessik {

BackgroundWriter::BackgroundWriter() : _thread([this] { run(); }) {}

BackgroundWriter::~BackgroundWriter() {
    {
        const std::lock_guard lock(_mutex);
        _ending = true;
    }
    _changed.notify_all();
    _thread.join();
}

void BackgroundWriter::post(Job job) {
    {
        const std::lock_guard lock(_mutex);
        _jobs.push_back(std::move(job));
    }
    _changed.notify_all();
}

void BackgroundWriter::finish() {
    for (;;) {
        {
            std::unique_lock lock(_mutex);
            _changed.wait(lock, [this] { return _jobs.empty() && !_busy; });
            if (_completions.empty()) return;
        }
        deliver();
    }
}

void BackgroundWriter::run() {
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _ending || !_jobs.empty(); });
        if (_jobs.empty()) return;
        Job job = std::move(_jobs.front());
        _jobs.pop_front();
        _busy = true;
        lock.unlock();
        Completion completion = job();
        job = nullptr; // its captures may be large: free them here, not on the main thread
        lock.lock();
        _busy = false;
        _completions.push_back(std::move(completion));
        _changed.notify_all();
        QMetaObject::invokeMethod(
            &_context, [this] { deliver(); }, Qt::QueuedConnection);
    }
}

void BackgroundWriter::deliver() {
    for (;;) {
        Completion completion;
        {
            const std::lock_guard lock(_mutex);
            if (_completions.empty()) return;
            completion = std::move(_completions.front());
            _completions.pop_front();
        }
        if (completion) completion();
    }
}

} // namespace tessik
