// Payloads of any type: written from filled samples, and changed octet by octet.
#ifndef ZUV_TESTS_TYPES_PAYLOADS_H
#define ZUV_TESTS_TYPES_PAYLOADS_H

#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/typesys/Codec.h"
#include "support/SampleFill.h"

namespace zuv_test
{

using Octets = std::vector<std::uint8_t>;

inline Octets payloadOf(const DDS_TypeCode *type, const void *sample)
{
    Octets payload(ZUVCodec_getSize(type, DDS_BOOLEAN_TRUE, sample));
    DDS_UnsignedLong length = 0;
    if (payload.empty() ||
        !ZUVCodec_serialize(type, sample, payload.data(),
                            static_cast<DDS_UnsignedLong>(payload.size()), &length)) {
        return {};
    }
    payload.resize(length);
    return payload;
}

inline bool readPayload(const DDS_TypeCode *type, void *sample, const Octets &payload)
{
    // A block of its own, so that a sanitizer sees a read behind the end.
    const Octets exact(payload.begin(), payload.end());
    return ZUVCodec_deserialize(type, sample, exact.data(),
                                static_cast<DDS_UnsignedLong>(exact.size()));
}

inline void putWord(Octets &payload, std::size_t offset, std::uint32_t word)
{
    std::memcpy(payload.data() + offset, &word, sizeof(word));
}

inline std::uint32_t wordAt(const Octets &payload, std::size_t offset)
{
    std::uint32_t word = 0;
    std::memcpy(&word, payload.data() + offset, sizeof(word));
    return word;
}

} // namespace zuv_test

#endif
