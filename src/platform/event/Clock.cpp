#include "platform/event/Clock.h"

#include <ctime>

#include "platform/osapi/Fault.h"

namespace
{

int getMonotonicTime(ZUVClock *, ZUVNtpTime *now)
{
    constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
    timespec present;
    if (ZUV_OSAPI_FAULT("clock.get_time") || clock_gettime(CLOCK_MONOTONIC, &present) != 0) {
        return 0;
    }
    ZUVNtpTime_fromNanoseconds(now, present.tv_sec * kNanosecondsPerSecond + present.tv_nsec);
    return 1;
}

ZUVClock g_monotonic = {getMonotonicTime};

} // namespace

extern "C" {

ZUVClock *ZUVClock_getMonotonic(void)
{
    return &g_monotonic;
}
}
