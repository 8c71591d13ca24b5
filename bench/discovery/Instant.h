// An instant that means the same in all processes of this machine.
#ifndef ZUV_BENCH_DISCOVERY_INSTANT_H
#define ZUV_BENCH_DISCOVERY_INSTANT_H

#include <chrono>
#include <cstdint>
#include <cstdio>

namespace bench
{

inline std::int64_t nanosecondsNow()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

inline void printInstant()
{
    std::printf("%lld\n", static_cast<long long>(nanosecondsNow()));
}

} // namespace bench

#endif
