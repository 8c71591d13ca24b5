// Samples of any type, seen through their type code alone: values for every member, and room for them.
#ifndef ZUV_TESTS_SUPPORT_SAMPLE_FILL_H
#define ZUV_TESTS_SUPPORT_SAMPLE_FILL_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "platform/typesys/Sample.h"
#include "platform/typesys/Sequence.h"
#include "platform/typesys/String.h"
#include "platform/typesys/TypeCode.h"
#include "platform/typesys/TypePlugin.h"

namespace zuv_test
{

// Which members a filled sample has: with Sparse optional ones are absent and sequences empty.
enum class Filling { Full, Sparse };

struct SampleDeleter {
    const DDS_TypeCode *type;
    void operator()(void *sample) const { ZUVSample_deleteEx(type, sample, DDS_BOOLEAN_TRUE); }
};
using SamplePointer = std::unique_ptr<void, SampleDeleter>;

inline SamplePointer newSample(const DDS_TypeCode *type)
{
    return {ZUVSample_newEx(type, DDS_BOOLEAN_TRUE), SampleDeleter{type}};
}

inline bool isPrimitive(const DDS_TypeCode *type)
{
    const DDS_TCKind kind = DDS_TypeCode_kind(type, nullptr);
    return kind > DDS_TK_NULL && kind < DDS_TK_ENUM;
}

// The elements of a sequence type, as its operations take them.
inline ZUVSequenceElement elementOf(const DDS_TypeCode *sequence)
{
    const DDS_TypeCode *element =
        DDS_TypeCode_resolve_alias(DDS_TypeCode_content_type(sequence, nullptr));
    return {ZUVSample_getSize(element), isPrimitive(element) ? nullptr : element};
}

template <typename Number>
void storeNumber(void *place, int value)
{
    const Number number = static_cast<Number>(value);
    std::memcpy(place, &number, sizeof(number));
}

inline void fillSample(const DDS_TypeCode *type, void *place, int value,
                       Filling filling = Filling::Full);

inline void fillMembers(const DDS_TypeCode *type, void *sample, int value, Filling filling)
{
    const ZUVSampleAccessInfo *access = ZUVType_getSampleAccessInfo(type);
    for (DDS_UnsignedLong i = 0; i < access->memberCount; ++i) {
        const DDS_TypeCode *member =
            DDS_TypeCode_resolve_alias(DDS_TypeCode_member_type(type, i, nullptr));
        void *place = static_cast<char *>(sample) + access->memberOffsets[i];
        const int inner = value + static_cast<int>(i);
        if (!DDS_TypeCode_is_member_optional(type, i, nullptr)) {
            fillSample(member, place, inner, filling);
        } else if (filling == Filling::Sparse) {
            continue;
        } else if (DDS_TypeCode_kind(member, nullptr) == DDS_TK_STRING) {
            fillSample(member, place, inner, filling);
        } else {
            void *&target = *static_cast<void **>(place);
            if (target == nullptr) {
                target = ZUVSample_newEx(member, DDS_BOOLEAN_TRUE);
            }
            fillSample(member, target, inner, filling);
        }
    }
}

inline void fillSequence(const DDS_TypeCode *type, ZUVSequence *sequence, int value,
                         Filling filling)
{
    const DDS_Long length = filling == Filling::Sparse ? 0 : 3;
    const ZUVSequenceElement element = elementOf(type);
    ZUVSequence_ensureLength(sequence, &element, length, length);
    for (DDS_Long i = 0; i < length; ++i) {
        fillSample(DDS_TypeCode_content_type(type, nullptr),
                   ZUVSequence_getReference(sequence, &element, i), value + i, filling);
    }
}

// Give every member of an initialized sample a value that `value` decides.
inline void fillSample(const DDS_TypeCode *type, void *place, int value, Filling filling)
{
    type = DDS_TypeCode_resolve_alias(type);
    switch (DDS_TypeCode_kind(type, nullptr)) {
    case DDS_TK_BOOLEAN:
        return storeNumber<DDS_Boolean>(place, value & 1);
    case DDS_TK_OCTET:
    case DDS_TK_CHAR:
        return storeNumber<DDS_Octet>(place, value);
    case DDS_TK_SHORT:
    case DDS_TK_USHORT:
        return storeNumber<DDS_Short>(place, value);
    case DDS_TK_LONG:
    case DDS_TK_ULONG:
        return storeNumber<DDS_Long>(place, value);
    case DDS_TK_LONGLONG:
    case DDS_TK_ULONGLONG:
        return storeNumber<DDS_LongLong>(place, value);
    case DDS_TK_FLOAT:
        return storeNumber<DDS_Float>(place, value);
    case DDS_TK_DOUBLE:
        return storeNumber<DDS_Double>(place, value);
    case DDS_TK_ENUM: {
        const auto index =
            static_cast<DDS_UnsignedLong>(value) % DDS_TypeCode_member_count(type, nullptr);
        return storeNumber<DDS_Long>(place, DDS_TypeCode_member_ordinal(type, index, nullptr));
    }
    case DDS_TK_STRING:
        DDS_String_replace(static_cast<char **>(place), std::to_string(value).c_str());
        return;
    case DDS_TK_ARRAY: {
        const DDS_TypeCode *element = DDS_TypeCode_content_type(type, nullptr);
        for (DDS_UnsignedLong i = 0; i < DDS_TypeCode_length(type, nullptr); ++i) {
            fillSample(element, static_cast<char *>(place) + i * ZUVSample_getSize(element),
                       value + static_cast<int>(i), filling);
        }
        return;
    }
    case DDS_TK_SEQUENCE:
        return fillSequence(type, static_cast<ZUVSequence *>(place), value, filling);
    default:
        return fillMembers(type, place, value, filling);
    }
}

} // namespace zuv_test

#endif
