#include "platform/xmlutils/Memory.hpp"

#include <cstring>

#include <libxml/xmlmemory.h>

namespace zuv::xmlutils
{
namespace
{

constexpr const char *kTag = "xml";

thread_local std::uint32_t t_refusedAllocations = 0;

void *allocate(std::size_t size)
{
    void *const block = ZUVOsapiHeap_allocate(size, kTag);
    t_refusedAllocations += block == nullptr;
    return block;
}

void *reallocate(void *block, std::size_t size)
{
    if (!ZUVOsapiHeap_reallocate(&block, size, kTag)) {
        ++t_refusedAllocations;
        return nullptr;
    }
    return block;
}

char *duplicate(const char *text)
{
    const std::size_t size = std::strlen(text) + 1;
    void *const copy = allocate(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

} // namespace

bool installMemoryFunctions()
{
    return xmlMemSetup(&ZUVOsapiHeap_free, &allocate, &reallocate, &duplicate) == 0;
}

std::uint32_t refusedAllocations()
{
    return t_refusedAllocations;
}

} // namespace zuv::xmlutils
