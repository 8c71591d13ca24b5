#include "platform/mavo/WorkerFactory.h"

#include <cstddef>
#include <cstring>
#include <mutex>
#include <string_view>

#include "platform/mavo/ExclusiveArea.hpp"
#include "platform/mavo/Report.hpp"
#include "platform/osapi/Object.hpp"

struct MAVOWorkerFactory {
    std::mutex guard;
    MAVOInlineList workers = {};     // that threads have
    MAVOInlineList freeWorkers = {}; // room for the next ones
    MAVOInlineList areas = {};
};

namespace
{

constexpr const char *kFactoryTag = "MAVOWorkerFactory";
constexpr const char *kWorkerTag = "MAVOWorker";
constexpr const char *kAreaTag = "MAVOExclusiveArea";

MAVOWorker *workerOf(MAVOInlineListNode *node)
{
    return reinterpret_cast<MAVOWorker *>(node);
}

MAVOExclusiveArea *areaOf(MAVOInlineListNode *nodeInFactory)
{
    return reinterpret_cast<MAVOExclusiveArea *>(reinterpret_cast<char *>(nodeInFactory) -
                                                 offsetof(MAVOExclusiveArea, inFactory));
}

// Take every node out of the list and give it to `release`.
template <typename Release>
void drain(MAVOInlineList &list, Release release)
{
    while (MAVOInlineListNode *node = MAVOInlineList_getFirst(&list)) {
        MAVOInlineList_removeNodeEA(&list, node);
        release(node);
    }
}

MAVOWorker *newWorker()
{
    auto *worker = zuv::newObject<MAVOWorker>(kWorkerTag);
    if (worker == nullptr) {
        ZUV_CONCURRENCY_OUT_OF_MEMORY(MAVOWorker);
    }
    return worker;
}

void deleteArea(MAVOExclusiveArea *area)
{
    ZUVOsapiHeap_free(area->name);
    zuv::deleteObject(area);
}

// Leave what the worker is in, the innermost area first.
void leaveAll(MAVOWorker &worker)
{
    while (MAVOExclusiveArea *area = worker._inEaMaxLevelPtr) {
        ZUV_CONCURRENCY_FAILURE_TEXT(
            &ZUV_LOG_FAILURE_TEMPLATE,
            "leave exclusive area '%s' of level %d before the end of worker '%s'", area->name,
            area->level, worker._name);
        zuv::leaveAtOnce(worker, *area);
    }
}

} // namespace

extern "C" {

MAVOWorkerFactory *MAVOWorkerFactory_new(int workerCount)
{
    auto *self = zuv::newObject<MAVOWorkerFactory>(kFactoryTag);
    if (self == nullptr) {
        ZUV_CONCURRENCY_OUT_OF_MEMORY(MAVOWorkerFactory);
        return nullptr;
    }
    for (int count = 0; count < workerCount; ++count) {
        MAVOWorker *worker = newWorker();
        if (worker == nullptr) {
            MAVOWorkerFactory_delete(self);
            return nullptr;
        }
        MAVOInlineList_addNodeToBackEA(&self->freeWorkers, &worker->_node);
    }
    return self;
}

void MAVOWorkerFactory_delete(MAVOWorkerFactory *self)
{
    if (ZUV_CONCURRENCY_IS_NULL(self)) {
        return;
    }
    const auto deleteWorker = [](MAVOInlineListNode *node) { zuv::deleteObject(workerOf(node)); };
    drain(self->workers, deleteWorker);
    drain(self->freeWorkers, deleteWorker);
    drain(self->areas, [](MAVOInlineListNode *node) {
        ZUV_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILURE_TEMPLATE,
                                     "delete exclusive area '%s' before its worker factory",
                                     areaOf(node)->name);
        deleteArea(areaOf(node));
    });
    zuv::deleteObject(self);
}

MAVOWorker *MAVOWorkerFactory_createWorker(MAVOWorkerFactory *self, const char *name)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(name)) {
        return nullptr;
    }
    const std::lock_guard lock(self->guard);
    MAVOInlineListNode *node = MAVOInlineList_getFirst(&self->freeWorkers);
    if (node != nullptr) {
        MAVOInlineList_removeNodeEA(&self->freeWorkers, node);
    }
    MAVOWorker *worker = node != nullptr ? workerOf(node) : newWorker();
    if (worker != nullptr) {
        *worker = {};
        worker->_factory = self;
        std::string_view(name).copy(worker->_name, sizeof(worker->_name) - 1);
        MAVOInlineList_addNodeToBackEA(&self->workers, &worker->_node);
    }
    return worker;
}

void MAVOWorkerFactory_destroyWorker(MAVOWorkerFactory *self, MAVOWorker *worker)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(worker)) {
        return;
    }
    leaveAll(*worker);
    const std::lock_guard lock(self->guard);
    MAVOInlineList_removeNodeEA(&self->workers, &worker->_node);
    MAVOInlineList_addNodeToBackEA(&self->freeWorkers, &worker->_node);
}

MAVOExclusiveArea *MAVOWorkerFactory_createExclusiveAreaEx(MAVOWorkerFactory *self, int level,
                                                           const char *name)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(name)) {
        return nullptr;
    }
    auto *area = zuv::newObject<MAVOExclusiveArea>(kAreaTag);
    if (area == nullptr) {
        ZUV_CONCURRENCY_OUT_OF_MEMORY(MAVOExclusiveArea);
        return nullptr;
    }
    const size_t nameSize = std::strlen(name) + 1;
    area->level = level;
    area->name = static_cast<char *>(ZUVOsapiHeap_allocate(nameSize, kAreaTag));
    if (area->name == nullptr) {
        ZUV_CONCURRENCY_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                                static_cast<int>(nameSize - 1));
        deleteArea(area);
        return nullptr;
    }
    std::memcpy(area->name, name, nameSize);
    const std::lock_guard lock(self->guard);
    MAVOInlineList_addNodeToBackEA(&self->areas, &area->inFactory);
    return area;
}

void MAVOWorkerFactory_destroyExclusiveArea(MAVOWorkerFactory *self, MAVOExclusiveArea *ea)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(ea)) {
        return;
    }
    const MAVOWorker *holder = ea->holder.load(std::memory_order_relaxed);
    if (holder != nullptr) {
        // Whose worker that is must not be looked at: it may be gone the next moment.
        ZUV_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILURE_TEMPLATE,
                                     "delete exclusive area '%s' of level %d: a worker is in it",
                                     ea->name, ea->level);
        return;
    }
    {
        const std::lock_guard lock(self->guard);
        MAVOInlineList_removeNodeEA(&self->areas, &ea->inFactory);
    }
    deleteArea(ea);
}
}
