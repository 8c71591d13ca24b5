// The common part of the targets that feed payloads to the interpreter: a payload that is accepted gives a
// sample that is written and read again as the same one.
#ifndef ZUV_FUZZ_PAYLOAD_FUZZ_H
#define ZUV_FUZZ_PAYLOAD_FUZZ_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <vector>

#include "platform/log/DDSLog.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/Codec.h"
#include "platform/typesys/Sample.h"

namespace zuv_fuzz
{

inline void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

class Sample
{
public:
    explicit Sample(const DDS_TypeCode &type)
        : type_(&type), value_(ZUVSample_newEx(&type, DDS_BOOLEAN_TRUE))
    {
        require(value_ != nullptr);
    }
    ~Sample() { ZUVSample_deleteEx(type_, value_, DDS_BOOLEAN_TRUE); }
    Sample(const Sample &) = delete;
    Sample &operator=(const Sample &) = delete;

    void *get() const { return value_; }
    bool read(const std::uint8_t *data, std::size_t size) const
    {
        return ZUVCodec_deserialize(type_, value_, data, static_cast<DDS_UnsignedLong>(size));
    }

private:
    const DDS_TypeCode *type_;
    void *value_;
};

// The same octets as the payload of a key alone.
inline void feedKey(const DDS_TypeCode &type, const std::vector<std::uint8_t> &payload)
{
    const Sample sample(type);
    ZUVKeyHash hash;
    if (payload.empty() ||
        !ZUVCodec_deserializeKey(&type, sample.get(), payload.data(),
                                 static_cast<DDS_UnsignedLong>(payload.size()))) {
        return;
    }
    require(ZUVCodec_getKeyHash(&type, sample.get(), &hash));
    std::vector<std::uint8_t> written(ZUVCodec_getKeyMaxSize(&type, DDS_BOOLEAN_TRUE));
    DDS_UnsignedLong length = 0;
    require(ZUVCodec_serializeKey(&type, sample.get(), written.data(),
                                  static_cast<DDS_UnsignedLong>(written.size()), &length) &&
            length <= written.size());
}

inline void feed(const DDS_TypeCode &type, const std::uint8_t *data, std::size_t size)
{
    DDSLog_g_instrumentationMask = 0; // refusals are many and expected
    ZUVOsapiHeapStatistics before;
    ZUVOsapiHeap_getStatistics(&before);
    {
        // A block of the exact size, so that a sanitizer sees any step behind it.
        const std::vector<std::uint8_t> payload(data, data + size);
        const Sample sample(type);
        ZUVOsapiHeapStatistics atStart;
        ZUVOsapiHeap_getStatistics(&atStart);
        const bool isRead = !payload.empty() && sample.read(payload.data(), payload.size());
        require(isRead == (!payload.empty() &&
                           ZUVCodec_validate(&type, payload.data(),
                                             static_cast<DDS_UnsignedLong>(payload.size()))));
        ZUVOsapiHeapStatistics atEnd;
        ZUVOsapiHeap_getStatistics(&atEnd);
        // An element that is all missing takes four octets, and its record in memory some more.
        require(atEnd.liveByteCount <= atStart.liveByteCount + 8 * size);
        if (isRead) {
            std::vector<std::uint8_t> written(
                ZUVCodec_getSize(&type, DDS_BOOLEAN_TRUE, sample.get()));
            DDS_UnsignedLong length = 0;
            require(ZUVCodec_serialize(&type, sample.get(), written.data(),
                                       static_cast<DDS_UnsignedLong>(written.size()), &length) &&
                    length == written.size());
            const Sample again(type);
            require(again.read(written.data(), written.size()));
            require(ZUVSample_equals(&type, sample.get(), again.get()));
            const Sample copy(type);
            require(ZUVSample_copy(&type, copy.get(), sample.get()));
            require(ZUVSample_equals(&type, sample.get(), copy.get()));
        }
        feedKey(type, payload);
    }
    ZUVOsapiHeapStatistics after;
    ZUVOsapiHeap_getStatistics(&after);
    require(after.liveBlockCount == before.liveBlockCount);
}

// The first octet chooses one of the types, the others are the payload.
inline void feedOneOf(std::initializer_list<const DDS_TypeCode *> types, const std::uint8_t *data,
                      std::size_t size)
{
    if (size > 0) {
        feed(*types.begin()[data[0] % types.size()], data + 1, size - 1);
    }
}

} // namespace zuv_fuzz

#endif
