#pragma once

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace tessik {

/// A thread that waits for the disk so that the main thread need not. Jobs run one at a time, in the order posted; what
/// a job returns then runs on the main thread, in the same order. Post and finish on the main thread.
class BackgroundWriter {
public:
    using Completion = std::function<void()>;
    using Job = std::function<Completion()>;

    BackgroundWriter();
    /// Runs every job to completion; drops callbacks not yet run.
    ~BackgroundWriter();

    void post(Job job);
    /// Waits until every job has run and runs the completions, including those of jobs posted by completions.
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
