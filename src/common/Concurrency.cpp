#include "common/Concurrency.h"

#include <cstring>

#include "common/Report.hpp"
#include "platform/mavo/WorkerPerThread.h"
#include "platform/osapi/GlobalLock.h"
#include "platform/osapi/Heap.h"
#include "platform/osapi/Thread.h"
#include "platform/osapi/Utility.h"

struct BRELConcurrencyImpl {
    MAVOWorkerFactory *_workerFactory;
    MAVOWorkerPerThread *_workerPerThread;
};

// `ACTION` is "entering" or "leaving". A thread that has no worker shows as the stand-in.
#define BREL_CONCURRENCY_TRACE(ACTION, WORKER, AREA)                                               \
    ZUV_LOG_PLAIN(BREL, 0x40u, BREL_SUBMODULE_CONCURRENCY,                                         \
                  "[SERVICE|CONCURRENCY] worker %s: " ACTION " EA level %d\n", (WORKER)._name,     \
                  MAVOExclusiveArea_getLevel(AREA))

namespace
{

constexpr const char *kTag = "BRELConcurrency";
constexpr int kWorkersAtStart = 2;
constexpr size_t kWorkerNameSize = 64;

// The parts of the object, under the global lock. False after a report.
bool build(BRELConcurrency &self)
{
    self._workerFactory = MAVOWorkerFactory_new(kWorkersAtStart);
    if (self._workerFactory == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "MAVOWorkerFactory");
        return false;
    }
    self._workerPerThread = MAVOWorkerPerThread_new(self._workerFactory);
    if (self._workerPerThread == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "MAVOWorkerPerThread");
        return false;
    }
    return true;
}

// Release the object, half-made or whole.
void destroy(BRELConcurrency *self)
{
    if (self->_workerPerThread != nullptr) {
        MAVOWorkerPerThread_delete(self->_workerPerThread);
        self->_workerPerThread = nullptr;
    }
    if (self->_workerFactory != nullptr) {
        MAVOWorkerFactory_delete(self->_workerFactory);
        self->_workerFactory = nullptr;
    }
    ZUVOsapiHeap_free(self);
}

// The same under the global lock. False, and nothing done, after a report when that is refused.
bool destroyUnderGlobalLock(BRELConcurrency *self)
{
    if (ZUVOsapi_global_lock() != 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "take global lock");
        return false;
    }
    destroy(self);
    if (ZUVOsapi_global_unlock() != 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "give global lock");
    }
    return true;
}

} // namespace

extern "C" {

const int BRELConcurrency_SERVICE_EA_LEVEL = 10;
const int BRELConcurrency_ADMINISTRATION_WSR_EA_LEVEL = 11;
const int BRELConcurrency_MONITORING_EA_LEVEL = 12;
const int BRELConcurrency_MONITORABLE_EA_LEVEL = 13;
const int BRELConcurrency_DISCOVERY_EA_LEVEL = 14;
const int BRELConcurrency_CONNECTION_EA_LEVEL = 20;
const int BRELConcurrency_SESSION_WSR_EA_LEVEL = 30;
const int BRELConcurrency_DDS_CONNECTION_INPUT_STREAM_EA_LEVEL = 130;
const int BRELConcurrency_DDS_CONNECTION_OUTPUT_STREAM_EA_LEVEL = 131;
const int BRELConcurrency_DDS_FILTER_EVENT_TRACKER_EA_LEVEL = 132;
const int BRELConcurrency_DDS_ADAPTER_EA_LEVEL = 133;

BRELConcurrency *BRELConcurrency_new(void)
{
    if (ZUVOsapi_global_lock() != 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "take global lock");
        return nullptr;
    }
    auto *self =
        static_cast<BRELConcurrency *>(ZUVOsapiHeap_allocateZeroed(sizeof(BRELConcurrency), kTag));
    if (self == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                                 static_cast<int>(sizeof(BRELConcurrency)));
    }
    const bool isBuilt = self != nullptr && build(*self);
    if (ZUVOsapi_global_unlock() != 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "give global lock");
    }
    if (!isBuilt && self != nullptr) {
        if (!destroyUnderGlobalLock(self)) {
            destroy(self); // nobody else knows of it
        }
        return nullptr;
    }
    return self;
}

