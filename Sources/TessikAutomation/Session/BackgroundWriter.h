#pragma once

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace tessik {

/// A thread that waits for the disk in the main thread's place. Jobs run one after another, in the order posted; what a
/// job returns runs on the main thread, in the same order. Posting and finishing are the main thread's.
class BackgroundWriter {
public:
    using Completion = std::function<void()>;
    using Job = std::function<Completion()>;

    BackgroundWriter();
    /// Runs every job to its end; completions not yet run are dropped.
    ~BackgroundWriter();

    void post(Job job);
    /// Waits until every job has run, and runs their completions; also of jobs that those post.
    void finish();

private:
    void run();
    void deliver();

    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Job> _jobs;
    std::deque<Completion> _completions;
    bool _busy = false; // a job is running
    bool _ending = false;
    QObject _context; // takes the posted deliveries with it
    std::thread _thread;
};

} // namespace tessik
