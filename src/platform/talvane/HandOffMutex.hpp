// A mutex for a thread that is woken a moment before its waker lets go.
#ifndef ZUV_PLATFORM_TALVANE_HAND_OFF_MUTEX_HPP
#define ZUV_PLATFORM_TALVANE_HAND_OFF_MUTEX_HPP

#include <mutex>

#include <pthread.h>

namespace zuv::talvane
{

// Who finds it taken tries again for about a microsecond before he sleeps, as sleeping and waking cost many times that.
class HandOffMutex : public std::mutex
{
public:
    HandOffMutex()
    {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ADAPTIVE_NP);
        pthread_mutex_destroy(native_handle());
        pthread_mutex_init(native_handle(), &attributes);
        pthread_mutexattr_destroy(&attributes);
    }
};

} // namespace zuv::talvane

#endif