void BRELConcurrency_delete(BRELConcurrency *instance)
{
    if (!BREL_CONCURRENCY_IS_NULL(instance)) {
        destroyUnderGlobalLock(instance);
    }
}

MAVOWorker *BRELConcurrency_getWorker(BRELConcurrency *self)
{
    return BREL_CONCURRENCY_IS_NULL(self) ? nullptr
                                          : MAVOWorkerPerThread_getWorker(self->_workerPerThread);
}

MAVOWorker *BRELConcurrency_createWorker(BRELConcurrency *self, const char *workerBaseName)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(workerBaseName) ||
        BREL_CONCURRENCY_PRECONDITION(std::strlen(workerBaseName) == 0,
                                      "strlen(workerBaseName) == 0") ||
        BREL_CONCURRENCY_IS_NULL(self->_workerPerThread)) {
        return nullptr;
    }
    char name[kWorkerNameSize];
    if (ZUVOsapiUtility_snprintf(
            name, sizeof(name), "%s_%#llx", workerBaseName,
            static_cast<unsigned long long>(ZUVOsapiThread_getCurrentThreadID())) < 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "generate worker name");
        return nullptr;
    }
    return MAVOWorkerPerThread_createWorker(self->_workerPerThread, name);
}

void BRELConcurrency_deleteWorker(BRELConcurrency *self)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(self->_workerPerThread)) {
        return;
    }
    MAVOWorkerPerThread_deleteWorker(self->_workerPerThread);
}

MAVOExclusiveArea *BRELConcurrency_createExclusiveArea(BRELConcurrency *self, int level,
                                                       const char *name)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_PRECONDITION(level < 1, "level < 1") ||
        BREL_CONCURRENCY_IS_NULL(name)) {
        return nullptr;
    }
    MAVOExclusiveArea *ea =
        MAVOWorkerFactory_createExclusiveAreaEx(self->_workerFactory, level, name);
    if (ea == nullptr) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, name);
    }
    return ea;
}

void BRELConcurrency_deleteExclusiveArea(BRELConcurrency *self, MAVOExclusiveArea *ea)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(ea)) {
        return;
    }
    MAVOWorkerFactory_destroyExclusiveArea(self->_workerFactory, ea);
}

int BRELConcurrency_enterExclusiveArea(BRELConcurrency *self, MAVOExclusiveArea *ea)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(ea)) {
        return 0;
    }
    MAVOWorker *worker = BRELConcurrency_getWorker(self);
    BREL_CONCURRENCY_TRACE("entering", *worker, ea);
    if (MAVOWorker_enterExclusiveArea(worker, nullptr, ea) == 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "MAVOWorker_enterExclusiveArea");
        return 0;
    }
    return 1;
}

int BRELConcurrency_leaveExclusiveArea(BRELConcurrency *self, MAVOExclusiveArea *ea)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(ea)) {
        return 0;
    }
    MAVOWorker *worker = BRELConcurrency_getWorker(self);
    BREL_CONCURRENCY_TRACE("leaving", *worker, ea);
    if (MAVOWorker_leaveExclusiveArea(worker, nullptr, ea) == 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "MAVOWorker_leaveExclusiveArea");
        return 0;
    }
    return 1;
}

int BRELExclusiveAreaGuard_enter(BRELExclusiveAreaGuard *self, MAVOExclusiveArea *ea,
                                 BRELConcurrency *concurrency)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(ea) ||
        BREL_CONCURRENCY_IS_NULL(concurrency)) {
        return 0;
    }
    self->_ea = ea;
    if (MAVOWorker_enterExclusiveArea(BRELConcurrency_getWorker(concurrency), nullptr, ea) == 0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "MAVOWorker_enterExclusiveArea");
        return 0;
    }
    self->_isInEA = 1;
    return 1;
}

int BRELExclusiveAreaGuard_leave(BRELExclusiveAreaGuard *self, BRELConcurrency *concurrency)
{
    if (BREL_CONCURRENCY_IS_NULL(self) || BREL_CONCURRENCY_IS_NULL(concurrency)) {
        return 0;
    }
    if (self->_isInEA == 0) {
        return 1;
    }
    if (MAVOWorker_leaveExclusiveArea(BRELConcurrency_getWorker(concurrency), nullptr, self->_ea) ==
        0) {
        BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "MAVOWorker_leaveExclusiveArea");
        return 0;
    }
    self->_isInEA = 0;
    return 1;
}
}
