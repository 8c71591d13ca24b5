#include "platform/osapi/Semaphore.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr const char *kTag = "ZUVOsapiSemaphore";

// The point in time at which a wait of `nanoseconds` from now ends, or the clock's last one.
Clock::time_point inNanoseconds(int64_t nanoseconds)
{
    const Clock::time_point now = Clock::now();
    const std::chrono::nanoseconds span(nanoseconds);
    return span < Clock::time_point::max() - now ? now + span : Clock::time_point::max();
}

} // namespace

struct ZUVOsapiSemaphore {
    explicit ZUVOsapiSemaphore(int semaphoreKind)
        : kind(semaphoreKind), isAvailable(kind == ZUV_OSAPI_SEMAPHORE_KIND_MUTEX)
    {
    }

    bool isOwnedByCaller() const { return owner == std::this_thread::get_id(); }

    bool waitUntilAvailable(std::unique_lock<std::mutex> &lock, const ZUVNtpTime *timeout)
    {
        const auto available = [this] { return isAvailable; };
        if (timeout == nullptr || ZUVNtpTime_isInfinite(timeout) != 0) {
            given.wait(lock, available);
            return true;
        }
        const int64_t span = ZUVNtpTime_getNanosecondsBetween(&ZUV_NTP_TIME_ZERO, timeout);
        return span > 0 ? given.wait_until(lock, inNanoseconds(span), available) : isAvailable;
    }

    const int kind;
    std::mutex guard;
    std::condition_variable given;
    bool isAvailable;
    std::thread::id owner;      // of a mutex that is taken
    uint64_t repeatedTakes = 0; // by the owner, beyond its first
};

extern "C" {

ZUVOsapiSemaphore *ZUVOsapiSemaphore_new(int kind, const struct ZUVOsapiSemaphoreProperty *property)
{
    const bool isKind =
        kind == ZUV_OSAPI_SEMAPHORE_KIND_BINARY || kind == ZUV_OSAPI_SEMAPHORE_KIND_MUTEX;
    if (!isKind || property != nullptr || ZUV_OSAPI_FAULT("semaphore.new")) {
        return nullptr;
    }
    return zuv::newObject<ZUVOsapiSemaphore>(kTag, kind);
}

ZUVOsapiSemaphoreStatus ZUVOsapiSemaphore_take(ZUVOsapiSemaphore *self, const ZUVNtpTime *timeout)
{
    if (ZUV_OSAPI_FAULT("semaphore.take")) {
        return ZUV_OSAPI_SEMAPHORE_STATUS_ERROR;
    }
    std::unique_lock lock(self->guard);
    if (self->isOwnedByCaller()) {
        ++self->repeatedTakes;
        return ZUV_OSAPI_SEMAPHORE_STATUS_OK;
    }
    if (!self->waitUntilAvailable(lock, timeout)) {
        return ZUV_OSAPI_SEMAPHORE_STATUS_TIMEOUT;
    }
    self->isAvailable = false;
    if (self->kind == ZUV_OSAPI_SEMAPHORE_KIND_MUTEX) {
        self->owner = std::this_thread::get_id();
    }
    return ZUV_OSAPI_SEMAPHORE_STATUS_OK;
}

ZUVOsapiSemaphoreStatus ZUVOsapiSemaphore_give(ZUVOsapiSemaphore *self)
{
    {
        // Signalled under the lock: the taker that it wakes may delete the semaphore as soon as it has the lock.
        const std::lock_guard lock(self->guard);
        if (self->kind == ZUV_OSAPI_SEMAPHORE_KIND_MUTEX && !self->isOwnedByCaller()) {
            return ZUV_OSAPI_SEMAPHORE_STATUS_ERROR;
        }
        if (self->repeatedTakes > 0) {
            --self->repeatedTakes;
        } else {
            self->owner = {};
            self->isAvailable = true;
            self->given.notify_one();
        }
    }
    return ZUV_OSAPI_FAULT("semaphore.give") ? ZUV_OSAPI_SEMAPHORE_STATUS_ERROR
                                             : ZUV_OSAPI_SEMAPHORE_STATUS_OK;
}

void ZUVOsapiSemaphore_delete(ZUVOsapiSemaphore *self)
{
    zuv::deleteObject(self);
}
}
