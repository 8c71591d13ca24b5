#include "platform/event/ActiveGenerator.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <utility>

#include "platform/event/EventQueue.hpp"
#include "platform/event/SmartTimer.hpp"
#include "platform/mavo/Report.hpp"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"
#include "platform/osapi/Thread.h"

struct ZUVEventActiveGenerator {
    MAVOWorkerFactory *workerFactory = nullptr;
    ZUVClock *clock = nullptr;
    ZUVEventTimer *timer = nullptr;
    ZUVEventActiveGeneratorListener listener = {};
    MAVOWorker *worker = nullptr;
    ZUVOsapiThread *thread = nullptr;
    zuv::EventQueue queue; // under the timer's lock
    bool mustStop = false; // under the timer's lock
    std::atomic<bool> isRunning = true;
};

namespace
{

constexpr const char *kTag = "ZUVEventActiveGenerator";
constexpr int64_t kNanosecondsUntilNextReading = 100'000'000; // of a clock that fails

using Generator = ZUVEventActiveGenerator;
using Lock = ZUVEventTimer::Lock;

// Run the first event without the lock.
void runFirst(Generator &self, Lock &lock, const ZUVNtpTime &now)
{
    zuv::Event event;
    const zuv::EventQueue::Slot slot = self.queue.takeFirst(event);
    lock.unlock();
    ZUVNtpTime nextTime = event.time;
    const bool isAgain =
        event.listener->onEvent(event.listener, &nextTime, &now, &event.time, &event.snoozeTime,
                                &event.storage, self.worker) != 0;
    lock.lock();
    if (isAgain) {
        event.time = nextTime;
        self.queue.putBack(slot, event);
    } else {
        self.queue.release(slot);
    }
}

// How long to sleep before the first event is due, in nanoseconds: 0 when it is, with the time in `now`.
int64_t findSleep(Generator &self, ZUVNtpTime &now)
{
    if (self.queue.isEmpty()) {
        return INT64_MAX;
    }
    const ZUVNtpTime due = self.queue.firstTime();
    if (ZUVNtpTime_isInfinite(&due) != 0) {
        return INT64_MAX;
    }
    if (self.clock->getTime(self.clock, &now) == 0) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_GET_FAILURE_s, "time of the event generator's clock");
        return kNanosecondsUntilNextReading;
    }
    return std::max<int64_t>(ZUVNtpTime_getNanosecondsBetween(&now, &due), 0);
}

void destroyWorker(Generator &self)
{
    MAVOWorkerFactory_destroyWorker(self.workerFactory, self.worker);
}

void run(void *generator)
{
    Generator &self = *static_cast<Generator *>(generator);
    const ZUVEventActiveGeneratorListener &listener = self.listener;
    if (listener.onStarted != nullptr) {
        listener.onStarted(listener.onStartedParam, self.worker);
    }
    for (Lock lock = self.timer->lock(); !self.mustStop;) {
        ZUVNtpTime now;
        const int64_t sleep = findSleep(self, now);
        if (sleep == 0) {
            runFirst(self, lock, now);
        } else {
            self.timer->sleep(lock, sleep);
        }
    }
    self.isRunning = false;
    if (listener.parent.onStopped != nullptr) {
        listener.parent.onStopped(listener.parent.onStoppedParam, self.worker);
    }
    destroyWorker(self);
}

// Make the thread and what it needs. False after a report.
bool start(Generator &self, const char *name)
{
    self.worker = MAVOWorkerFactory_createWorker(self.workerFactory, name);
    if (self.worker == nullptr) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "worker of the event generator");
        return false;
    }
    self.thread = ZUVOsapiThread_new(name, run, &self);
    if (self.thread == nullptr) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "thread of the event generator");
        destroyWorker(self);
        return false;
    }
    return true;
}

// Let the thread end.
void stop(Generator &self)
{
    Lock lock = self.timer->lock();
    self.mustStop = true;
    self.timer->wake(std::move(lock));
}

} // namespace

