#include "platform/typesys/SampleOps.hpp"

#include <bit>
#include <cstring>
#include <utility>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"

namespace zuv
{
namespace
{

constexpr const char *kOptionalTag = "DDS_OptionalMember";

bool reportBeyondBound(const char *what, std::uint64_t length, std::uint32_t bound)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES,
            &DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, static_cast<int>(length),
            static_cast<int>(bound));
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_ANY_FAILURE_s, what);
    return false;
}

void storeDefault(const Op &op, void *base)
{
    std::uint64_t bits = op.defaultBits;
    if constexpr (std::endian::native == std::endian::big) {
        bits <<= 8 * (sizeof(bits) - op.unit);
    }
    std::memcpy(memberAt<char>(base, op.offset), &bits, op.unit);
}

bool initializeText(const Op &op, char **slot, const DDS_TypeAllocationParams_t &params)
{
    const bool isWanted = params.allocate_memory && !op.isLazy &&
                          (!op.isOptional || params.allocate_optional_members);
    if (!isWanted) {
        return true;
    }
    const std::uint32_t length = op.bound == DDS_UNBOUNDED ? 0 : op.bound;
    *slot = DDS_String_alloc(length);
    if (*slot == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES,
                &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d, static_cast<int>(length));
    }
    return *slot != nullptr;
}

// Into a sample that nobody initialized.
void initializeSequence(const Op &op, ZUVSequence *sequence)
{
    ZUVSequence_initialize(sequence);
    sequence->_absolute_maximum = op.bound;
}

bool giveStorage(std::span<const Op> holders, void *base, const DDS_TypeAllocationParams_t &params);

void *newOptional(const Op &op, const DDS_TypeAllocationParams_t &params)
{
    void *target = ZUVOsapiHeap_allocate(op.element->size(), kOptionalTag);
    if (target == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES,
                &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d, static_cast<int>(op.element->size()));
        return nullptr;
    }
    if (!initializeSample(*op.element, target, params)) {
        ZUVOsapiHeap_free(target);
        return nullptr;
    }
    return target;
}

// The same for one member.
bool giveStorage(const Op &op, void *base, const DDS_TypeAllocationParams_t &params)
{
    switch (op.code) {
    case OpCode::Text:
        return initializeText(op, memberAt<char *>(base, op.offset), params);
    case OpCode::UnitSequence:
    case OpCode::BooleanSequence:
    case OpCode::Sequence:
        memberAt<ZUVSequence>(base, op.offset)->_elementAllocParams.allocate_pointers =
            params.allocate_pointers;
        return true;
    case OpCode::Array:
        for (std::uint32_t i = 0; i < op.count; ++i) {
            if (!giveStorage(op.element->holders(),
                             memberAt<char>(base, op.offset + i * op.element->size()), params)) {
                return false;
            }
        }
        return true;
    case OpCode::Struct:
        return giveStorage(op.element->holders(), memberAt<char>(base, op.offset), params);
    case OpCode::Optional:
        if (params.allocate_optional_members) {
            *memberAt<void *>(base, op.offset) = newOptional(op, params);
            return *memberAt<void *>(base, op.offset) != nullptr;
        }
        return true;
    default:
        return true;
    }
}

bool giveStorage(std::span<const Op> holders, void *base, const DDS_TypeAllocationParams_t &params)
{
    for (const Op &op : holders) {
        if (!giveStorage(op, base, params)) {
            return false;
        }
    }
    return true;
}

void finalizeText(char **slot)
{
    if (*slot != nullptr) {
        ZUVOsapiHeap_free(*slot);
        *slot = nullptr;
    }
}

bool copyText(const Op &op, char **destination, const char *source)
{
    if (source == nullptr) {
        finalizeText(destination);
        return true;
    }
    const std::size_t length = std::strlen(source);
    if (length > op.bound) {
        return reportBeyondBound("copy text beyond its bound", length, op.bound);
    }
    if (source == *destination) {
        return true;
    }
    if (!reserveText(destination, length + 1)) {
        return false;
    }
    std::memcpy(*destination, source, length + 1);
    return true;
}

// Whether two texts may change places without either side's storage getting smaller. Short ones are not worth it.
bool haveEqualRoom(const char *one, const char *other)
{
    constexpr std::size_t kLeastSize = 1024;
    const std::size_t size = ZUVOsapiHeap_getBlockSize(one);
    return size >= kLeastSize && ZUVOsapiHeap_getBlockSize(other) == size;
}

