#include "components/skeinmatch/BackgroundRun.h"

namespace skeinmatch {

void BackgroundRun::Start(std::function<void()> body, std::function<void()> completed)
{
    abort_.store(false, std::memory_order_release);
    inProgress_.store(true, std::memory_order_release);
    thread_ = std::thread([this, body = std::move(body), completed = std::move(completed)] {
        gEngineThreadOwner = this;
        body();
        if (!abort_.load(std::memory_order_acquire))
            completed();
        inProgress_.store(false, std::memory_order_release);
    });
}

void BackgroundRun::Abort()
{
    std::lock_guard lock(publishMutex_);
    abort_.store(true, std::memory_order_release);
}

void BackgroundRun::Stop()
{
    if (thread_.joinable()) {
        Abort();
        thread_.join();
    }
    inProgress_.store(false, std::memory_order_release);
}

} // namespace skeinmatch
