// What the description of every type says: its name, the defaults and ranges of its members, its nesting, its
// greatest size.
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "AllTypes.h"
#include "platform/typesys/Codec.h"

namespace
{

using namespace zuv_test;

// "ZUV::Service::EntityState" as the language binding writes it.
std::string flattened(std::string name)
{
    for (std::size_t at = 0; (at = name.find("::", at)) != std::string::npos;) {
        name.replace(at, 2, "_");
    }
    return name;
}

TEST(Descriptions, NameEachTypeByItsScope)
{
#define ZUV_TEST_NAME_OF(T) EXPECT_EQ(flattened(nameOf(T##_get_typecode())), #T);
    ZUV_TEST_ALL_TYPES(ZUV_TEST_NAME_OF)
#define ZUV_TEST_REGISTERED_NAME_OF(T)                                                             \
    EXPECT_STREQ(T##TypeSupport_get_type_name(), nameOf(T##_get_typecode()));                      \
    EXPECT_EQ(T##TypeSupport_get_typecode(), T##_get_typecode());
    ZUV_TEST_TOPIC_TYPES(ZUV_TEST_REGISTERED_NAME_OF)
}

TEST(Descriptions, AreTheSameRecordOnEveryCallAndLinkedToIt)
{
#define ZUV_TEST_RECORD_OF(T)                                                                      \
    EXPECT_EQ(T##_get_typecode(), T##_get_typecode());                                             \
    EXPECT_EQ(T##_get_type_plugin_info(), T##_get_type_plugin_info());                             \
    EXPECT_EQ(T##_get_type_plugin_info()->typeCode, T##_get_typecode());                           \
    ASSERT_NE(T##_get_sample_access_info(), nullptr);                                              \
    EXPECT_EQ(T##_get_sample_access_info(), T##_get_sample_access_info());                         \
    EXPECT_EQ(T##_get_sample_access_info()->sampleSize, sizeof(T));
    ZUV_TEST_ALL_TYPES(ZUV_TEST_RECORD_OF)
}

TEST(Descriptions, NestWhatIsNoTypeOfATopic)
{
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_TOPIC_TYPES)) {
        EXPECT_FALSE(DDS_TypeCode_is_nested(type, nullptr)) << nameOf(type);
    }
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_NESTED_TYPES)) {
        EXPECT_TRUE(DDS_TypeCode_is_nested(type, nullptr)) << nameOf(type);
    }
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_STRUCTURES)) {
        EXPECT_TRUE(DDS_TypeCode_is_autoid_hash(type, nullptr)) << nameOf(type);
    }
}

// The default 0 and the full range of a number.
template <typename Number, typename Part>
void expectNumber(const DDS_TypeCode *type, DDS_UnsignedLong member, Part part)
{
    EXPECT_EQ(part(DDS_TypeCode_member_default_value(type, member, nullptr)), 0);
    EXPECT_EQ(part(DDS_TypeCode_member_min_value(type, member, nullptr)),
              std::numeric_limits<Number>::lowest());
    EXPECT_EQ(part(DDS_TypeCode_member_max_value(type, member, nullptr)),
              std::numeric_limits<Number>::max());
}

// False for a kind of member that is no number, text or enumeration.
bool expectMember(const DDS_TypeCode *type, DDS_UnsignedLong member)
{
    const auto signedPart = [](const DDS_AnnotationParameterValue &value) {
        return value.value.signedValue;
    };
    const auto unsignedPart = [](const DDS_AnnotationParameterValue &value) {
        return value.value.unsignedValue;
    };
    const auto floatPart = [](const DDS_AnnotationParameterValue &value) {
        return value.value.floatValue;
    };
    const DDS_AnnotationParameterValue defaultValue =
        DDS_TypeCode_member_default_value(type, member, nullptr);
    switch (DDS_TypeCode_kind(
        DDS_TypeCode_resolve_alias(DDS_TypeCode_member_type(type, member, nullptr)), nullptr)) {
    case DDS_TK_LONG:
        expectNumber<DDS_Long>(type, member, signedPart);
        return true;
    case DDS_TK_LONGLONG:
        expectNumber<DDS_LongLong>(type, member, signedPart);
        return true;
    case DDS_TK_ULONG:
        expectNumber<DDS_UnsignedLong>(type, member, unsignedPart);
        return true;
    case DDS_TK_ULONGLONG:
        expectNumber<DDS_UnsignedLongLong>(type, member, unsignedPart);
        return true;
    case DDS_TK_FLOAT:
        expectNumber<DDS_Float>(type, member, floatPart);
        return true;
    case DDS_TK_STRING:
        EXPECT_EQ(defaultValue.kind, DDS_TK_STRING);
        EXPECT_STREQ(defaultValue.value.text, "");
        return true;
    case DDS_TK_ENUM:
        EXPECT_EQ(defaultValue.kind, DDS_TK_ENUM);
        EXPECT_EQ(defaultValue.value.signedValue, 0);
        return true;
    default:
        EXPECT_EQ(defaultValue.kind, DDS_TK_NULL); // that of its parts, or empty
        return false;
    }
}

TEST(Descriptions, GiveEveryMemberItsDefaultAndRange)
{
    int count = 0;
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_STRUCTURES)) {
        for (DDS_UnsignedLong i = 0; i < DDS_TypeCode_member_count(type, nullptr); ++i) {
            SCOPED_TRACE(std::string(nameOf(type)) + '.' +
                         DDS_TypeCode_member_name(type, i, nullptr));
            count += expectMember(type, i) ? 1 : 0;
        }
    }
    EXPECT_EQ(count, 30);
}

// Whether samples of a type may be of any size: it has a text or sequence without a bound.
bool isUnbounded(const DDS_TypeCode *type)
{
    type = DDS_TypeCode_resolve_alias(type);
    switch (DDS_TypeCode_kind(type, nullptr)) {
    case DDS_TK_STRING:
    case DDS_TK_SEQUENCE:
        return DDS_TypeCode_length(type, nullptr) == DDS_UNBOUNDED;
    case DDS_TK_STRUCT:
        for (DDS_UnsignedLong i = 0; i < DDS_TypeCode_member_count(type, nullptr); ++i) {
            if (isUnbounded(DDS_TypeCode_member_type(type, i, nullptr))) {
                return true;
            }
        }
        return false;
    default:
        return false;
    }
}

TEST(Descriptions, TellNoGreatestSizeOfWhatHasNone)
{
    int count = 0;
#define ZUV_TEST_MAX_SIZE_OF(T)                                                                    \
    {                                                                                              \
        const bool isOpen = isUnbounded(T##_get_typecode());                                       \
        const DDS_UnsignedLong size =                                                              \
            T##Plugin_get_serialized_sample_max_size(nullptr, DDS_BOOLEAN_TRUE);                   \
        EXPECT_EQ(size == 0x7ffffbffU, isOpen) << #T;                                              \
        EXPECT_GT(size, 4U) << #T;                                                                 \
        count += isOpen ? 1 : 0;                                                                   \
    }
    ZUV_TEST_ALL_TYPES(ZUV_TEST_MAX_SIZE_OF)
    EXPECT_EQ(count, 7);
}

TEST(Descriptions, TellWhichTypesHaveAKey)
{
#define ZUV_TEST_KEYED(T)                                                                          \
    EXPECT_EQ(T##Plugin_get_key_kind(), 2) << #T;                                                  \
    EXPECT_GT(T##Plugin_get_serialized_key_max_size(nullptr, DDS_BOOLEAN_TRUE), 4U) << #T;         \
    EXPECT_LE(T##Plugin_get_serialized_key_max_size_for_keyhash(nullptr), 16U) << #T;
#define ZUV_TEST_UNKEYED(T)                                                                        \
    EXPECT_EQ(T##Plugin_get_key_kind(), 0) << #T;                                                  \
    EXPECT_EQ(T##Plugin_get_serialized_key_max_size(nullptr, DDS_BOOLEAN_TRUE), 0U) << #T;         \
    EXPECT_EQ(T##Plugin_get_serialized_key_max_size_for_keyhash(nullptr), 0U) << #T;
    ZUV_TEST_KEYED_TOPIC_TYPES(ZUV_TEST_KEYED)
    ZUV_TEST_UNKEYED_TOPIC_TYPES(ZUV_TEST_UNKEYED)
    ZUV_TEST_NESTED_TYPES(ZUV_TEST_UNKEYED)
    ZUV_TEST_ALIASES(ZUV_TEST_UNKEYED)
}

} // namespace
