#pragma once
// A list that worker threads append to while the user-interface thread reads
// it by index. An item, once in, is never changed or moved as far as readers
// can tell: Get copies it out under the lock, and the count only grows until
// Clear, which the owner calls only when no run is going on.

#include <atomic>
#include <cstddef>
#include <deque>
#include <mutex>
#include <vector>

namespace skeinmatch {

template <class T>
class AppendOnlyList {
public:
    void Append(std::vector<T>&& batch)
    {
        if (batch.empty())
            return;
        std::lock_guard lock(mutex_);
        for (T& item : batch)
            items_.push_back(std::move(item));
        count_.store(items_.size(), std::memory_order_release);
    }

    void Append(T&& item)
    {
        std::lock_guard lock(mutex_);
        items_.push_back(std::move(item));
        count_.store(items_.size(), std::memory_order_release);
    }

    bool Get(std::size_t index, T& out) const
    {
        std::lock_guard lock(mutex_);
        if (index >= items_.size())
            return false;
        out = items_[index];
        return true;
    }

    std::size_t Count() const { return count_.load(std::memory_order_acquire); }

    void Clear()
    {
        std::lock_guard lock(mutex_);
        items_.clear();
        items_.shrink_to_fit();
        count_.store(0, std::memory_order_release);
    }

private:
    mutable std::mutex mutex_;
    std::deque<T> items_;
    std::atomic<std::size_t> count_{0};
};

} // namespace skeinmatch
