#include "platform/xmlutils/Memory.hpp"

#include <algorithm>
#include <cstring>

#include <libxml/xmlmemory.h>

#include "platform/xmlutils/Reserve.hpp"

namespace zuv::xmlutils
{
namespace
{

constexpr const char *kTag = "xml";

thread_local std::uint32_t t_refusedAllocations = 0;
thread_local int t_reserveScopes = 0;

void *allocateFromReserve(std::size_t size)
{
    ++t_refusedAllocations;
    return t_reserveScopes != 0 ? Reserve::instance().allocate(size) : nullptr;
}

void *allocate(std::size_t size)
{
    void *const block = ZUVOsapiHeap_allocate(size, kTag);
    return block != nullptr ? block : allocateFromReserve(size);
}

void release(void *block)
{
    if (Reserve::instance().holds(block)) {
        Reserve::instance().free(block);
    } else {
        ZUVOsapiHeap_free(block);
    }
}

void *reallocate(void *block, std::size_t size)
{
    const bool isReserve = Reserve::instance().holds(block);
    if (!isReserve && ZUVOsapiHeap_reallocate(&block, size, kTag)) {
        return block;
    }
    const std::size_t before =
        isReserve ? Reserve::sizeOf(block) : ZUVOsapiHeap_getBlockSize(block);
    void *const moved = isReserve ? allocate(size) : allocateFromReserve(size);
    if (moved != nullptr && block != nullptr) {
        std::memcpy(moved, block, std::min(before, size));
        release(block);
    }
    return moved;
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
    return xmlMemSetup(&release, &allocate, &reallocate, &duplicate) == 0;
}

ReserveScope::ReserveScope()
{
    ++t_reserveScopes;
}

ReserveScope::~ReserveScope()
{
    --t_reserveScopes;
}

std::uint32_t refusedAllocations()
{
    return t_refusedAllocations;
}

} // namespace zuv::xmlutils
