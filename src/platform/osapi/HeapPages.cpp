#include "platform/osapi/HeapPages.hpp"

#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace zuv_heap
{
namespace
{

// The pages that lie in the block as a whole. A kernel that does not know the advice does without.
void advise(void *block, std::size_t size, int advice)
{
    static const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto start = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t begin = (start + page - 1) & ~(page - 1);
    const std::uintptr_t end = (start + size) & ~(page - 1);
    if (begin < end) {
        madvise(reinterpret_cast<void *>(begin), end - begin, advice);
    }
}

} // namespace

void preferLargePages(void *block, std::size_t size)
{
    advise(block, size, MADV_HUGEPAGE);
}

void takePages(void *block, std::size_t size)
{
    advise(block, size, MADV_POPULATE_WRITE);
}

} // namespace zuv_heap
