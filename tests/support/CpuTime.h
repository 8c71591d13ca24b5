// Limits of processor time, which hold on a busy machine too.
#ifndef ZUV_TESTS_SUPPORT_CPU_TIME_H
#define ZUV_TESTS_SUPPORT_CPU_TIME_H

#include <ctime>

namespace zuv_test
{

// What this thread has used so far.
inline double cpuMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// By which a sanitizer stretches a limit.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double kSlowness = 15;
#else
constexpr double kSlowness = 1;
#endif

} // namespace zuv_test

#endif
