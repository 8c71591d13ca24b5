#include "common/ServiceEventThread.h"

#include <cstring>

#include "common/Report.hpp"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"

namespace
{

constexpr const char *kTag = "BRELServiceEventThread";

bool isInitialized(const BRELServiceEventThread &self)
{
    return self._init == BREL_SERVICE_EVENT_THREAD_INITIALIZED;
}

void BRELServiceEventThread_onStartGenerator(void *eventThread, MAVOWorker *)
{
    auto *self = static_cast<BRELServiceEventThread *>(eventThread);
    BRELConcurrency_createWorker(self->_concurrency, self->_threadName);
}

void BRELServiceEventThread_onStopGenerator(void *eventThread, MAVOWorker *)
{
    auto *self = static_cast<BRELServiceEventThread *>(eventThread);
    BRELConcurrency_deleteWorker(self->_concurrency);
    if (ZUVOsapiSemaphore_give(self->_binSem) != ZUV_OSAPI_SEMAPHORE_STATUS_OK) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_SEMAPHORE_GIVE_FAILURE);
    }
}

// What the thread needs, short of the thread. False after a report.
bool prepare(BRELServiceEventThread &self, BRELConcurrency *concurrency, ZUVClock *clock,
             const char *threadName)
{
    self._threadName = DDS_String_dup(threadName);
    if (self._threadName == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                                 static_cast<int>(std::strlen(threadName)));
        return false;
    }
    self._concurrency = concurrency;
    self._workerFactory = DDS_DomainParticipantFactory_get_worker_factoryI(
        DDS_DomainParticipantFactory_get_instance(), 0);
    if (self._workerFactory == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_GET_FAILURE_s, "worker factory");
        return false;
    }
    self._clock = clock;
    if (self._clock == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "clock");
        return false;
    }
    self._timer = ZUVEventSmartTimer_new();
    if (self._timer == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "timer");
        return false;
    }
    self._binSem = ZUVOsapiSemaphore_new(ZUV_OSAPI_SEMAPHORE_KIND_BINARY, nullptr);
    if (self._binSem == nullptr) {
        BREL_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "binary semaphore");
        return false;
    }
    return true;
}

// False after a report.
bool start(BRELServiceEventThread &self, int storageBytesToCompare)
{
    self._generatorListener.onStarted = BRELServiceEventThread_onStartGenerator;
    self._generatorListener.onStartedParam = &self;
    self._generatorListener.parent.onStopped = BRELServiceEventThread_onStopGenerator;
    self._generatorListener.parent.onStoppedParam = &self;
    self._storageBytesToCompare = storageBytesToCompare;
    self._generator =
        ZUVEventActiveGenerator_new(self._threadName, self._workerFactory, self._clock, self._timer,
                                    &self._generatorListener, nullptr, nullptr, nullptr, nullptr);
    if (self._generator == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "event generator");
        return false;
    }
    return true;
}

// Let the thread end, wait for that, and release it. False after a report.
bool stop(BRELServiceEventThread &self)
{
    // A give that is there already would end the wait below too early.
    ZUVOsapiSemaphore_take(self._binSem, &ZUV_NTP_TIME_ZERO);
    // The one that the take has consumed may have been that of the thread's end, when an earlier attempt got as far
    // as that: no other will come.
    const bool willGive = ZUVEventActiveGenerator_isRunning(self._generator) != 0;
    if (ZUVEventActiveGenerator_shutdown(self._generator, nullptr) == 0) {
        BREL_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILURE_TEMPLATE, "shutdown active event generator");
        return false;
    }
    if (willGive &&
        ZUVOsapiSemaphore_take(self._binSem, nullptr) != ZUV_OSAPI_SEMAPHORE_STATUS_OK) {
        BREL_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_LOCK_TEMPLATE, "binary semaphore");
        return false;
    }
    ZUVEventActiveGenerator_delete(self._generator, nullptr);
    self._generator = nullptr;
    return true;
}

} // namespace

extern "C" {

BRELServiceEventThread *BRELServiceEventThread_new(BRELConcurrency *concurrency, ZUVClock *clock,
                                                   int storageBytesToCompare,
                                                   const char *threadName)
{
    auto *self = static_cast<BRELServiceEventThread *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(BRELServiceEventThread), kTag));
    if (self == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                                 static_cast<int>(sizeof(BRELServiceEventThread)));
        return nullptr;
    }
    if (BRELServiceEventThread_initialize(self, concurrency, clock, storageBytesToCompare,
                                          threadName) == 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "service event thread");
        ZUVOsapiHeap_free(self);
        return nullptr;
    }
    return self;
}

int BRELServiceEventThread_initialize(BRELServiceEventThread *self, BRELConcurrency *concurrency,
                                      ZUVClock *clock, int storageBytesToCompare,
                                      const char *threadName)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(concurrency) ||
        BREL_CONCURRENCY_IS_NULL(threadName)) {
        return 0;
    }
    if (isInitialized(*self)) {
        return 1;
    }
    *self = {};
    self->_init = BREL_SERVICE_EVENT_THREAD_INITIALIZED;
    if (!prepare(*self, concurrency, clock, threadName) || !start(*self, storageBytesToCompare)) {
        BRELServiceEventThread_finalize(self);
        return 0;
    }
    return 1;
}

int BRELServiceEventThread_postEvent(BRELServiceEventThread *self, const ZUVNtpTime *deltaTime,
                                     const ZUVEventGeneratorListener *eventListener,
                                     const ZUVEventGeneratorListenerStorage *eventListenerStorage)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(deltaTime) ||
        BREL_CONCURRENCY_IS_NULL(eventListener)) {
        return 0;
    }
    ZUVNtpTime now;
    if (self->_clock->getTime(self->_clock, &now) == 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "getTime");
        return 0;
    }
    ZUVNtpTime time;
    ZUVNtpTime_add(&time, &now, deltaTime);
    if (ZUVEventActiveGenerator_postEvent(self->_generator, &time, &now, eventListener,
                                          eventListenerStorage, self->_storageBytesToCompare,
                                          0) == 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ADD_FAILURE_s, "event");
        return 0;
    }
    return 1;
}

int BRELServiceEventThread_postImmediateEvent(
    BRELServiceEventThread *self, const ZUVEventGeneratorListener *eventListener,
    const ZUVEventGeneratorListenerStorage *eventListenerStorage)
{
    return BRELServiceEventThread_postEvent(self, &ZUV_NTP_TIME_ZERO, eventListener,
                                            eventListenerStorage);
}

int BRELServiceEventThread_finalize(BRELServiceEventThread *self)
{
    if (BREL_CONCURRENCY_IS_NULL(self)) {
        return 0;
    }
    if (!isInitialized(*self)) {
        return 1;
    }
    if (self->_generator != nullptr && !stop(*self)) {
        return 0;
    }
    self->_init = BREL_SERVICE_EVENT_THREAD_FINALIZED;
    self->_workerFactory = nullptr;
    DDS_String_free(self->_threadName);
    self->_threadName = nullptr;
    ZUVEventSmartTimer_delete(self->_timer);
    self->_timer = nullptr;
    ZUVOsapiSemaphore_delete(self->_binSem);
    self->_binSem = nullptr;
    return 1;
}

int BRELServiceEventThread_delete(BRELServiceEventThread *self)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BRELServiceEventThread_finalize(self) == 0) {
        return 0;
    }
    ZUVOsapiHeap_free(self);
    return 1;
}
}
