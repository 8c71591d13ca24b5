#include "platform/typesys/Codec.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/Decoder.hpp"
#include "platform/typesys/Encoder.hpp"
#include "platform/typesys/Sample.h"
#include "platform/typesys/WireSize.hpp"

namespace
{

using zuv::DecodePass;
using zuv::EncodeFailure;
using zuv::kEncapsulationHeaderSize;
using zuv::kIsLittleEndian;
using zuv::kLittleEndianBit;
using zuv::kPayloadAlignment;
using zuv::withBody;

constexpr std::size_t kMaxScratchSize = 128;

std::atomic<DDS_UnsignedLong> g_complianceMask{0};

std::uint32_t paddingOf(std::uint64_t size)
{
    return static_cast<std::uint32_t>((0 - size) & (kPayloadAlignment - 1));
}

const char *nameOf(const DDS_TypeCode *type)
{
    const char *name = DDS_TypeCode_name(type, nullptr);
    return name != nullptr ? name : "sample";
}

const char *textOf(EncodeFailure failure)
{
    switch (failure) {
    case EncodeFailure::BeyondBound:
        return "a text or sequence is beyond its bound";
    case EncodeFailure::NullText:
        return "a text that is not optional is NULL";
    case EncodeFailure::UnknownEnumValue:
        return "an enumeration holds a value that it does not have";
    default:
        return "the buffer has not room enough";
    }
}

DDS_Boolean refuseSample(const DDS_TypeCode *type, EncodeFailure failure)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_ANY_FAILURE_s,
            textOf(failure));
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_CDR_LOG_SERIALIZE_FAILURE_s,
            nameOf(type));
    return DDS_BOOLEAN_FALSE;
}

DDS_Boolean refusePayload(const DDS_TypeCode *type)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_CDR_LOG_DESERIALIZE_FAILURE_s,
            nameOf(type));
    return DDS_BOOLEAN_FALSE;
}

[[gnu::noinline]] bool reportNull(const char *condition)
{
    return ZUV_PRECONDITION(DDS, DDS_SUBMODULE_TYPES, true, condition);
}

inline bool isNull(const void *argument, const char *condition)
{
    return argument == nullptr && reportNull(condition);
}

void writeHeader(DDS_Octet *buffer, std::uint32_t encapsulation, std::uint32_t padding)
{
    const std::uint32_t identifier = encapsulation + (kIsLittleEndian ? kLittleEndianBit : 0);
    buffer[0] = static_cast<DDS_Octet>(identifier >> 8);
    buffer[1] = static_cast<DDS_Octet>(identifier);
    buffer[2] = 0;
    buffer[3] = static_cast<DDS_Octet>(padding);
}

// A payload: header, what `write` writes, padding.
template <typename Write>
DDS_Boolean writePayload(const DDS_TypeCode *type, std::uint32_t encapsulation, DDS_Octet *buffer,
                         DDS_UnsignedLong capacity, DDS_UnsignedLong *length, Write write)
{
    if (capacity < kEncapsulationHeaderSize) {
        return refuseSample(type, EncodeFailure::NoRoom);
    }
    const zuv::BufferSink<false> sink(buffer + kEncapsulationHeaderSize,
                                      capacity - kEncapsulationHeaderSize);
    zuv::Encoder encoder(sink);
    std::size_t end = write(encoder);
    if (end == zuv::kFailed) {
        return refuseSample(type, encoder.failure());
    }
    const std::uint32_t padding = paddingOf(end);
    if (!sink.align(end, kPayloadAlignment)) {
        return refuseSample(type, EncodeFailure::NoRoom);
    }
    writeHeader(buffer, encapsulation, padding);
    *length = kEncapsulationHeaderSize + static_cast<DDS_UnsignedLong>(end);
    return DDS_BOOLEAN_TRUE;
}

// One pass over a body. `walk` gets the decoder, where to read to, and the size.
template <DecodePass Pass, bool Swap, typename Walk>
bool pass(const DDS_Octet *body, std::size_t size, void *sample, const Walk &walk,
          bool bearsUnknownValues)
{
    zuv::Decoder<Pass, Swap> decoder(body, bearsUnknownValues);
    const std::size_t end = walk(decoder, sample, size);
    return end != zuv::kFailed && (Pass == DecodePass::Read || size - end < kPayloadAlignment);
}

