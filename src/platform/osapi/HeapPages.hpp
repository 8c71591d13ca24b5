// Pages beneath large blocks. To get them one at a time, as they are touched, costs as much as all else that is done
// with a tree of nodes.
#ifndef ZUV_PLATFORM_OSAPI_HEAP_PAGES_HPP
#define ZUV_PLATFORM_OSAPI_HEAP_PAGES_HPP

#include <cstddef>

namespace zuv_heap
{

// Smaller blocks hold no large page.
constexpr std::size_t kLeastForLargePages = 2 * 1024 * 1024 - 64;

// Let the kernel give pages of 2 MiB where it has them.
void preferLargePages(void *block, std::size_t size);
// Have all pages at once.
void takePages(void *block, std::size_t size);

} // namespace zuv_heap

#endif
