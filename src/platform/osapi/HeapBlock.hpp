// What stands before every block of the heap.
#ifndef ZUV_PLATFORM_OSAPI_HEAP_BLOCK_HPP
#define ZUV_PLATFORM_OSAPI_HEAP_BLOCK_HPP

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace zuv_heap
{

constexpr std::size_t kAlignment = 16;
constexpr std::uint32_t kLiveMark = 0x4c495645;
constexpr std::uint32_t kFreeMark = 0x46524545;

constexpr std::uint32_t kTagFieldBits = 10;
constexpr std::uint32_t kTagFieldMask = (1u << kTagFieldBits) - 1;

struct alignas(kAlignment) Header {
    union {
        std::size_t size; // as asked for
        Header *next;     // of a block that waits
    };
    // The number of the tag in the lowest bits; above them how many headers the block stands behind the start
    // of its chunk, 0 for a block of malloc's.
    std::uint32_t tagAndPlace;
    std::uint32_t mark;

    std::uint32_t tag() const { return tagAndPlace & kTagFieldMask; }
    void setTag(std::uint32_t tag) { tagAndPlace = (tagAndPlace & ~kTagFieldMask) | tag; }
    std::uint32_t place() const { return tagAndPlace >> kTagFieldBits; }
    void setPlace(std::uint32_t place) { tagAndPlace = place << kTagFieldBits; }
};
static_assert(sizeof(Header) == kAlignment);

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsEachBlockOfMalloc = true; // or the sanitizer would not see how blocks are used
#else
constexpr bool kIsEachBlockOfMalloc = false;
#endif

// Classes of sizes are those of malloc's blocks, so that what is rounded up costs no memory.
constexpr std::size_t kClassStep = 16;
constexpr std::size_t kClassCount = 33;

constexpr std::size_t classOf(std::size_t size)
{
    return (size + kClassStep / 2 - 1) / kClassStep;
}
// The most bytes that a block of the class has room for.
constexpr std::size_t roomOf(std::size_t sizeClass)
{
    return sizeClass * kClassStep + kClassStep / 2;
}
constexpr std::size_t kSmallSize = roomOf(kClassCount - 1);

// The header of a block of ours. Anything else, a block released before included, ends the process here,
// where the stack still shows who did it.
inline Header *headerOf(void *block)
{
    Header *header = static_cast<Header *>(block) - 1;
    if (header->mark != kLiveMark) [[unlikely]] {
        std::abort();
    }
    return header;
}

// The size of a block, without a call.
inline std::size_t sizeOf(const void *block)
{
    return headerOf(const_cast<void *>(block))->size;
}

// Give the memory of a block back to where it comes from.
void giveBack(Header *header);

} // namespace zuv_heap

#endif
