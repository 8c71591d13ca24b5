// The operations of one sequence type under names of their own, and values to fill its elements with.
#ifndef ZUV_TESTS_PLATFORM_TYPESYS_SEQUENCE_TRAITS_H
#define ZUV_TESTS_PLATFORM_TYPESYS_SEQUENCE_TRAITS_H

#include <cstdio>
#include <cstring>
#include <string>

#include "TestTypes.h"
#include "platform/typesys/PrimitiveSequences.h"
#include "platform/typesys/String.h"

namespace zuv_test
{

inline void setElement(DDS_Octet &element, int value)
{
    element = static_cast<DDS_Octet>(value);
}
inline void setElement(DDS_Long &element, int value)
{
    element = value;
}
inline void setElement(DDS_UnsignedLong &element, int value)
{
    element = static_cast<DDS_UnsignedLong>(value);
}
inline void setElement(char *&element, int value)
{
    DDS_String_replace(&element, std::to_string(value).c_str());
}
inline void setElement(TestPoint &element, int value)
{
    element = {value, -value};
}
inline void setElement(TestColor &element, int value)
{
    element = value % 2 == 0 ? TestColor_RED : TestColor_BLUE;
}
inline void setElement(TestMutable &element, int value)
{
    element.id = value;
    setElement(element.name, value);
    setElement(element.note, value);
    DDS_OctetSeq_ensure_length(&element.octets, 1, 1);
    setElement(*DDS_OctetSeq_get_reference(&element.octets, 0), value);
}

inline bool holds(DDS_Octet element, int value)
{
    return element == static_cast<DDS_Octet>(value);
}
inline bool holds(DDS_Long element, int value)
{
    return element == value;
}
inline bool holds(DDS_UnsignedLong element, int value)
{
    return element == static_cast<DDS_UnsignedLong>(value);
}
inline bool holds(const char *element, int value)
{
    return element != nullptr && std::to_string(value) == element;
}
inline bool holds(const TestPoint &element, int value)
{
    return element.x == value && element.y == -value;
}
inline bool holds(TestColor element, int value)
{
    return element == (value % 2 == 0 ? TestColor_RED : TestColor_BLUE);
}
inline bool holds(const TestMutable &element, int value)
{
    return element.id == value && holds(element.name, value) && holds(element.note, value) &&
           DDS_OctetSeq_get_length(&element.octets) == 1 &&
           holds(DDS_OctetSeq_get(&element.octets, 0), value);
}

// Elements outside a sequence.
template <typename T>
void initializeElement(T &element)
{
    element = {};
}
inline void initializeElement(TestMutable &element)
{
    TestMutable_initialize(&element);
}
template <typename T>
void finalizeElement(T &)
{
}
inline void finalizeElement(char *&element)
{
    DDS_String_free(element);
    element = nullptr;
}
inline void finalizeElement(TestMutable &element)
{
    TestMutable_finalize(&element);
}

#define ZUV_TEST_SEQUENCE_TRAITS(TSeq, T)                                                          \
    struct TSeq##Traits {                                                                          \
        using Sequence = TSeq;                                                                     \
        using Element = T;                                                                         \
        static constexpr auto initialize = TSeq##_initialize;                                      \
        static constexpr auto finalize = TSeq##_finalize;                                          \
        static constexpr auto getMaximum = TSeq##_get_maximum;                                     \
        static constexpr auto setMaximum = TSeq##_set_maximum;                                     \
        static constexpr auto setAbsoluteMaximum = TSeq##_set_absolute_maximum;                    \
        static constexpr auto getLength = TSeq##_get_length;                                       \
        static constexpr auto setLength = TSeq##_set_length;                                       \
        static constexpr auto ensureLength = TSeq##_ensure_length;                                 \
        static constexpr auto get = TSeq##_get;                                                    \
        static constexpr auto getReference = TSeq##_get_reference;                                 \
        static constexpr auto copy = TSeq##_copy;                                                  \
        static constexpr auto copyNoAlloc = TSeq##_copy_no_alloc;                                  \
        static constexpr auto copyNoAllocI = TSeq##_copy_no_allocI;                                \
        static constexpr auto fromArray = TSeq##_from_array;                                       \
        static constexpr auto toArray = TSeq##_to_array;                                           \
        static constexpr auto loanContiguous = TSeq##_loan_contiguous;                             \
        static constexpr auto loanDiscontiguous = TSeq##_loan_discontiguous;                       \
        static constexpr auto unloan = TSeq##_unloan;                                              \
        static constexpr auto getContiguousBuffer = TSeq##_get_contiguous_buffer;                  \
        static constexpr auto getContiguousBufferI = TSeq##_get_contiguous_bufferI;                \
        static constexpr auto getDiscontiguousBuffer = TSeq##_get_discontiguous_buffer;            \
        static constexpr auto getDiscontiguousBufferI = TSeq##_get_discontiguous_bufferI;          \
        static constexpr auto hasOwnership = TSeq##_has_ownership;                                 \
        static constexpr auto getReadToken = TSeq##_get_read_tokenI;                               \
        static constexpr auto setReadToken = TSeq##_set_read_tokenI;                               \
        static constexpr auto checkInvariants = TSeq##_check_invariantsI;                          \
        static constexpr auto deleteBuffer = TSeq##_delete_bufferI;                                \
        static constexpr auto getElementPointers = TSeq##_get_element_pointers_allocation;         \
        static constexpr auto setElementPointers = TSeq##_set_element_pointers_allocation;         \
        static constexpr auto getAllocation = TSeq##_get_element_allocation_params;                \
        static constexpr auto setAllocation = TSeq##_set_element_allocation_params;                \
        static constexpr auto getDeallocation = TSeq##_get_element_deallocation_params;            \
        static constexpr auto setDeallocation = TSeq##_set_element_deallocation_params;            \
    };

ZUV_TEST_SEQUENCE_TRAITS(DDS_BooleanSeq, DDS_Boolean)
ZUV_TEST_SEQUENCE_TRAITS(DDS_OctetSeq, DDS_Octet)
ZUV_TEST_SEQUENCE_TRAITS(DDS_LongSeq, DDS_Long)
ZUV_TEST_SEQUENCE_TRAITS(DDS_UnsignedLongSeq, DDS_UnsignedLong)
ZUV_TEST_SEQUENCE_TRAITS(DDS_StringSeq, char *)
ZUV_TEST_SEQUENCE_TRAITS(TestNameSeq, TestName)
ZUV_TEST_SEQUENCE_TRAITS(TestPointSeq, TestPoint)
ZUV_TEST_SEQUENCE_TRAITS(TestColorSeq, TestColor)
ZUV_TEST_SEQUENCE_TRAITS(TestMutableSeq, TestMutable)

} // namespace zuv_test

#endif
