// Many small blocks at once, for what lives long and goes together: the tree of a document, the records of a service.
#ifndef ZUV_PLATFORM_OSAPI_HEAP_BULK_HPP
#define ZUV_PLATFORM_OSAPI_HEAP_BULK_HPP

#include <cstddef>
#include <cstdint>

#include "platform/osapi/HeapBlock.hpp"

namespace zuv_heap
{

struct Chunk;

// Carves blocks one behind the other out of chunks of malloc's. Each is a block as any other; a chunk goes when the last
// of its blocks has been given back. What is given back is not carved again, so that a bulk must end; only while it is
// open do its blocks wait for further demands.
class Bulk
{
public:
    bool isOpen() const { return depth_ != 0; }
    void open(std::size_t expectedSize);
    // True if the bulk is at its end and has carved something.
    bool close();

    static constexpr std::size_t kGreatestBlock = 8 * 1024;

    // A block with room for so many bytes, without size, tag and mark. Null when there is no memory, and for the first
    // blocks, which may well be the last.
    Header *carve(std::size_t room)
    {
        const std::size_t size = (sizeof(Header) + room + kAlignment - 1) & ~(kAlignment - 1);
        if (static_cast<std::size_t>(end_ - cursor_) < size && !openChunk(size)) [[unlikely]] {
            return nullptr;
        }
        Header *const header = reinterpret_cast<Header *>(cursor_);
        header->setPlace(static_cast<std::uint32_t>(header - reinterpret_cast<Header *>(chunk_)));
        cursor_ += size;
        ++carvedCount_;
        return header;
    }

private:
    bool openChunk(std::size_t blockSize);
    void closeChunk();
    std::size_t nextChunkSize() const;

    int depth_ = 0;
    std::size_t expectedSize_ = 0;
    std::size_t size_ = 0; // so far
    Chunk *chunk_ = nullptr;
    char *cursor_ = nullptr;
    char *end_ = nullptr;
    std::int64_t carvedCount_ = 0; // of the chunk
};

// While one lives, what the calling thread allocates is taken for part of a bulk of about that size, 0 for not known.
// Scopes may stand in each other; the outermost counts.
class BulkScope
{
public:
    explicit BulkScope(std::size_t expectedSize = 0);
    ~BulkScope();
    BulkScope(const BulkScope &) = delete;
    BulkScope &operator=(const BulkScope &) = delete;

private:
    bool isOpen_;
};

} // namespace zuv_heap

#endif
