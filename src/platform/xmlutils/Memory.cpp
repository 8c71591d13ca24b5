#include "platform/xmlutils/Memory.hpp"

#include <algorithm>
#include <cstring>

#include <libxml/xmlmemory.h>

#include "platform/osapi/HeapBlock.hpp"
#include "platform/xmlutils/Reserve.hpp"

namespace zuv::xmlutils
{
namespace
{

constexpr const char *kTag = "xml";

thread_local std::uint32_t t_refusedAllocations = 0;
thread_local int t_reserveScopes = 0;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMayCache = false; // a block that waits would hide its uses
#else
constexpr bool kMayCache = true;
#endif

// Blocks by their size in steps, each list through the first word of the blocks.
class BlockCache
{
public:
    static constexpr std::size_t kStep = 16;
    static constexpr std::size_t kSizeMax = 512;

    void flush()
    {
        for (List &list : lists_) {
            while (void *const block = list.pop()) {
                ZUVOsapiHeap_free(block);
            }
        }
    }

    void *take(std::size_t size) { return lists_[(size - 1) / kStep].pop(); }

    // False if there is no room for it.
    bool give(void *block)
    {
        const std::size_t size = zuv_heap::sizeOf(block);
        return size - 1 < kSizeMax && size % kStep == 0 && lists_[(size - 1) / kStep].push(block);
    }

    static bool isSmall(std::size_t size) { return size - 1 < kSizeMax; }
    static std::size_t roundUp(std::size_t size) { return (size + kStep - 1) / kStep * kStep; }

private:
    struct List {
        void *first = nullptr;
        int count = 0;

        void *pop()
        {
            void *const block = first;
            if (block != nullptr) {
                std::memcpy(&first, block, sizeof(first));
                --count;
            }
            return block;
        }
        bool push(void *block)
        {
            constexpr int kCountMax = 64;
            if (count == kCountMax) {
                return false;
            }
            std::memcpy(block, &first, sizeof(first));
            first = block;
            ++count;
            return true;
        }
    };

    List lists_[kSizeMax / kStep];
};
constinit thread_local BlockCache t_cache;
// Looked at for each block of libxml2: without a call, which other models of thread storage need in a shared library.
[[gnu::tls_model("initial-exec")]] constinit thread_local int t_cacheScopes = 0;

void *allocateFromReserve(std::size_t size)
{
    ++t_refusedAllocations;
    return t_reserveScopes != 0 ? Reserve::instance().allocate(size) : nullptr;
}

void *allocate(std::size_t size)
{
    if (t_cacheScopes != 0 && BlockCache::isSmall(size)) {
        if (void *const waiting = t_cache.take(size)) {
            return waiting;
        }
        size = BlockCache::roundUp(size);
    }
    void *const block = ZUVOsapiHeap_allocate(size, kTag);
    return block != nullptr ? block : allocateFromReserve(size);
}

void release(void *block)
{
    if (Reserve::holds(block)) {
        Reserve::instance().free(block);
    } else if (block == nullptr || t_cacheScopes == 0 || !t_cache.give(block)) {
        ZUVOsapiHeap_free(block);
    }
}

void *reallocate(void *block, std::size_t size)
{
    const bool isReserve = Reserve::holds(block);
    if (!isReserve && ZUVOsapiHeap_reallocate(&block, size, kTag)) {
        return block;
    }
    const std::size_t before =
        isReserve ? Reserve::sizeOf(block) : ZUVOsapiHeap_getBlockSize(block);
    void *const moved = isReserve ? allocate(size) : allocateFromReserve(size);
    if (moved != nullptr && block != nullptr) {
        std::memcpy(moved, block, std::min(before, size));
        release(block);
    }
    return moved;
}

char *duplicate(const char *text)
{
    const std::size_t size = std::strlen(text) + 1;
    void *const copy = allocate(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

} // namespace

bool installMemoryFunctions()
{
    return xmlMemSetup(&release, &allocate, &reallocate, &duplicate) == 0;
}

ReserveScope::ReserveScope()
{
    ++t_reserveScopes;
}

ReserveScope::~ReserveScope()
{
    --t_reserveScopes;
}

BlockCacheScope::BlockCacheScope()
{
    t_cacheScopes += kMayCache;
}

BlockCacheScope::~BlockCacheScope()
{
    if (kMayCache && --t_cacheScopes == 0) {
        t_cache.flush();
    }
}

std::uint32_t refusedAllocations()
{
    return t_refusedAllocations;
}

} // namespace zuv::xmlutils
