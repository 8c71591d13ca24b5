#include "platform/osapi/Heap.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/osapi/Fault.h"
#include "platform/osapi/HeapAccount.hpp"
#include "platform/osapi/HeapBlock.hpp"
#include "platform/osapi/HeapPages.hpp"

using namespace zuv_heap;

namespace
{

constexpr const char *kBufferTag = "aligned buffer";
constexpr const char *kNoTag = "(no tag)";

// The size that malloc is asked for, or 0 when it would overflow. At least one byte stands behind the
// header, so that a block of size 0 has an address of its own.
size_t rawSize(size_t size)
{
    if (size <= kSmallSize) {
        return sizeof(Header) + roomOf(classOf(size));
    }
    return size > PTRDIFF_MAX - sizeof(Header) ? 0 : sizeof(Header) + size;
}

std::uint32_t numberOf(const char *tag)
{
    return tagNumber(tag != nullptr ? tag : kNoTag);
}

bool mayAllocate()
{
    return !ZUV_OSAPI_FAULT(ZUV_OSAPI_FAULT_POINT_HEAP);
}

// Make a block of what stands behind the header.
[[gnu::always_inline]] inline void *finishBlock(Account *account, Header *header, size_t size,
                                                const char *tag)
{
    const std::uint32_t number = numberOf(tag);
    account != nullptr ? countAllocation(*account, number, size)
                       : countAllocationApart(number, size);
    header->setTag(number);
    header->size = size;
    header->mark = kLiveMark;
    return header + 1;
}

// A block of malloc's, which may have none.
void *finishRaw(void *raw, size_t size, const char *tag)
{
    if (raw == nullptr) {
        return nullptr;
    }
    Header *const header = static_cast<Header *>(raw);
    header->setPlace(0);
    return finishBlock(ownAccount(), header, size, tag);
}

// No block waits.
[[gnu::noinline]] void *allocateNew(size_t size, const char *tag)
{
    const size_t raw = rawSize(size);
    if (raw == 0) {
        return nullptr;
    }
    Account *const account = t_account;
    if (account != nullptr && account->bulk.isOpen() && size <= Bulk::kGreatestBlock) {
        if (Header *const header = account->bulk.carve(raw - sizeof(Header))) {
            return finishBlock(account, header, size, tag);
        }
    }
    void *const block = std::malloc(raw);
    if (raw >= kLeastForLargePages && block != nullptr) {
        preferLargePages(block, raw);
    }
    return finishRaw(block, size, tag);
}

// A block carved from a chunk cannot grow: its content moves.
Header *resizeRaw(Header *header, size_t size)
{
    if (header == nullptr || header->place() == 0) {
        return static_cast<Header *>(std::realloc(header, rawSize(size)));
    }
    auto *const moved = static_cast<Header *>(std::malloc(rawSize(size)));
    if (moved != nullptr) {
        std::memcpy(moved + 1, header + 1, std::min(header->size, size));
        header->mark = kFreeMark;
        giveBack(header);
    }
    return moved;
}

} // namespace

extern "C" {

void *ZUVOsapiHeap_allocate(size_t size, const char *tag)
{
    if (!mayAllocate()) [[unlikely]] {
        return nullptr;
    }
    Account *const account = t_account;
    if (account != nullptr && size <= kSmallSize) [[likely]] {
        if (Header *const waiting = account->cache.take(classOf(size))) {
            return finishBlock(account, waiting, size, tag);
        }
    }
    return allocateNew(size, tag);
}

void *ZUVOsapiHeap_allocateZeroed(size_t size, const char *tag)
{
    if (size <= kSmallSize) {
        void *const block = ZUVOsapiHeap_allocate(size, tag);
        return block != nullptr ? std::memset(block, 0, size) : nullptr;
    }
    const size_t raw = rawSize(size);
    return raw != 0 && mayAllocate() ? finishRaw(std::calloc(1, raw), size, tag) : nullptr;
}

int ZUVOsapiHeap_reallocate(void **buffer, size_t size, const char *tag)
{
    if (rawSize(size) == 0 || !mayAllocate()) {
        return 0;
    }
    const bool isNew = *buffer == nullptr;
    Header *header = isNew ? nullptr : headerOf(*buffer);
    const Header before = isNew ? Header{} : *header;
    void *moved = resizeRaw(header, size);
    if (moved == nullptr) {
        return 0;
    }
    if (!isNew) {
        countRelease(before.tag(), before.size);
    }
    *buffer = finishRaw(moved, size, tag);
    return 1;
}

void ZUVOsapiHeap_free(void *block)
{
    if (block == nullptr) {
        return;
    }
    Header *const header = headerOf(block);
    const size_t size = header->size;
    Account *const account = ownAccount();
    header->mark = kFreeMark;
    if (account == nullptr) [[unlikely]] {
        countReleaseApart(header->tag(), size);
        giveBack(header);
        return;
    }
    countRelease(*account, header->tag(), size);
    // A block that waits would keep its whole chunk.
    const bool mayWait = size <= kSmallSize && (header->place() == 0 || account->bulk.isOpen());
    if (!mayWait || !account->cache.give(classOf(size), header)) {
        giveBack(header);
    }
}

void *ZUVOsapiHeap_allocateBufferAligned(size_t size, size_t alignment)
{
    const bool isPowerOfTwo = alignment != 0 && (alignment & (alignment - 1)) == 0;
    return isPowerOfTwo && alignment <= kAlignment ? ZUVOsapiHeap_allocate(size, kBufferTag)
                                                   : nullptr;
}

void ZUVOsapiHeap_freeBufferAligned(void *block)
{
    ZUVOsapiHeap_free(block);
}

size_t ZUVOsapiHeap_getBlockSize(const void *block)
{
    return block != nullptr ? sizeOf(block) : 0;
}

void ZUVOsapiHeap_getStatistics(ZUVOsapiHeapStatistics *statistics)
{
    *statistics = zuv_heap::statistics();
}

void ZUVOsapiHeap_visitTags(ZUVOsapiHeapTagVisitor visitor, void *visitorData)
{
    zuv_heap::visitTags(visitor, visitorData);
}
}
