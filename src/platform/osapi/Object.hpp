// C++ objects on the system's heap: their memory may fail, and their owner releases them.
#ifndef ZUV_PLATFORM_OSAPI_OBJECT_HPP
#define ZUV_PLATFORM_OSAPI_OBJECT_HPP

#include <memory>
#include <new>
#include <utility>

#include "platform/osapi/Heap.h"

namespace zuv
{

// Null when there is no memory. The constructor must not throw.
template <typename T, typename... Arguments>
T *newObject(const char *tag, Arguments &&...arguments) noexcept
{
    void *memory = ZUVOsapiHeap_allocate(sizeof(T), tag);
    return memory != nullptr ? new (memory) T{std::forward<Arguments>(arguments)...} : nullptr;
}

template <typename T>
void deleteObject(T *object) noexcept
{
    if (object != nullptr) {
        object->~T();
        ZUVOsapiHeap_free(object);
    }
}

struct ObjectDeleter {
    template <typename T>
    void operator()(T *object) const noexcept
    {
        deleteObject(object);
    }
};

template <typename T>
using ObjectPointer = std::unique_ptr<T, ObjectDeleter>;

} // namespace zuv

#endif
