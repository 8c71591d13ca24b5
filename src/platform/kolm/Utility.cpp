#include "platform/kolm/Utility.h"

#include <cerrno>
#include <cstdint>
#include <ctime>

namespace
{

constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;

timespec inNanosecondsFromNow(int64_t nanoseconds)
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    const int64_t fraction = now.tv_nsec + nanoseconds % kNanosecondsPerSecond;
    now.tv_sec += nanoseconds / kNanosecondsPerSecond + fraction / kNanosecondsPerSecond;
    now.tv_nsec = fraction % kNanosecondsPerSecond;
    return now;
}

} // namespace

extern "C" {

void KOLM_Utility_sleep(const DDS_Duration_t *duration)
{
    const timespec end = inNanosecondsFromNow(DDS_Duration_to_nanoseconds(duration));
    do {
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
        }
    } while (DDS_Duration_is_infinite(duration) != 0);
}
}
