#include "platform/osapi/Time.h"

namespace
{
constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
}

extern "C" {

const DDS_Duration_t DDS_DURATION_INFINITE = {DDS_DURATION_INFINITE_SEC,
                                              DDS_DURATION_INFINITE_NSEC};
const DDS_Duration_t DDS_DURATION_ZERO = {DDS_DURATION_ZERO_SEC, DDS_DURATION_ZERO_NSEC};

int DDS_Duration_is_infinite(const DDS_Duration_t *duration)
{
    return duration->sec == DDS_DURATION_INFINITE_SEC ||
           duration->nanosec == DDS_DURATION_INFINITE_NSEC;
}

int DDS_Duration_is_zero(const DDS_Duration_t *duration)
{
    return duration->sec == DDS_DURATION_ZERO_SEC && duration->nanosec == DDS_DURATION_ZERO_NSEC;
}

int64_t DDS_Duration_to_nanoseconds(const DDS_Duration_t *duration)
{
    if (DDS_Duration_is_infinite(duration)) {
        return INT64_MAX;
    }
    return duration->sec < 0 ? 0 : duration->sec * kNanosecondsPerSecond + duration->nanosec;
}
}
