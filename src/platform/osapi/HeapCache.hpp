// Small blocks that a thread has released wait for its next demands: a few instructions each way.
#ifndef ZUV_PLATFORM_OSAPI_HEAP_CACHE_HPP
#define ZUV_PLATFORM_OSAPI_HEAP_CACHE_HPP

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/osapi/HeapBlock.hpp"

namespace zuv_heap
{

class BlockCache
{
public:
    // Null if none of the class waits.
    Header *take(std::size_t sizeClass)
    {
        List &list = lists_[sizeClass];
        Header *const header = list.first;
        if (header != nullptr) {
            list.first = header->next;
            --list.count;
        }
        return header;
    }

    // False if enough wait already.
    bool give(std::size_t sizeClass, Header *header)
    {
        List &list = lists_[sizeClass];
        if (kIsEachBlockOfMalloc || list.count == kCountMax) {
            return false;
        }
        header->next = list.first;
        list.first = header;
        ++list.count;
        return true;
    }

    void flush()
    {
        for (std::size_t sizeClass = 0; sizeClass < kClassCount; ++sizeClass) {
            while (Header *const header = take(sizeClass)) {
                giveBack(header);
            }
        }
    }

private:
    static constexpr std::uint32_t kCountMax = 32;

    struct List {
        Header *first = nullptr;
        std::uint32_t count = 0;
    };

    std::array<List, kClassCount> lists_;
};

} // namespace zuv_heap

#endif
