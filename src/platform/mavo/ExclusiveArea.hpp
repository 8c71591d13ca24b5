// What an exclusive area is made of.
#ifndef ZUV_PLATFORM_MAVO_EXCLUSIVE_AREA_HPP
#define ZUV_PLATFORM_MAVO_EXCLUSIVE_AREA_HPP

#include <atomic>
#include <cstdint>
#include <mutex>
#include <type_traits>

#include "platform/mavo/ExclusiveArea.h"
#include "platform/mavo/InlineList.h"
#include "platform/mavo/Worker.h"

struct MAVOExclusiveArea {
    MAVOInlineListNode inWorker = {}; // first: the worker's list leads from a node to its area
    MAVOInlineListNode inFactory = {};
    int level = 0;
    char *name = nullptr;
    std::mutex lock;
    // The worker that is in the area. It alone stores itself here, so what others read only tells that they
    // are not in it.
    std::atomic<const MAVOWorker *> holder = nullptr;
    uint64_t entryCount = 0; // of the holder
};
static_assert(std::is_standard_layout_v<MAVOExclusiveArea>);

namespace zuv
{

// Undo all entries of the worker, which is in the area.
void leaveAtOnce(MAVOWorker &worker, MAVOExclusiveArea &area);

} // namespace zuv

#endif
