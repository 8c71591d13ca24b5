#include "platform/mavo/WorkerPerThread.h"

#include <pthread.h>

#include "platform/mavo/Report.hpp"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"

struct MAVOWorkerPerThread {
    MAVOWorkerFactory *factory;
    pthread_key_t storage;
};

namespace
{

constexpr const char *kTag = "MAVOWorkerPerThread";

MAVOWorker *find(const MAVOWorkerPerThread &self)
{
    return static_cast<MAVOWorker *>(pthread_getspecific(self.storage));
}

void destroy(void *worker)
{
    auto *const former = static_cast<MAVOWorker *>(worker);
    MAVOWorkerFactory_destroyWorker(former->_factory, former);
}

bool store(const MAVOWorkerPerThread &self, MAVOWorker *worker)
{
    return !ZUV_OSAPI_FAULT("thread.store") && pthread_setspecific(self.storage, worker) == 0;
}

} // namespace

extern "C" {

MAVOWorkerPerThread *MAVOWorkerPerThread_new(MAVOWorkerFactory *factory)
{
    if (ZUV_CONCURRENCY_IS_NULL(factory)) {
        return nullptr;
    }
    auto *self = zuv::newObject<MAVOWorkerPerThread>(kTag, factory, pthread_key_t{});
    if (self == nullptr) {
        ZUV_CONCURRENCY_OUT_OF_MEMORY(MAVOWorkerPerThread);
        return nullptr;
    }
    // A thread that ends with a worker gives it back at that moment.
    if (ZUV_OSAPI_FAULT("thread.create_storage") ||
        pthread_key_create(&self->storage, destroy) != 0) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "thread-specific storage");
        zuv::deleteObject(self);
        return nullptr;
    }
    return self;
}

void MAVOWorkerPerThread_delete(MAVOWorkerPerThread *self)
{
    if (ZUV_CONCURRENCY_IS_NULL(self)) {
        return;
    }
    MAVOWorkerPerThread_deleteWorker(self);
    pthread_key_delete(self->storage);
    zuv::deleteObject(self);
}

MAVOWorker *MAVOWorkerPerThread_createWorker(MAVOWorkerPerThread *self, const char *name)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(name)) {
        return nullptr;
    }
    if (const MAVOWorker *present = find(*self)) {
        ZUV_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE,
                                     "worker '%s': the thread has '%s'", name, present->_name);
        return nullptr;
    }
    MAVOWorker *worker = MAVOWorkerFactory_createWorker(self->factory, name);
    if (worker == nullptr) {
        return nullptr;
    }
    if (!store(*self, worker)) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_ASSERT_FAILURE_s, "worker of the thread");
        destroy(worker);
        return nullptr;
    }
    return worker;
}

MAVOWorker *MAVOWorkerPerThread_getWorker(MAVOWorkerPerThread *self)
{
    if (ZUV_CONCURRENCY_IS_NULL(self)) {
        return &MAVOWorker_g_none;
    }
    MAVOWorker *worker = find(*self);
    return worker != nullptr ? worker : &MAVOWorker_g_none;
}

void MAVOWorkerPerThread_deleteWorker(MAVOWorkerPerThread *self)
{
    if (ZUV_CONCURRENCY_IS_NULL(self)) {
        return;
    }
    MAVOWorker *worker = find(*self);
    if (worker != nullptr) {
        // Storing nothing cannot fail where something is stored.
        pthread_setspecific(self->storage, nullptr);
        destroy(worker);
    }
}
}
