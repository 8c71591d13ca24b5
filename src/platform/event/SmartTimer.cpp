#include "platform/event/SmartTimer.hpp"

#include <chrono>
#include <utility>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"

void ZUVEventTimer::sleep(Lock &lock, int64_t nanoseconds)
{
    using Clock = std::chrono::steady_clock;

    isAsleep_ = true;
    const std::chrono::nanoseconds span(nanoseconds);
    const Clock::time_point now = Clock::now();
    if (span < Clock::time_point::max() - now) {
        changed_.wait_until(lock, now + span);
    } else {
        changed_.wait(lock);
    }
    isAsleep_ = false;
}

void ZUVEventTimer::wake(Lock lock)
{
    // Once is enough: whoever comes later finds the sleeper on its way.
    const bool mustNotify = std::exchange(isAsleep_, false);
    lock.unlock();
    if (mustNotify) {
        changed_.notify_one();
    }
}

extern "C" {

ZUVEventTimer *ZUVEventSmartTimer_new(void)
{
    return ZUV_OSAPI_FAULT("timer.new") ? nullptr : zuv::newObject<ZUVEventTimer>("ZUVEventTimer");
}

void ZUVEventSmartTimer_delete(ZUVEventTimer *self)
{
    zuv::deleteObject(self);
}
}
