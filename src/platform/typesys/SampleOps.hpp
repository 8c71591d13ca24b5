// What the runtime does with samples in memory, operation by operation of a program.
#ifndef ZUV_PLATFORM_TYPESYS_SAMPLE_OPS_HPP
#define ZUV_PLATFORM_TYPESYS_SAMPLE_OPS_HPP

#include <cstdint>
#include <cstring>
#include <span>

#include "platform/osapi/Heap.h"
#include "platform/typesys/Program.hpp"

namespace zuv
{

template <typename T>
T *memberAt(void *base, std::uint32_t offset)
{
    return reinterpret_cast<T *>(static_cast<char *>(base) + offset);
}

template <typename T>
const T *memberAt(const void *base, std::uint32_t offset)
{
    return reinterpret_cast<const T *>(static_cast<const char *>(base) + offset);
}

// An element of a sequence, wherever it lies.
inline void *elementAt(const ZUVSequence &sequence, std::uint32_t index, std::uint32_t size)
{
    return sequence._discontiguous_buffer != nullptr
               ? sequence._discontiguous_buffer[index]
               : static_cast<char *>(sequence._contiguous_buffer) + std::size_t{index} * size;
}

inline bool isInitialized(const ZUVSequence &sequence)
{
    return sequence._sequence_init == DDS_SEQUENCE_MAGIC_NUMBER;
}

// Initialize a sample in any memory. On failure nothing stays allocated and the sample is all zeros.
bool initializeSample(const Program &program, void *sample,
                      const DDS_TypeAllocationParams_t &params);

// Release what a sample, or a part of it, holds. Memory that is all zeros holds nothing.
void finalizeOps(std::span<const Op> ops, void *base, const DDS_TypeDeallocationParams_t &params);
void finalizeOptionalOps(std::span<const Op> ops, void *base);

// Deep copy. On failure the destination is valid, with some members copied.
bool copyOps(std::span<const Op> ops, void *destination, const void *source);
inline bool copySample(const Program &program, void *destination, const void *source)
{
    return copyOps(program.ops(), destination, source);
}

bool areEqual(std::span<const Op> ops, const void *first, const void *second);

// Give a member its default, keeping its storage; an optional one becomes absent.
bool resetOp(const Op &op, void *base);

// Give the text at `slot` room for `size` octets, terminator included. Its content is unspecified then.
bool exchangeText(char **slot, std::size_t size);
inline bool reserveText(char **slot, std::size_t size)
{
    return (*slot != nullptr && ZUVOsapiHeap_getBlockSize(*slot) >= size) ||
           exchangeText(slot, size);
}

// The target of an optional member, made with its default if it is absent; null when there is no memory.
void *assertOptional(const Op &op, void *base);
void releaseOptional(const Op &op, void *base);

// Give a sequence room for `length` elements, not all of whose old values need stay, and that length.
// Refused with a report for a loan that is too small.
bool growSequence(ZUVSequence *sequence, const Op &op, std::uint32_t length);
inline bool prepareSequence(ZUVSequence *sequence, const Op &op, std::uint32_t length)
{
    if (!isInitialized(*sequence) || length > sequence->_maximum) {
        return growSequence(sequence, op, length);
    }
    sequence->_length = length;
    return true;
}

// memcpy, with the sizes of most members known to the compiler.
[[gnu::always_inline]] inline void copyOctets(void *to, const void *from, std::size_t size)
{
    if (size == sizeof(std::uint32_t)) {
        std::memcpy(to, from, sizeof(std::uint32_t));
    } else if (size == sizeof(std::uint64_t)) {
        std::memcpy(to, from, sizeof(std::uint64_t));
    } else {
        std::memcpy(to, from, size);
    }
}

} // namespace zuv

#endif