extern "C" {

ZUVEventActiveGenerator *
ZUVEventActiveGenerator_new(const char *name, MAVOWorkerFactory *workerFactory, ZUVClock *clock,
                            ZUVEventTimer *timer, const ZUVEventActiveGeneratorListener *listener,
                            const void *reserved1, const void *reserved2, const void *reserved3,
                            const void *reserved4)
{
    if (ZUV_CONCURRENCY_IS_NULL(name) || ZUV_CONCURRENCY_IS_NULL(workerFactory) ||
        ZUV_CONCURRENCY_IS_NULL(clock) || ZUV_CONCURRENCY_IS_NULL(timer) ||
        ZUV_CONCURRENCY_IS_NULL(listener) || ZUV_CONCURRENCY_IS_NOT_NULL(reserved1) ||
        ZUV_CONCURRENCY_IS_NOT_NULL(reserved2) || ZUV_CONCURRENCY_IS_NOT_NULL(reserved3) ||
        ZUV_CONCURRENCY_IS_NOT_NULL(reserved4)) {
        return nullptr;
    }
    auto *self = zuv::newObject<ZUVEventActiveGenerator>(kTag);
    if (self == nullptr) {
        ZUV_CONCURRENCY_OUT_OF_MEMORY(ZUVEventActiveGenerator);
        return nullptr;
    }
    self->workerFactory = workerFactory;
    self->clock = clock;
    self->timer = timer;
    self->listener = *listener;
    if (!start(*self, name)) {
        zuv::deleteObject(self);
        return nullptr;
    }
    return self;
}

int ZUVEventActiveGenerator_postEvent(ZUVEventActiveGenerator *self, const ZUVNtpTime *time,
                                      const ZUVNtpTime *snoozeTime,
                                      const ZUVEventGeneratorListener *listener,
                                      const ZUVEventGeneratorListenerStorage *storage,
                                      int storageBytesToCompare, int flags)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(time) ||
        ZUV_CONCURRENCY_IS_NULL(snoozeTime) || ZUV_CONCURRENCY_IS_NULL(listener) ||
        ZUV_PRECONDITION(DDS, DDS_SUBMODULE_CONCURRENCY, flags != 0, "flags != 0")) {
        return 0;
    }
    zuv::Event event = {*time, *snoozeTime, listener, {}, 0};
    if (storage != nullptr) {
        event.storage = *storage;
    }
    event.bytesToCompare = static_cast<uint32_t>(
        std::clamp(storageBytesToCompare, 0, static_cast<int>(sizeof(event.storage))));

    Lock lock = self->timer->lock();
    // A sleeper sleeps until the first event: it need not know about others.
    const ZUVNtpTime first =
        self->queue.isEmpty() ? ZUV_NTP_TIME_INFINITE : self->queue.firstTime();
    const bool mustWake = ZUVNtpTime_compare(time, &first) < 0;
    const char *refusal = self->mustStop            ? "event: the generator is shut down"
                          : !self->queue.add(event) ? "event: out of memory"
                                                    : nullptr;
    if (refusal != nullptr) {
        lock.unlock();
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_ADD_FAILURE_s, refusal);
        return 0;
    }
    if (mustWake) {
        self->timer->wake(std::move(lock));
    }
    return 1;
}

int ZUVEventActiveGenerator_shutdown(ZUVEventActiveGenerator *self, MAVOWorker *)
{
    if (ZUV_CONCURRENCY_IS_NULL(self)) {
        return 0;
    }
    if (ZUV_OSAPI_FAULT("event_generator.shutdown")) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "shut down event generator");
        return 0;
    }
    stop(*self);
    return 1;
}

int ZUVEventActiveGenerator_isRunning(ZUVEventActiveGenerator *self)
{
    return !ZUV_CONCURRENCY_IS_NULL(self) && self->isRunning ? 1 : 0;
}

int ZUVEventActiveGenerator_delete(ZUVEventActiveGenerator *self, MAVOWorker *)
{
    if (ZUV_CONCURRENCY_IS_NULL(self)) {
        return 0;
    }
    if (ZUVOsapiThread_isCurrent(self->thread) != 0) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_DESTRUCTION_FAILURE_s,
                                "event generator on its own thread");
        return 0;
    }
    stop(*self);
    ZUVOsapiThread_delete(self->thread);
    zuv::deleteObject(self);
    return 1;
}
}
