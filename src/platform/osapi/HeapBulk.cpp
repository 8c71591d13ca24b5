#include "platform/osapi/HeapBulk.hpp"

#include <algorithm>
#include <atomic>
#include <bit>
#include <new>

#include "platform/osapi/HeapAccount.hpp"
#include "platform/osapi/HeapPages.hpp"

namespace zuv_heap
{

// Stands before the blocks of a chunk.
struct alignas(kAlignment) Chunk {
    // Counts down from 0 while the chunk is carved; afterwards it is the number of the blocks that are left.
    std::atomic<std::int64_t> leftCount{0};

    static void change(Chunk *chunk, std::int64_t count)
    {
        if (chunk->leftCount.fetch_add(count, std::memory_order_acq_rel) + count == 0) {
            std::free(chunk);
        }
    }
};
static_assert(sizeof(Chunk) == sizeof(Header));

namespace
{

constexpr std::size_t kWorthwhile = 128 * 1024;
constexpr std::size_t kLeastChunk = 16 * 1024;
constexpr std::size_t kGreatestChunk = 32 * 1024 * 1024;
static_assert(kGreatestChunk / sizeof(Header) < std::size_t{1} << (32 - kTagFieldBits));
// Left to malloc, so that a large chunk with all that belongs to it is a whole number of pages, of large ones too.
constexpr std::size_t kForMalloc = 32;
// Of what a bulk has, so much may remain without use in its last chunk.
constexpr std::size_t kShareOfLast = 64;

} // namespace

void Bulk::open(std::size_t expectedSize)
{
    if (depth_++ == 0) {
        expectedSize_ = expectedSize;
        size_ = 0;
    }
}

bool Bulk::close()
{
    if (--depth_ != 0 || chunk_ == nullptr) {
        return false;
    }
    closeChunk();
    return true;
}

// Half of what is still to come, so that the chunks become smaller towards the end.
std::size_t Bulk::nextChunkSize() const
{
    const std::size_t toCome = expectedSize_ > size_ ? expectedSize_ - size_ : 0;
    const std::size_t wanted = std::max(toCome / 2, size_ / kShareOfLast);
    return std::bit_floor(std::clamp(wanted, kLeastChunk, kGreatestChunk));
}

bool Bulk::openChunk(std::size_t blockSize)
{
    if (std::max(size_, expectedSize_) < kWorthwhile) {
        size_ += blockSize;
        return false;
    }
    closeChunk();
    const std::size_t size = nextChunkSize() - kForMalloc;
    void *const room = std::malloc(size);
    if (room == nullptr) {
        return false;
    }
    if (size >= kLeastForLargePages) {
        preferLargePages(room, size);
    }
    if (size > kLeastChunk) {
        takePages(room, size);
    }
    size_ += size;
    chunk_ = new (room) Chunk;
    cursor_ = static_cast<char *>(room) + sizeof(Chunk);
    end_ = static_cast<char *>(room) + size;
    return true;
}

void Bulk::closeChunk()
{
    if (chunk_ != nullptr) {
        Chunk::change(chunk_, carvedCount_);
    }
    chunk_ = nullptr;
    cursor_ = end_ = nullptr;
    carvedCount_ = 0;
}

void giveBack(Header *header)
{
    if (const std::uint32_t place = header->place()) {
        Chunk::change(reinterpret_cast<Chunk *>(header - place), -1);
    } else {
        std::free(header);
    }
}

BulkScope::BulkScope(std::size_t expectedSize)
    : isOpen_(!kIsEachBlockOfMalloc && ownAccount() != nullptr)
{
    if (isOpen_) {
        t_account->bulk.open(expectedSize);
    }
}

BulkScope::~BulkScope()
{
    if (isOpen_ && t_account->bulk.close()) {
        t_account->cache.flush();
    }
}

} // namespace zuv_heap
