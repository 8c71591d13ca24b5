#include "platform/osapi/Heap.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/osapi/Fault.h"

// Every block stands behind a header. Its bytes and number are counted under its tag; the sums over the
// tags are the counters of the process, so that an allocation touches no more than two cache lines.
namespace
{

constexpr const char *kBufferTag = "aligned buffer";
constexpr const char *kNoTag = "(no tag)";
constexpr const char *kOtherTags = "(other tags)";
constexpr size_t kAlignment = 16;
constexpr uint32_t kLiveMark = 0x4c495645;
constexpr uint32_t kFreeMark = 0x46524545;
constexpr size_t kTagBits = 9;
constexpr size_t kTagCount = size_t{1} << kTagBits;

struct alignas(kAlignment) Header {
    size_t size;
    uint32_t tagIndex;
    uint32_t mark;
};
static_assert(sizeof(Header) == kAlignment);

struct alignas(64) Tag {
    std::atomic<const char *> name{nullptr};
    std::atomic<uint64_t> allocationCount{0};
    std::atomic<uint64_t> releaseCount{0};
    std::atomic<uint64_t> byteCount{0};
};

// Open addressing by the pointer of the tag. The slot behind the table takes what finds no room in it.
std::array<Tag, kTagCount + 1> g_tags;
std::atomic<uint64_t> g_liveByteCount{0};
std::atomic<uint64_t> g_peakByteCount{0};

uint32_t findTag(const char *name)
{
    constexpr uint64_t kGoldenRatio = 0x9e3779b97f4a7c15;
    const size_t home = (reinterpret_cast<uintptr_t>(name) * kGoldenRatio) >> (64 - kTagBits);
    for (size_t step = 0; step < kTagCount; ++step) {
        const size_t index = (home + step) % kTagCount;
        const char *present = g_tags[index].name.load(std::memory_order_relaxed);
        if (present == name) {
            return static_cast<uint32_t>(index);
        }
        if (present == nullptr &&
            (g_tags[index].name.compare_exchange_strong(present, name, std::memory_order_relaxed) ||
             present == name)) {
            return static_cast<uint32_t>(index);
        }
    }
    g_tags[kTagCount].name.store(kOtherTags, std::memory_order_relaxed);
    return kTagCount;
}

void countBlock(const Header &header)
{
    Tag &tag = g_tags[header.tagIndex];
    tag.allocationCount.fetch_add(1, std::memory_order_relaxed);
    tag.byteCount.fetch_add(header.size, std::memory_order_relaxed);
    const uint64_t live =
        g_liveByteCount.fetch_add(header.size, std::memory_order_relaxed) + header.size;
    uint64_t peak = g_peakByteCount.load(std::memory_order_relaxed);
    while (live > peak &&
           !g_peakByteCount.compare_exchange_weak(peak, live, std::memory_order_relaxed)) {
    }
}

void uncountBlock(const Header &header)
{
    Tag &tag = g_tags[header.tagIndex];
    tag.releaseCount.fetch_add(1, std::memory_order_relaxed);
    tag.byteCount.fetch_sub(header.size, std::memory_order_relaxed);
    g_liveByteCount.fetch_sub(header.size, std::memory_order_relaxed);
}

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
    *header = {size, findTag(tag != nullptr ? tag : kNoTag), kLiveMark};
    countBlock(*header);
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
        uncountBlock(before);
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
    uncountBlock(*header);
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
    *statistics = {};
    for (const Tag &tag : g_tags) {
        const uint64_t released = tag.releaseCount.load(std::memory_order_relaxed);
        const uint64_t allocated = tag.allocationCount.load(std::memory_order_relaxed);
        statistics->allocationCount += allocated;
        statistics->liveBlockCount += allocated - released;
    }
    statistics->liveByteCount = g_liveByteCount.load(std::memory_order_relaxed);
    statistics->peakByteCount = g_peakByteCount.load(std::memory_order_relaxed);
}

void ZUVOsapiHeap_visitTags(ZUVOsapiHeapTagVisitor visitor, void *visitorData)
{
    // Two source files may hold the same text twice: slots of one text are one tag.
    std::array<bool, kTagCount + 1> visited{};
    for (size_t first = 0; first < g_tags.size(); ++first) {
        const char *name = g_tags[first].name.load(std::memory_order_relaxed);
        if (name == nullptr || visited[first]) {
            continue;
        }
        uint64_t blockCount = 0;
        uint64_t byteCount = 0;
        for (size_t index = first; index < g_tags.size(); ++index) {
            const Tag &tag = g_tags[index];
            const char *other = tag.name.load(std::memory_order_relaxed);
            if (other != nullptr && std::string_view(other) == name) {
                visited[index] = true;
                blockCount += tag.allocationCount.load(std::memory_order_relaxed) -
                              tag.releaseCount.load(std::memory_order_relaxed);
                byteCount += tag.byteCount.load(std::memory_order_relaxed);
            }
        }
        if (blockCount != 0) {
            visitor(visitorData, name, blockCount, byteCount);
        }
    }
}
}