// The whole body is checked before any of it is read into the sample.
template <typename Walk>
bool checkAndRead(std::uint32_t encapsulation, const DDS_Octet *buffer, DDS_UnsignedLong length,
                  void *sample, const Walk &walk, bool bearsUnknownValues)
{
    return withBody(
        encapsulation, buffer, length, [&](auto swap, const DDS_Octet *body, std::size_t size) {
            constexpr bool kSwap = decltype(swap)::value;
            return pass<DecodePass::Check, kSwap>(body, size, nullptr, walk, bearsUnknownValues) &&
                   !ZUV_OSAPI_FAULT("typesys.deserialize") &&
                   pass<DecodePass::Read, kSwap>(body, size, sample, walk, bearsUnknownValues);
        });
}

// The same for most types, of which the second pass reads what the first has found. All in one function, as it is
// what most samples take.
template <bool Swap>
[[gnu::noinline]] bool readFlat(const zuv::Program &program, const DDS_Octet *body,
                                std::size_t size, void *sample, bool bearsUnknownValues)
{
    zuv::Marks marks;
    zuv::Decoder<DecodePass::Check, Swap> checker(body, bearsUnknownValues);
    const std::size_t end = checker.check(program, size, marks);
    if (end == zuv::kFailed || size - end >= kPayloadAlignment ||
        ZUV_OSAPI_FAULT("typesys.deserialize")) {
        return false;
    }
    zuv::Decoder<DecodePass::Read, Swap> reader(body, bearsUnknownValues);
    return reader.read(program, sample, marks);
}

auto walkOf(const zuv::Program &program)
{
    return [&program](auto &decoder, void *sample, std::size_t size) {
        return decoder.sample(program, sample, 0, size);
    };
}

// A sample that holds nothing outside itself is read beside its place, which takes one pass, and moved there.
bool readBeside(const zuv::Program &program, void *sample, const DDS_Octet *buffer,
                DDS_UnsignedLong length, bool bearsUnknownValues)
{
    alignas(std::max_align_t) std::array<std::byte, kMaxScratchSize> scratch;
    const bool isRead =
        withBody(program.encapsulation(), buffer, length,
                 [&](auto swap, const DDS_Octet *body, std::size_t size) {
                     return pass<DecodePass::Both, decltype(swap)::value>(
                         body, size, scratch.data(), walkOf(program), bearsUnknownValues);
                 });
    if (!isRead || ZUV_OSAPI_FAULT("typesys.deserialize")) {
        return false;
    }
    zuv::copyOctets(sample, scratch.data(), program.size());
    return true;
}

DDS_Boolean readSample(const DDS_TypeCode *type, void *sample, const DDS_Octet *buffer,
                       DDS_UnsignedLong length, bool bearsUnknownValues)
{
    const zuv::Program *program = zuv::Program::of(type);
    if (program == nullptr || isNull(sample, "sample == ((void *)0)") ||
        isNull(buffer, "buffer == ((void *)0)")) {
        return DDS_BOOLEAN_FALSE;
    }
    const bool isRead = program->isPlain() && program->size() <= kMaxScratchSize
                            ? readBeside(*program, sample, buffer, length, bearsUnknownValues)
                        : program->isFlat()
                            ? withBody(program->encapsulation(), buffer, length,
                                       [&](auto swap, const DDS_Octet *body, std::size_t size) {
                                           return readFlat<decltype(swap)::value>(
                                               *program, body, size, sample, bearsUnknownValues);
                                       })
                            : checkAndRead(program->encapsulation(), buffer, length, sample,
                                           walkOf(*program), bearsUnknownValues);
    return isRead ? DDS_BOOLEAN_TRUE : refusePayload(type);
}

DDS_UnsignedLong wholeSize(std::uint64_t memberSize, DDS_Boolean includeEncapsulation)
{
    const std::uint64_t size = includeEncapsulation
                                   ? kEncapsulationHeaderSize + memberSize + paddingOf(memberSize)
                                   : memberSize;
    return static_cast<DDS_UnsignedLong>(std::min<std::uint64_t>(size, ZUV_CODEC_UNBOUNDED_SIZE));
}

} // namespace

