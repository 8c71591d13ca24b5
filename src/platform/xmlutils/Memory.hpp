// Memory of the room: everything comes from the system's heap, what libxml2 takes included.
#ifndef ZUV_PLATFORM_XMLUTILS_MEMORY_HPP
#define ZUV_PLATFORM_XMLUTILS_MEMORY_HPP

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/osapi/Heap.h"

namespace zuv::xmlutils
{

// Containers on the system's heap. They throw std::bad_alloc, which no exported operation lets out.
template <typename T>
struct HeapAllocator {
    using value_type = T;

    HeapAllocator() = default;
    template <typename U>
    HeapAllocator(const HeapAllocator<U> &)
    {
    }

    T *allocate(std::size_t count)
    {
        static_assert(alignof(T) <= alignof(std::max_align_t));
        void *const block = count <= std::numeric_limits<std::size_t>::max() / sizeof(T)
                                ? ZUVOsapiHeap_allocate(count * sizeof(T), "xml")
                                : nullptr;
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        return static_cast<T *>(block);
    }
    void deallocate(T *block, std::size_t) { ZUVOsapiHeap_free(block); }

    template <typename U>
    bool operator==(const HeapAllocator<U> &) const
    {
        return true;
    }
};

using HeapString = std::basic_string<char, std::char_traits<char>, HeapAllocator<char>>;
template <typename T>
using HeapVector = std::vector<T, HeapAllocator<T>>;

template <typename T, typename... Arguments>
T *heapNew(Arguments &&...arguments)
{
    T *const block = HeapAllocator<T>().allocate(1);
    try {
        return new (block) T(std::forward<Arguments>(arguments)...);
    } catch (...) {
        ZUVOsapiHeap_free(block);
        throw;
    }
}

template <typename T>
void heapDelete(T *object)
{
    if (object != nullptr) {
        std::destroy_at(object);
        ZUVOsapiHeap_free(object);
    }
}

struct HeapDeleter {
    template <typename T>
    void operator()(T *object) const
    {
        heapDelete(object);
    }
};
template <typename T>
using HeapPointer = std::unique_ptr<T, HeapDeleter>;

// Let libxml2 allocate from the system's heap. Once per process, before anything else of libxml2.
bool installMemoryFunctions();

// How often libxml2 was refused memory on this thread. Not all of its operations tell, so that a caller
// compares the count before and after.
std::uint32_t refusedAllocations();

// While one lives, libxml2 gets from a reserve what the heap refuses on this thread. Reading a document bears a
// want of memory; schemas, stylesheets, copies and the making of text leak, and crash. So they run to their end,
// and only then their caller, who sees the count above, throws the result away.
class ReserveScope
{
public:
    ReserveScope();
    ~ReserveScope();
    ReserveScope(const ReserveScope &) = delete;
    ReserveScope &operator=(const ReserveScope &) = delete;
};

// While one lives, small blocks that libxml2 gives back on this thread wait for its next demands, and go to the heap at
// the end. For work that takes and gives many blocks and keeps none: validation.
class BlockCacheScope
{
public:
    BlockCacheScope();
    ~BlockCacheScope();
    BlockCacheScope(const BlockCacheScope &) = delete;
    BlockCacheScope &operator=(const BlockCacheScope &) = delete;
};

// The result of `body`, or `failure` when memory ran out, after `onFailure()`.
template <typename Result, typename Body, typename OnFailure>
Result withMemory(Result failure, OnFailure &&onFailure, Body &&body)
{
    try {
        return body();
    } catch (const std::bad_alloc &) {
        onFailure();
        return failure;
    }
}

} // namespace zuv::xmlutils

#endif
