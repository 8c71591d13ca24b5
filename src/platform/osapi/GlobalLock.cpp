#include "platform/osapi/GlobalLock.h"

#include <atomic>
#include <cerrno>
#include <mutex>
#include <thread>

#include "platform/osapi/Fault.h"

namespace
{

std::mutex g_lock;
std::atomic<std::thread::id> g_owner; // nobody when empty

bool isOwnedByCaller()
{
    return g_owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

} // namespace

extern "C" {

int ZUVOsapi_global_lock(void)
{
    if (ZUV_OSAPI_FAULT("global_lock.take")) {
        return EAGAIN;
    }
    if (isOwnedByCaller()) {
        return EDEADLK;
    }
    g_lock.lock();
    g_owner = std::this_thread::get_id();
    return 0;
}

int ZUVOsapi_global_unlock(void)
{
    if (!isOwnedByCaller()) {
        return EPERM;
    }
    g_owner = std::thread::id();
    g_lock.unlock();
    return ZUV_OSAPI_FAULT("global_lock.give") ? EPERM : 0;
}
}