DDS_UnsignedLong ZUVCodec_getSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation,
                                  const void *sample)
{
    const zuv::Program *program = zuv::Program::of(type);
    if (program == nullptr || isNull(sample, "sample == ((void *)0)")) {
        return 0;
    }
    zuv::Encoder encoder{zuv::CountingSink()};
    const std::size_t size = encoder.sample(*program, sample, 0);
    if (size == zuv::kFailed) {
        refuseSample(type, encoder.failure());
        return 0;
    }
    return wholeSize(size, includeEncapsulation);
}

DDS_UnsignedLong ZUVCodec_getMaxSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program == nullptr ? 0 : wholeSize(zuv::greatestSize(*program), includeEncapsulation);
}

DDS_UnsignedLong ZUVCodec_getMinSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program == nullptr ? 0 : wholeSize(zuv::leastSize(*program), includeEncapsulation);
}

DDS_Boolean ZUVCodec_serialize(const DDS_TypeCode *type, const void *sample, DDS_Octet *buffer,
                               DDS_UnsignedLong capacity, DDS_UnsignedLong *length)
{
    const zuv::Program *program = zuv::Program::of(type);
    if (program == nullptr || isNull(sample, "sample == ((void *)0)") ||
        isNull(buffer, "buffer == ((void *)0)") || isNull(length, "length == ((void *)0)")) {
        return DDS_BOOLEAN_FALSE;
    }
    return writePayload(type, program->encapsulation(), buffer, capacity, length,
                        [&](auto &encoder) { return encoder.sample(*program, sample, 0); });
}

DDS_Boolean ZUVCodec_deserialize(const DDS_TypeCode *type, void *sample, const DDS_Octet *buffer,
                                 DDS_UnsignedLong length)
{
    return readSample(type, sample, buffer, length, false);
}

DDS_Boolean ZUVCodec_validate(const DDS_TypeCode *type, const DDS_Octet *buffer,
                              DDS_UnsignedLong length)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr && !isNull(buffer, "buffer == ((void *)0)") &&
           withBody(program->encapsulation(), buffer, length,
                    [program](auto swap, const DDS_Octet *body, std::size_t size) {
                        return pass<DecodePass::Check, decltype(swap)::value>(
                            body, size, nullptr, walkOf(*program), false);
                    });
}

DDS_Boolean ZUVCodec_hasKey(const DDS_TypeCode *type)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr && program->hasKey();
}

DDS_UnsignedLong ZUVCodec_getKeyMaxSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation)
{
    return ZUVCodec_hasKey(type) ? wholeSize(zuv::greatestSize(zuv::Program::of(type)->keyOps()),
                                             includeEncapsulation)
                                 : 0;
}

DDS_UnsignedLong ZUVCodec_getKeyHashInputMaxSize(const DDS_TypeCode *type)
{
    return ZUVCodec_getKeyMaxSize(type, DDS_BOOLEAN_FALSE);
}

DDS_Boolean ZUVCodec_serializeKey(const DDS_TypeCode *type, const void *sample, DDS_Octet *buffer,
                                  DDS_UnsignedLong capacity, DDS_UnsignedLong *length)
{
    if (!ZUVCodec_hasKey(type) || isNull(sample, "sample == ((void *)0)") ||
        isNull(buffer, "buffer == ((void *)0)") || isNull(length, "length == ((void *)0)")) {
        return DDS_BOOLEAN_FALSE;
    }
    const auto keyOps = zuv::Program::of(type)->keyOps();
    return writePayload(type, DDS_ENCAPSULATION_ID_CDR2_BE, buffer, capacity, length,
                        [&](auto &encoder) { return encoder.ops(keyOps, sample, 0); });
}