bool copySequence(const Op &op, ZUVSequence *destination, const ZUVSequence &source)
{
    const std::uint32_t length = isInitialized(source) ? source._length : 0;
    if (length > op.bound) {
        return reportBeyondBound("copy sequence beyond its bound", length, op.bound);
    }
    if (!isInitialized(*destination)) {
        initializeSequence(op, destination);
    }
    return ZUVSequence_copy(destination, &op.sequenceElement, &source) != nullptr;
}

bool copyOp(const Op &op, void *destination, const void *source)
{
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
    case OpCode::Enum:
        copyOctets(memberAt<char>(destination, op.offset), memberAt<char>(source, op.offset),
                   op.size);
        return true;
    case OpCode::Text:
        return copyText(op, memberAt<char *>(destination, op.offset),
                        *memberAt<char *>(source, op.offset));
    case OpCode::UnitSequence:
    case OpCode::BooleanSequence:
    case OpCode::Sequence:
        return copySequence(op, memberAt<ZUVSequence>(destination, op.offset),
                            *memberAt<ZUVSequence>(source, op.offset));
    case OpCode::Array:
        for (std::uint32_t i = 0; i < op.count; ++i) {
            const std::uint32_t offset = op.offset + i * op.element->size();
            if (!copyOps(op.element->ops(), memberAt<char>(destination, offset),
                         memberAt<char>(source, offset))) {
                return false;
            }
        }
        return true;
    case OpCode::Struct:
        return copyOps(op.element->ops(), memberAt<char>(destination, op.offset),
                       memberAt<char>(source, op.offset));
    case OpCode::Optional: {
        const void *from = *memberAt<void *>(source, op.offset);
        if (from == nullptr) {
            releaseOptional(op, destination);
            return true;
        }
        void *to = assertOptional(op, destination);
        return to != nullptr && copyOps(op.element->ops(), to, from);
    }
    }
    return false;
}

bool areEqualSequences(const Op &op, const ZUVSequence &first, const ZUVSequence &second)
{
    const std::uint32_t length = isInitialized(first) ? first._length : 0;
    if (length != (isInitialized(second) ? second._length : 0)) {
        return false;
    }
    const std::uint32_t size = op.sequenceElement.size;
    for (std::uint32_t i = 0; i < length; ++i) {
        const void *a = elementAt(first, i, size);
        const void *b = elementAt(second, i, size);
        const bool areSame = op.element != nullptr ? areEqual(op.element->ops(), a, b)
                                                   : std::memcmp(a, b, size) == 0;
        if (!areSame) {
            return false;
        }
    }
    return true;
}

bool areEqual(const Op &op, const void *first, const void *second)
{
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
    case OpCode::Enum:
        return std::memcmp(memberAt<char>(first, op.offset), memberAt<char>(second, op.offset),
                           op.size) == 0;
    case OpCode::Text: {
        const char *a = *memberAt<char *>(first, op.offset);
        const char *b = *memberAt<char *>(second, op.offset);
        return a == nullptr || b == nullptr ? a == b : std::strcmp(a, b) == 0;
    }
    case OpCode::UnitSequence:
    case OpCode::BooleanSequence:
    case OpCode::Sequence:
        return areEqualSequences(op, *memberAt<ZUVSequence>(first, op.offset),
                                 *memberAt<ZUVSequence>(second, op.offset));
    case OpCode::Array:
        for (std::uint32_t i = 0; i < op.count; ++i) {
            const std::uint32_t offset = op.offset + i * op.element->size();
            if (!areEqual(op.element->ops(), memberAt<char>(first, offset),
                          memberAt<char>(second, offset))) {
                return false;
            }
        }
        return true;
    case OpCode::Struct:
        return areEqual(op.element->ops(), memberAt<char>(first, op.offset),
                        memberAt<char>(second, op.offset));
    case OpCode::Optional: {
        const void *a = *memberAt<void *>(first, op.offset);
        const void *b = *memberAt<void *>(second, op.offset);
        return a == nullptr || b == nullptr ? a == b : areEqual(op.element->ops(), a, b);
    }
    }
    return false;
}

} // namespace

bool giveStorage(const Program &program, void *sample, const DDS_TypeAllocationParams_t &params)
{
    if (giveStorage(program.holders(), sample, params)) {
        return true;
    }
    finalizeSample(program, sample, DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT);
    std::memset(sample, 0, program.size());
    return false;
}

void finalizeSample(const Program &program, void *sample,
                    const DDS_TypeDeallocationParams_t &params)
{
    for (const Op &op : program.holders()) {
        switch (op.code) {
        case OpCode::Text:
            if (!op.isOptional || params.delete_optional_members) {
                finalizeText(memberAt<char *>(sample, op.offset));
            }
            break;
        case OpCode::UnitSequence:
        case OpCode::BooleanSequence:
        case OpCode::Sequence:
            emptySequence(memberAt<ZUVSequence>(sample, op.offset), op);
            break;
        case OpCode::Array:
        case OpCode::Struct:
            for (std::uint32_t i = 0; i < (op.code == OpCode::Array ? op.count : 1); ++i) {
                finalizeSample(*op.element,
                               memberAt<char>(sample, op.offset + i * op.element->size()), params);
            }
            break;
        case OpCode::Optional:
            if (params.delete_optional_members) {
                releaseOptional(op, sample);
            }
            break;
        default:
            break;
        }
    }
}

