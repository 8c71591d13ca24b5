#include "platform/osapi/GlobalLock.h"

#include <cerrno>

#include <pthread.h>

#include "platform/osapi/Fault.h"

namespace
{
pthread_mutex_t g_lock = PTHREAD_ERRORCHECK_MUTEX_INITIALIZER_NP;
}

extern "C" {

int ZUVOsapi_global_lock(void)
{
    return ZUV_OSAPI_FAULT("global_lock.take") ? EAGAIN : pthread_mutex_lock(&g_lock);
}

int ZUVOsapi_global_unlock(void)
{
    const int error = pthread_mutex_unlock(&g_lock);
    return ZUV_OSAPI_FAULT("global_lock.give") ? EPERM : error;
}
}
