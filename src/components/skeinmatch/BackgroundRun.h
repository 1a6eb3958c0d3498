#pragma once
// The life of a walk that works by itself on threads of its own (the folder
// comparison, the find in files): start, abort, wait, and whether it is still
// going.
//
// Abort sets the flag while holding the publish mutex, and results are
// delivered only under that mutex after a look at the flag, so once Abort
// has returned nothing more is delivered.

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace skeinmatch {

// Set on every thread a run starts, to the run it works for, so that calls
// made from inside an event handler can be recognised.
inline thread_local const void* gEngineThreadOwner = nullptr;

class BackgroundRun {
public:
    BackgroundRun() = default;
    ~BackgroundRun() { Stop(); }
    BackgroundRun(const BackgroundRun&) = delete;
    BackgroundRun& operator=(const BackgroundRun&) = delete;

    // Runs `body` on a thread of its own, then `completed` unless the run
    // was aborted. A run before it must have been stopped.
    void Start(std::function<void()> body, std::function<void()> completed);
    void Abort();
    // Aborts a run that is still going and waits for its thread.
    void Stop();

    bool InProgress() const { return inProgress_.load(std::memory_order_acquire); }
    bool Aborted() const { return abort_.load(std::memory_order_acquire); }
    // On one of the run's threads, that is inside a handler of one of its
    // events: starting or stopping a run from there would wait for itself.
    bool OnOwnThread() const { return gEngineThreadOwner == this; }

    const std::atomic<bool>& AbortFlag() const { return abort_; }
    std::mutex& PublishMutex() { return publishMutex_; }

private:
    std::mutex publishMutex_;
    std::atomic<bool> abort_{false};
    std::atomic<bool> inProgress_{false};
    std::thread thread_;
};

} // namespace skeinmatch