void finalizeOptionalOps(std::span<const Op> ops, void *base)
{
    for (const Op &op : ops) {
        if (op.isOptional) {
            finalizeText(memberAt<char *>(base, op.offset));
        } else if (op.code == OpCode::Optional) {
            releaseOptional(op, base);
        } else if (op.element == nullptr || !op.element->hasOptional()) {
            continue;
        } else if (op.code == OpCode::Sequence) {
            const ZUVSequence &sequence = *memberAt<ZUVSequence>(base, op.offset);
            const std::uint32_t length = isInitialized(sequence) ? sequence._maximum : 0;
            for (std::uint32_t i = 0; i < length; ++i) {
                finalizeOptionalOps(op.element->ops(),
                                    elementAt(sequence, i, op.sequenceElement.size));
            }
        } else {
            const std::uint32_t count = op.code == OpCode::Array ? op.count : 1;
            for (std::uint32_t i = 0; i < count; ++i) {
                finalizeOptionalOps(op.element->ops(),
                                    memberAt<char>(base, op.offset + i * op.element->size()));
            }
        }
    }
}

bool copyOps(std::span<const Op> ops, void *destination, const void *source)
{
    for (const Op &op : ops) {
        if (!copyOp(op, destination, source)) {
            return false;
        }
    }
    return true;
}

bool handOverOps(std::span<const Op> ops, void *destination, void *source)
{
    const auto mayExchange = [destination, source](const Op &op) {
        return op.code == OpCode::Text && haveEqualRoom(*memberAt<char *>(destination, op.offset),
                                                        *memberAt<char *>(source, op.offset));
    };
    for (const Op &op : ops) {
        if (!mayExchange(op) && !copyOp(op, destination, source)) {
            return false;
        }
    }
    // Nothing can fail any more. A text that was copied above may change places with its equal.
    for (const Op &op : ops) {
        if (mayExchange(op)) {
            std::swap(*memberAt<char *>(destination, op.offset),
                      *memberAt<char *>(source, op.offset));
        }
    }
    return true;
}

bool areEqual(std::span<const Op> ops, const void *first, const void *second)
{
    return std::ranges::all_of(
        ops, [first, second](const Op &op) { return areEqual(op, first, second); });
}

bool resetOp(const Op &op, void *base)
{
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
    case OpCode::Enum:
        std::memset(memberAt<char>(base, op.offset), 0, op.size);
        storeDefault(op, base);
        return true;
    case OpCode::Text: {
        char **slot = memberAt<char *>(base, op.offset);
        if (op.isOptional) {
            finalizeText(slot);
            return true;
        }
        if (!reserveText(slot, 1)) {
            return false;
        }
        **slot = '\0';
        return true;
    }
    case OpCode::UnitSequence:
    case OpCode::BooleanSequence:
    case OpCode::Sequence:
        return prepareSequence(memberAt<ZUVSequence>(base, op.offset), op, 0);
    case OpCode::Array:
        for (std::uint32_t i = 0; i < op.count; ++i) {
            void *element = memberAt<char>(base, op.offset + i * op.element->size());
            for (const Op &inner : op.element->ops()) {
                if (!resetOp(inner, element)) {
                    return false;
                }
            }
        }
        return true;
    case OpCode::Struct:
        return std::ranges::all_of(op.element->ops(), [&op, base](const Op &inner) {
            return resetOp(inner, memberAt<char>(base, op.offset));
        });
    case OpCode::Optional:
        releaseOptional(op, base);
        return true;
    }
    return false;
}

bool reportNoText(std::size_t size)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES,
            &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d, static_cast<int>(size - 1));
    return false;
}

void *assertOptional(const Op &op, void *base)
{
    void *&target = *memberAt<void *>(base, op.offset);
    if (target == nullptr) {
        target = newOptional(op, DDS_TYPE_ALLOCATION_PARAMS_DEFAULT);
    }
    return target;
}

void releaseOptional(const Op &op, void *base)
{
    void *&target = *memberAt<void *>(base, op.offset);
    if (target != nullptr) {
        finalizeSample(*op.element, target, DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT);
        ZUVOsapiHeap_free(target);
        target = nullptr;
    }
}

} // namespace zuv
