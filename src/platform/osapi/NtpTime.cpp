#include "platform/osapi/NtpTime.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr int64_t kFractionsPerSecond = int64_t{1} << 32;
constexpr uint32_t kFractionMax = std::numeric_limits<uint32_t>::max();

using Seconds = std::numeric_limits<int64_t>;

// The bound of 64 bits on the side that `sign` names, when the exact result lies beyond it.
int64_t saturated(bool hasOverflowed, int64_t result, bool isNegative)
{
    return !hasOverflowed ? result : isNegative ? Seconds::min() : Seconds::max();
}

} // namespace

extern "C" {

const ZUVNtpTime ZUV_NTP_TIME_ZERO = {0, 0};
const ZUVNtpTime ZUV_NTP_TIME_INFINITE = {ZUV_NTP_TIME_SEC_INFINITE, kFractionMax};

int ZUVNtpTime_isInfinite(const ZUVNtpTime *time)
{
    return time->sec >= ZUV_NTP_TIME_SEC_INFINITE;
}

int ZUVNtpTime_compare(const ZUVNtpTime *left, const ZUVNtpTime *right)
{
    if (left->sec != right->sec) {
        return left->sec < right->sec ? -1 : 1;
    }
    return left->frac == right->frac ? 0 : left->frac < right->frac ? -1 : 1;
}

void ZUVNtpTime_add(ZUVNtpTime *sum, const ZUVNtpTime *time, const ZUVNtpTime *span)
{
    if (ZUVNtpTime_isInfinite(span) != 0) {
        *sum = *span;
        return;
    }
    if (ZUVNtpTime_isInfinite(time) != 0) {
        *sum = ZUV_NTP_TIME_INFINITE;
        return;
    }
    int64_t sec = 0;
    const bool isTooLow = __builtin_add_overflow(time->sec, span->sec, &sec);
    sec = std::clamp(saturated(isTooLow, sec, true), -ZUV_NTP_TIME_SEC_INFINITE,
                     ZUV_NTP_TIME_SEC_INFINITE);
    uint32_t frac = time->frac + span->frac;
    if (frac < span->frac) {
        if (sec < ZUV_NTP_TIME_SEC_INFINITE) {
            ++sec;
        } else {
            frac = kFractionMax;
        }
    }
    *sum = {sec, frac};
}

void ZUVNtpTime_fromNanoseconds(ZUVNtpTime *time, int64_t nanoseconds)
{
    int64_t sec = nanoseconds / kNanosecondsPerSecond;
    int64_t rest = nanoseconds % kNanosecondsPerSecond;
    if (rest < 0) {
        --sec;
        rest += kNanosecondsPerSecond;
    }
    *time = {sec, static_cast<uint32_t>((rest << 32) / kNanosecondsPerSecond)};
}

int64_t ZUVNtpTime_getNanosecondsBetween(const ZUVNtpTime *from, const ZUVNtpTime *to)
{
    int64_t sec = 0;
    const bool isTooFar = __builtin_sub_overflow(to->sec, from->sec, &sec);
    int64_t frac = int64_t{to->frac} - int64_t{from->frac};
    if (frac < 0) {
        frac += kFractionsPerSecond;
        sec -= sec != Seconds::min() ? 1 : 0;
    }
    // Below 2^32 the product with 10^9 stays below 2^62.
    const int64_t part = (frac * kNanosecondsPerSecond + kFractionsPerSecond - 1) >> 32;
    int64_t nanoseconds = 0;
    const bool isOut = isTooFar ||
                       __builtin_mul_overflow(sec, kNanosecondsPerSecond, &nanoseconds) ||
                       __builtin_add_overflow(nanoseconds, part, &nanoseconds);
    return saturated(isOut, nanoseconds, to->sec < from->sec);
}
}
