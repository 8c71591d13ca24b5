#include "platform/osapi/Heap.h"

#include <cstdint>
#include <cstdlib>

#include "platform/osapi/Fault.h"
#include "platform/osapi/HeapAccount.hpp"

namespace
{

constexpr const char *kBufferTag = "aligned buffer";
constexpr const char *kNoTag = "(no tag)";
constexpr size_t kAlignment = 16;
constexpr uint32_t kLiveMark = 0x4c495645;
constexpr uint32_t kFreeMark = 0x46524545;

// Stands before every block.
struct alignas(kAlignment) Header {
    size_t size;
    uint32_t tag;
    uint32_t mark;
};
static_assert(sizeof(Header) == kAlignment);

// The header of a block of ours. Anything else, a block released before included, ends the process here,
// where the stack still shows who did it.
Header *headerOf(void *block)
{
    Header *header = static_cast<Header *>(block) - 1;
    if (header->mark != kLiveMark) {
        std::abort();
    }
    return header;
}

// The size that malloc is asked for, or 0 when it would overflow. At least one byte stands behind the
// header, so that a block of size 0 has an address of its own.
size_t rawSize(size_t size)
{
    return size > PTRDIFF_MAX - sizeof(Header) ? 0 : sizeof(Header) + (size != 0 ? size : 1);
}

void *finishBlock(void *raw, size_t size, const char *tag)
{
    if (raw == nullptr) {
        return nullptr;
    }
    Header *header = static_cast<Header *>(raw);
    *header = {size, zuv_heap::countAllocation(tag != nullptr ? tag : kNoTag, size), kLiveMark};
    return header + 1;
}

bool mayAllocate(size_t raw)
{
    return raw != 0 && !ZUV_OSAPI_FAULT(ZUV_OSAPI_FAULT_POINT_HEAP);
}

} // namespace

extern "C" {

void *ZUVOsapiHeap_allocate(size_t size, const char *tag)
{
    const size_t raw = rawSize(size);
    return mayAllocate(raw) ? finishBlock(std::malloc(raw), size, tag) : nullptr;
}

void *ZUVOsapiHeap_allocateZeroed(size_t size, const char *tag)
{
    const size_t raw = rawSize(size);
    return mayAllocate(raw) ? finishBlock(std::calloc(1, raw), size, tag) : nullptr;
}

int ZUVOsapiHeap_reallocate(void **buffer, size_t size, const char *tag)
{
    const size_t raw = rawSize(size);
    if (!mayAllocate(raw)) {
        return 0;
    }
    const bool isNew = *buffer == nullptr;
    Header *header = isNew ? nullptr : headerOf(*buffer);
    const Header before = isNew ? Header{} : *header;
    void *moved = std::realloc(header, raw);
    if (moved == nullptr) {
        return 0;
    }
    if (!isNew) {
        zuv_heap::countRelease(before.tag, before.size);
    }
    *buffer = finishBlock(moved, size, tag);
    return 1;
}

void ZUVOsapiHeap_free(void *block)
{
    if (block == nullptr) {
        return;
    }
    Header *header = headerOf(block);
    zuv_heap::countRelease(header->tag, header->size);
    header->mark = kFreeMark;
    std::free(header);
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
    return block != nullptr ? headerOf(const_cast<void *>(block))->size : 0;
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
