// Who holds how much of the heap. Counting costs a few plain instructions: each thread counts for itself,
// and the accounts are summed when somebody asks.
#ifndef ZUV_PLATFORM_OSAPI_HEAP_ACCOUNT_HPP
#define ZUV_PLATFORM_OSAPI_HEAP_ACCOUNT_HPP

#include <cstddef>
#include <cstdint>

#include "platform/osapi/Heap.h"

namespace zuv_heap
{

// Returns the number of the tag, found by its pointer. Tags that find no room in the table share the last
// number.
std::uint32_t countAllocation(const char *tag, std::size_t size);
void countRelease(std::uint32_t tag, std::size_t size);

ZUVOsapiHeapStatistics statistics();
void visitTags(ZUVOsapiHeapTagVisitor visitor, void *visitorData);

} // namespace zuv_heap

#endif
