#include "platform/xmlutils/Reserve.hpp"

#include <algorithm>
#include <bit>

#include <sys/mman.h>

namespace zuv::xmlutils
{

Reserve &Reserve::instance()
{
    static Reserve reserve;
    return reserve;
}

Reserve::Reserve()
{
    void *const region =
        mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    // Without a region nothing is held, and everything refused.
    s_begin = region != MAP_FAILED ? reinterpret_cast<std::uintptr_t>(region) : 0;
    used_ = region != MAP_FAILED ? 0 : kSize;
}

std::size_t Reserve::classOf(std::size_t size)
{
    return static_cast<std::size_t>(std::bit_width(std::max<std::size_t>(size, 16) - 1));
}

std::size_t Reserve::sizeOf(const void *block)
{
    return (static_cast<const Block *>(block) - 1)->size;
}

void *Reserve::allocate(std::size_t size)
{
    if (size > kSize / 2) {
        return nullptr;
    }
    const std::size_t sizeClass = classOf(size);
    const std::lock_guard lock(mutex_);
    Block *block = free_[sizeClass];
    if (block != nullptr) {
        free_[sizeClass] = block->next;
    } else {
        const std::size_t needed = sizeof(Block) + (std::size_t{1} << sizeClass);
        if (kSize - used_ < needed) {
            return nullptr;
        }
        block = reinterpret_cast<Block *>(s_begin + used_);
        used_ += needed;
    }
    *block = {size, nullptr};
    ++liveCount_;
    return block + 1;
}

void Reserve::free(void *address)
{
    Block *const block = static_cast<Block *>(address) - 1;
    const std::size_t sizeClass = classOf(block->size);
    const std::lock_guard lock(mutex_);
    block->next = free_[sizeClass];
    free_[sizeClass] = block;
    if (--liveCount_ == 0) {
        used_ = 0;
        free_ = {};
    }
}

} // namespace zuv::xmlutils
