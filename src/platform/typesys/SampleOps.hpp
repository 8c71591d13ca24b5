// What the runtime does with samples in memory, operation by operation of a program.
#ifndef ZUV_PLATFORM_TYPESYS_SAMPLE_OPS_HPP
#define ZUV_PLATFORM_TYPESYS_SAMPLE_OPS_HPP

#include <cstdint>
#include <cstring>
#include <span>

#include "platform/osapi/Heap.h"
#include "platform/osapi/HeapBlock.hpp"
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

// memcpy, without a call for the sizes of most members: the ends of a block overlap where it is no multiple.
template <typename Block>
inline void copyEnds(char *to, const char *from, std::size_t size)
{
    Block first;
    Block last;
    std::memcpy(&first, from, sizeof(Block));
    std::memcpy(&last, from + size - sizeof(Block), sizeof(Block));
    std::memcpy(to, &first, sizeof(Block));
    std::memcpy(to + size - sizeof(Block), &last, sizeof(Block));
}

inline void copyOctets(void *destination, const void *source, std::size_t size)
{
    struct Block16 {
        std::uint64_t halves[2];
    };
    char *to = static_cast<char *>(destination);
    const char *from = static_cast<const char *>(source);
    if (size > 2 * sizeof(Block16)) {
        std::memcpy(to, from, size);
    } else if (size >= sizeof(Block16)) {
        copyEnds<Block16>(to, from, size);
    } else if (size >= sizeof(std::uint64_t)) {
        copyEnds<std::uint64_t>(to, from, size);
    } else if (size >= sizeof(std::uint32_t)) {
        copyEnds<std::uint32_t>(to, from, size);
    } else if (size > 0) {
        const char middle = from[size / 2];
        const char last = from[size - 1];
        to[0] = from[0];
        to[size / 2] = middle;
        to[size - 1] = last;
    }
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

// Give the members of a blank sample the storage that the parameters ask for. On failure nothing stays
// allocated and the sample is all zeros.
bool giveStorage(const Program &program, void *sample, const DDS_TypeAllocationParams_t &params);

inline bool needsStorage(const DDS_TypeAllocationParams_t &params)
{
    return params.allocate_memory || params.allocate_optional_members || !params.allocate_pointers;
}

// Initialize a sample in any memory, with the same failure.
inline bool initializeSample(const Program &program, void *sample,
                             const DDS_TypeAllocationParams_t &params)
{
    copyOctets(sample, program.blank(), program.size());
    return program.isPlain() || !needsStorage(params) || giveStorage(program, sample, params);
}

// Release what a sample holds. Memory that is all zeros holds nothing.
void finalizeSample(const Program &program, void *sample,
                    const DDS_TypeDeallocationParams_t &params);
void finalizeOptionalOps(std::span<const Op> ops, void *base);

// Deep copy. On failure the destination is valid, with some members copied.
bool copyOps(std::span<const Op> ops, void *destination, const void *source);
inline bool copySample(const Program &program, void *destination, const void *source)
{
    return copyOps(program.ops(), destination, source);
}

// The same from a source that nobody reads after a success: it may end up with what the destination held. On failure the
// source is as it was.
bool handOverOps(std::span<const Op> ops, void *destination, void *source);

bool areEqual(std::span<const Op> ops, const void *first, const void *second);

// Give a member its default, keeping its storage; an optional one becomes absent.
bool resetOp(const Op &op, void *base);

inline constexpr char kTextTag[] = "DDS_String";
bool reportNoText(std::size_t size);

// Give the text at `slot` room for `size` octets, terminator included. Its content is unspecified then.
inline bool reserveText(char **slot, std::size_t size)
{
    char *const former = *slot;
    if (former != nullptr && zuv_heap::sizeOf(former) >= size) {
        return true;
    }
    void *const storage = ZUVOsapiHeap_allocate(size, kTextTag);
    if (storage == nullptr) [[unlikely]] {
        return reportNoText(size);
    }
    if (former != nullptr) {
        ZUVOsapiHeap_free(former);
    }
    *slot = static_cast<char *>(storage);
    return true;
}

// The target of an optional member, made with its default if it is absent; null when there is no memory.
void *assertOptional(const Op &op, void *base);
void releaseOptional(const Op &op, void *base);

// Give a sequence room for `length` elements, not all of whose old values need stay, and that length.
// Refused with a report for a loan that is too small.
bool growSequence(ZUVSequence *sequence, const Op &op, std::uint32_t length);
// Release the elements of an owned sequence, or forget those of a loan: it is empty then and owns its elements.
void emptySequence(ZUVSequence *sequence, const Op &op);
inline bool prepareSequence(ZUVSequence *sequence, const Op &op, std::uint32_t length)
{
    if (!isInitialized(*sequence) || length > sequence->_maximum) {
        return growSequence(sequence, op, length);
    }
    sequence->_length = length;
    return true;
}

} // namespace zuv

#endif
