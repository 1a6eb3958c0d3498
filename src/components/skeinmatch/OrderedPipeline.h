#pragma once
// Work that must be done in parallel but delivered in order. A walker thread
// pushes batches in the order the results are to appear; worker threads do
// the slow part (stat, read, compare, search) of any batch they take; each
// finished batch then waits until all earlier ones are delivered, so the
// record lists come out in the same order however the threads were scheduled.
//
// Abort (see BackgroundRun): once the run's abort call returns nothing more
// is delivered. Queued batches are dropped unprocessed, and a walker blocked
// on a full queue notices within 50 milliseconds.

#include "components/skeinmatch/BackgroundRun.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace skeinmatch {

// Twice as many workers as cores: a worker waiting for the disk (a cold
// cache, a network folder) leaves its core to another, and several reads in
// flight keep the device busy.
inline unsigned DiskWorkerCount()
{
    return std::clamp(std::thread::hardware_concurrency() * 2, 4u, 16u);
}

template <class Batch>
class OrderedPipeline {
public:
    using Process = std::function<void(Batch&)>;
    // Called in push order, with the publish mutex held.
    using Publish = std::function<void(Batch&)>;

    OrderedPipeline(BackgroundRun& run, unsigned workers, std::size_t capacity, Process process, Publish publish)
        : owner_(&run), capacity_(capacity ? capacity : 1), process_(std::move(process)),
          publish_(std::move(publish)), abort_(run.AbortFlag()), publishMutex_(run.PublishMutex())
    {
        if (workers == 0)
            workers = 1;
        for (unsigned i = 0; i < workers; ++i)
            threads_.emplace_back([this] { workerLoop(); });
    }

    ~OrderedPipeline() { Finish(); }

    OrderedPipeline(const OrderedPipeline&) = delete;
    OrderedPipeline& operator=(const OrderedPipeline&) = delete;

    // Blocks while the queue is full. Returns false (and drops the batch) once
    // the run is aborted.
    bool Push(Batch&& batch)
    {
        std::unique_lock lock(queueMutex_);
        while (queue_.size() >= capacity_ && !abort_.load(std::memory_order_acquire))
            notFull_.wait_for(lock, std::chrono::milliseconds(50));
        if (abort_.load(std::memory_order_acquire))
            return false;
        queue_.emplace_back(nextSeq_++, std::move(batch));
        notEmpty_.notify_one();
        return true;
    }

    // No more batches: waits until every worker has finished.
    void Finish()
    {
        {
            std::lock_guard lock(queueMutex_);
            closed_ = true;
        }
        notEmpty_.notify_all();
        for (std::thread& t : threads_)
            if (t.joinable())
                t.join();
        threads_.clear();
    }

private:
    void workerLoop()
    {
        gEngineThreadOwner = owner_;
        for (;;) {
            std::pair<std::uint64_t, Batch> item;
            {
                std::unique_lock lock(queueMutex_);
                notEmpty_.wait(lock, [this] { return closed_ || !queue_.empty(); });
                if (queue_.empty())
                    return;
                item = std::move(queue_.front());
                queue_.pop_front();
            }
            notFull_.notify_one();
            if (abort_.load(std::memory_order_acquire))
                continue;
            try {
                process_(item.second);
            } catch (...) {
                // Out of memory on one batch: deliver what it holds, since a
                // batch never delivered would hold back all that follow.
            }
            deliver(item.first, std::move(item.second));
        }
    }

    void deliver(std::uint64_t seq, Batch&& batch)
    {
        std::lock_guard lock(publishMutex_);
        if (abort_.load(std::memory_order_acquire))
            return;
        pending_.emplace(seq, std::move(batch));
        while (!pending_.empty() && pending_.begin()->first == nextPublish_) {
            try {
                publish_(pending_.begin()->second);
            } catch (...) {
                // Out of memory: this batch is lost, the order of the rest is kept.
            }
            pending_.erase(pending_.begin());
            ++nextPublish_;
        }
    }

    const void* owner_;
    const std::size_t capacity_;
    Process process_;
    Publish publish_;
    const std::atomic<bool>& abort_;
    std::mutex& publishMutex_;

    std::mutex queueMutex_;
    std::condition_variable notEmpty_, notFull_;
    std::deque<std::pair<std::uint64_t, Batch>> queue_;
    std::uint64_t nextSeq_ = 0;
    bool closed_ = false;

    // Guarded by publishMutex_.
    std::map<std::uint64_t, Batch> pending_;
    std::uint64_t nextPublish_ = 0;

    std::vector<std::thread> threads_;
};

} // namespace skeinmatch
