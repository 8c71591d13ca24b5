// Only in programs under the thread sanitizer, which knows nothing of pthread_mutex_clocklock(). The middleware takes
// its timed locks by it; unseen, each access that they order would look like a race. Here they become locks that the
// sanitizer sees. Without it this file is not linked.
#include <chrono>
#include <ctime>

#include <pthread.h>

namespace
{

std::chrono::nanoseconds toNanoseconds(const timespec &time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::chrono::nanoseconds now(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return toNanoseconds(time);
}

} // namespace

extern "C" int pthread_mutex_clocklock(pthread_mutex_t *mutex, clockid_t clock,
                                       const timespec *deadline)
{
    using std::chrono::seconds;
    const auto until = toNanoseconds(*deadline) - now(clock) + now(CLOCK_REALTIME);
    const auto whole = std::chrono::floor<seconds>(until);
    const timespec realDeadline{whole.count(), (until - whole).count()};
    return pthread_mutex_timedlock(mutex, &realDeadline);
}