DDS_Boolean ZUVCodec_deserializeKey(const DDS_TypeCode *type, void *sample, const DDS_Octet *buffer,
                                    DDS_UnsignedLong length)
{
    if (!ZUVCodec_hasKey(type) || isNull(sample, "sample == ((void *)0)") ||
        isNull(buffer, "buffer == ((void *)0)")) {
        return DDS_BOOLEAN_FALSE;
    }
    const auto keyOps = zuv::Program::of(type)->keyOps();
    const bool isRead = checkAndRead(
        DDS_ENCAPSULATION_ID_CDR2_BE, buffer, length, sample,
        [keyOps](auto &decoder, void *to, std::size_t size) {
            return decoder.ops(keyOps, to, false, 0, size);
        },
        false);
    return isRead ? DDS_BOOLEAN_TRUE : refusePayload(type);
}

DDS_Boolean ZUVCodec_getKeyHash(const DDS_TypeCode *type, const void *sample, ZUVKeyHash *hash)
{
    if (!ZUVCodec_hasKey(type) || isNull(sample, "sample == ((void *)0)") ||
        isNull(hash, "hash == ((void *)0)")) {
        return DDS_BOOLEAN_FALSE;
    }
    const auto keyOps = zuv::Program::of(type)->keyOps();
    zuv::Encoder counting{zuv::CountingSink()};
    const std::size_t size = counting.ops(keyOps, sample, 0);
    if (size == zuv::kFailed) {
        return refuseSample(type, counting.failure());
    }
    std::array<DDS_Octet, 256> small{};
    DDS_Octet *buffer =
        size <= small.size()
            ? small.data()
            : static_cast<DDS_Octet *>(ZUVOsapiHeap_allocateBufferAligned(size, kPayloadAlignment));
    if (buffer == nullptr) {
        return refuseSample(type, EncodeFailure::NoRoom);
    }
    zuv::Encoder{zuv::BufferSink<kIsLittleEndian>(buffer, size)}.ops(keyOps, sample, 0);
    if (ZUVCodec_getKeyHashInputMaxSize(type) <= sizeof(hash->value)) {
        std::memset(hash->value, 0, sizeof(hash->value));
        std::memcpy(hash->value, buffer, size);
    } else {
        zuv::Md5 md5;
        md5.update({buffer, size});
        const zuv::Md5Digest digest = md5.finish();
        std::ranges::copy(digest, hash->value);
    }
    if (buffer != small.data()) {
        ZUVOsapiHeap_freeBufferAligned(buffer);
    }
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean ZUVCodec_serializeToCdrBuffer(const DDS_TypeCode *type, char *buffer,
                                          unsigned int *length, const void *sample,
                                          DDS_DataRepresentationId_t representation)
{
    if (isNull(length, "length == ((void *)0)")) {
        return DDS_BOOLEAN_FALSE;
    }
    if (DDS_TypeCode_get_native_encapsulation(type, representation) > DDS_ENCAPSULATION_ID_MAX) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_GET_FAILURE_s,
                "encapsulation for the data representation");
        return DDS_BOOLEAN_FALSE;
    }
    if (buffer == nullptr) {
        *length = ZUVCodec_getSize(type, DDS_BOOLEAN_TRUE, sample);
        return *length > 0;
    }
    return ZUVCodec_serialize(type, sample, reinterpret_cast<DDS_Octet *>(buffer), *length, length);
}

DDS_Boolean ZUVCodec_deserializeFromCdrBuffer(const DDS_TypeCode *type, void *sample,
                                              const char *buffer, unsigned int length)
{
    ZUVSample_finalizeOptionalMembers(type, sample, DDS_BOOLEAN_TRUE);
    const bool bearsUnknownValues = (ZUVXCdrInterpreter_getGlobalXtypeComplianceMask() &
                                     ZUV_XTYPE_COMPLIANCE_UNKNOWN_ENUM_VALUE) != 0;
    return readSample(type, sample, reinterpret_cast<const DDS_Octet *>(buffer), length,
                      bearsUnknownValues);
}

DDS_UnsignedLong ZUVXCdrInterpreter_getGlobalXtypeComplianceMask(void)
{
    return g_complianceMask.load(std::memory_order_relaxed);
}

void ZUVXCdrInterpreter_setGlobalXtypeComplianceMask(DDS_UnsignedLong mask)
{
    g_complianceMask.store(mask, std::memory_order_relaxed);
}
