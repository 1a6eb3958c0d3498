#pragma once
// Internal: two pieces of work at once, one on a second thread.

#include <exception>
#include <system_error>
#include <thread>

namespace skeinmatch {

// Runs `second` on another thread while `first` runs on this one. When no
// thread can be started both run here, one after the other. An exception
// from either reaches the caller once both have ended.
template <class First, class Second>
void runBoth(First&& first, Second&& second)
{
    std::exception_ptr secondError;
    std::thread t;
    try {
        t = std::thread([&] {
            try {
                second();
            } catch (...) {
                secondError = std::current_exception();
            }
        });
    } catch (const std::system_error&) {
        first();
        second();
        return;
    }
    try {
        first();
    } catch (...) {
        t.join();
        throw;
    }
    t.join();
    if (secondError)
        std::rethrow_exception(secondError);
}

} // namespace skeinmatch
