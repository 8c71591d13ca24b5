// The inside of a timer: the lock of its generator's state, and the sleep on that state.
#ifndef ZUV_PLATFORM_EVENT_SMART_TIMER_HPP
#define ZUV_PLATFORM_EVENT_SMART_TIMER_HPP

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "platform/event/SmartTimer.h"

struct ZUVEventTimer {
public:
    using Lock = std::unique_lock<std::mutex>;

    Lock lock() { return Lock(guard_); }

    // Let go of the lock and sleep, at most `nanoseconds`; INT64_MAX is without limit. May return early.
    void sleep(Lock &lock, int64_t nanoseconds);

    // End the present or next sleep, after a change that was made under `lock`; gives the lock first, so that
    // the sleeper does not wake up only to wait for it.
    void wake(Lock lock);

private:
    std::mutex guard_;
    std::condition_variable changed_;
    bool isAsleep_ = false;
};

#endif
