#include "platform/mavo/Worker.h"

#include "platform/mavo/ExclusiveArea.hpp"
#include "platform/mavo/Report.hpp"
#include "platform/osapi/Fault.h"

namespace
{

// Only the worker itself could have stored itself there, so no lock is needed to know.
bool isIn(const MAVOWorker &worker, const MAVOExclusiveArea &area)
{
    return area.holder.load(std::memory_order_relaxed) == &worker;
}

void enter(MAVOWorker &worker, MAVOExclusiveArea &area)
{
    area.lock.lock();
    area.holder.store(&worker, std::memory_order_relaxed);
    area.entryCount = 1;
    MAVOInlineList_addNodeToBackEA(&worker._inEA, &area.inWorker);
    worker._inEaMaxLevelPtr = &area;
}

// Why the worker may not enter, or NULL. The text completes "worker 'name' ...".
const char *findRefusal(const MAVOWorker &worker)
{
    if (worker._factory == nullptr) {
        return "may enter none";
    }
    return ZUV_OSAPI_FAULT("exclusive_area.enter") ? "is refused by the system" : nullptr;
}

} // namespace

namespace zuv
{

void leaveAtOnce(MAVOWorker &worker, MAVOExclusiveArea &area)
{
    MAVOInlineList_removeNodeEA(&worker._inEA, &area.inWorker);
    // The list has the order of entering, and so that of the levels.
    worker._inEaMaxLevelPtr =
        reinterpret_cast<MAVOExclusiveArea *>(MAVOInlineList_getLast(&worker._inEA));
    area.holder.store(nullptr, std::memory_order_relaxed);
    area.lock.unlock();
}

} // namespace zuv

extern "C" {

MAVOWorker MAVOWorker_g_none = {{}, nullptr, "(no worker)", {}, nullptr};

int MAVOExclusiveArea_getLevel(const MAVOExclusiveArea *self)
{
    return self->level;
}

const char *MAVOExclusiveArea_getName(const MAVOExclusiveArea *self)
{
    return self->name;
}

int MAVOWorker_enterExclusiveArea(MAVOWorker *self, void *reserved, MAVOExclusiveArea *ea)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(ea) ||
        ZUV_CONCURRENCY_IS_NOT_NULL(reserved)) {
        return 0;
    }
    if (const char *refusal = findRefusal(*self)) {
        ZUV_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILURE_TEMPLATE,
                                     "enter exclusive area '%s' of level %d: worker '%s' %s",
                                     ea->name, ea->level, self->_name, refusal);
        return 0;
    }
    if (isIn(*self, *ea)) {
        ++ea->entryCount;
        return 1;
    }
    const MAVOExclusiveArea *held = self->_inEaMaxLevelPtr;
    if (held != nullptr && ea->level <= held->level) {
        ZUV_CONCURRENCY_FAILURE_TEXT(
            &ZUV_LOG_FAILURE_TEMPLATE,
            "enter exclusive area '%s' of level %d: worker '%s' is in '%s' of level %d", ea->name,
            ea->level, self->_name, held->name, held->level);
        return 0;
    }
    enter(*self, *ea);
    return 1;
}

int MAVOWorker_leaveExclusiveArea(MAVOWorker *self, void *reserved, MAVOExclusiveArea *ea)
{
    if (ZUV_CONCURRENCY_IS_NULL(self) || ZUV_CONCURRENCY_IS_NULL(ea) ||
        ZUV_CONCURRENCY_IS_NOT_NULL(reserved)) {
        return 0;
    }
    const char *refusal = !isIn(*self, *ea)                         ? "is not in it"
                          : ZUV_OSAPI_FAULT("exclusive_area.leave") ? "is refused by the system"
                                                                    : nullptr;
    if (refusal != nullptr) {
        ZUV_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILURE_TEMPLATE,
                                     "leave exclusive area '%s' of level %d: worker '%s' %s",
                                     ea->name, ea->level, self->_name, refusal);
        return 0;
    }
    if (--ea->entryCount == 0) {
        zuv::leaveAtOnce(*self, *ea);
    }
    return 1;
}
}
