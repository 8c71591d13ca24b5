// The types that every service shares.
#include "common/ServiceCommon.h"

#include <cstring>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

// A text of the type of an alias, as the member of a sample would hold it.
struct TextAlias {
    const DDS_TypeCode *type;
    const char *name;
    DDS_UnsignedLong bound;
};

const TextAlias kTextAliases[] = {
    {ZUV_Service_BoundedString_get_typecode(), "ZUV::Service::BoundedString", 255},
    {ZUV_Service_FilePath_get_typecode(), "ZUV::Service::FilePath", 1024},
    {ZUV_Service_ResourceId_get_typecode(), "ZUV::Service::ResourceId", 2048},
    {ZUV_Service_XmlString_get_typecode(), "ZUV::Service::XmlString", 2147483647},
};

} // namespace

TEST(ServiceTexts, HaveTheirNamesAndBounds)
{
    for (const TextAlias &alias : kTextAliases) {
        EXPECT_STREQ(DDS_TypeCode_name(alias.type, nullptr), alias.name);
        const DDS_TypeCode *text = DDS_TypeCode_resolve_alias(alias.type);
        EXPECT_EQ(DDS_TypeCode_kind(text, nullptr), DDS_TK_STRING);
        EXPECT_EQ(DDS_TypeCode_length(text, nullptr), alias.bound);
        EXPECT_EQ(DDS_TypeCode_allowed_representations(alias.type, nullptr),
                  DDS_XCDR_DATA_REPRESENTATION_MASK | DDS_XCDR2_DATA_REPRESENTATION_MASK);
        EXPECT_STREQ(DDS_TypeCode_default_value(alias.type, nullptr).value.text, "");
    }
}

TEST(ServiceTexts, TakeTheirBoundAndNoMore)
{
    zuv_test::LogCapture log;
    for (const TextAlias &alias : kTextAliases) {
        if (alias.bound == DDS_UNBOUNDED) {
            continue;
        }
        char *text = DDS_String_dup(std::string(alias.bound, 'x').c_str());
        EXPECT_EQ(ZUVCodec_getSize(alias.type, DDS_BOOLEAN_FALSE, &text), 4 + alias.bound + 1);
        EXPECT_EQ(ZUVCodec_getMaxSize(alias.type, DDS_BOOLEAN_FALSE), 4 + alias.bound + 1);
        EXPECT_TRUE(log.isEmpty());
        DDS_String_replace(&text, std::string(alias.bound + 1, 'x').c_str());
        EXPECT_EQ(ZUVCodec_getSize(alias.type, DDS_BOOLEAN_FALSE, &text), 0u);
        EXPECT_FALSE(log.isEmpty());
        log.clear();
        DDS_String_free(text);
    }
}

TEST(ServiceTexts, WithoutABoundHaveNoneToHit)
{
    ZUV_Service_XmlString text = DDS_String_dup(std::string(3000000, 'x').c_str());
    EXPECT_EQ(ZUVCodec_getSize(&ZUV_Service_XmlString_g_typecode, DDS_BOOLEAN_FALSE, &text),
              3000005u);
    EXPECT_EQ(ZUV_Service_XmlStringPlugin_get_serialized_sample_max_size(nullptr, DDS_BOOLEAN_TRUE),
              0x7ffffbffu);
    ZUV_Service_XmlString_finalize(&text);
    EXPECT_EQ(text, nullptr);
}

TEST(ServiceTexts, AreInitializedWithRoomForTheirBound)
{
    ZUV_Service_FilePath path = nullptr;
    ASSERT_TRUE(ZUV_Service_FilePath_initialize(&path));
    EXPECT_STREQ(path, "");
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(path), 1025u);
    ZUV_Service_FilePath_finalize(&path);
}

TEST(EntityStateKind, HasItsValues)
{
    const DDS_TypeCode *type = ZUV_Service_EntityStateKind_get_typecode();
    EXPECT_STREQ(DDS_TypeCode_name(type, nullptr), "ZUV::Service::EntityStateKind");
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(type, nullptr), DDS_EXTENSIBLE_EXTENSIBILITY);
    const char *const names[] = {"INVALID", "ENABLED", "DISABLED", "STARTED",
                                 "STOPPED", "RUNNING", "PAUSED"};
    ASSERT_EQ(DDS_TypeCode_member_count(type, nullptr), std::size(names));
    for (DDS_UnsignedLong i = 0; i < std::size(names); ++i) {
        EXPECT_STREQ(DDS_TypeCode_member_name(type, i, nullptr), names[i]);
        EXPECT_EQ(DDS_TypeCode_member_ordinal(type, i, nullptr), static_cast<DDS_Long>(i));
    }
    EXPECT_EQ(DDS_TypeCode_default_value(type, nullptr).value.signedValue, 0);
}

TEST(EntityState, HoldsInvalidWhenInitialized)
{
    ZUV_Service_EntityState state;
    std::memset(&state, 0xa5, sizeof(state));
    ASSERT_TRUE(ZUV_Service_EntityState_initialize(&state));
    EXPECT_EQ(state.state, ZUV_Service_EntityStateKind_INVALID);
    ZUV_Service_EntityState_finalize(&state);
}

TEST(EntityState, IsAnUnkeyedAppendableTopicType)
{
    const DDS_TypeCode *type = ZUV_Service_EntityState_get_typecode();
    EXPECT_STREQ(DDS_TypeCode_name(type, nullptr), "ZUV::Service::EntityState");
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(type, nullptr), DDS_EXTENSIBLE_EXTENSIBILITY);
    EXPECT_FALSE(DDS_TypeCode_is_nested(type, nullptr));
    EXPECT_EQ(DDS_TypeCode_allowed_representations(type, nullptr),
              DDS_XCDR2_DATA_REPRESENTATION_MASK);
    EXPECT_EQ(DDS_TypeCode_member_id(type, 0, nullptr), 0x0E9ED39Eu);
    EXPECT_EQ(ZUV_Service_EntityStatePlugin_get_key_kind(), ZUV_TYPE_KEY_KIND_NONE);
}

TEST(EntityState, TravelsInTwelveOctets)
{
    const ZUV_Service_EntityState state = {ZUV_Service_EntityStateKind_PAUSED};
    unsigned int length = 0;
    ASSERT_TRUE(ZUV_Service_EntityStatePlugin_serialize_to_cdr_buffer(nullptr, &length, &state));
    EXPECT_EQ(length, 12u);
    char buffer[12];
    ASSERT_TRUE(ZUV_Service_EntityStatePlugin_serialize_to_cdr_buffer(buffer, &length, &state));
    const char expected[12] = {0, 9, 0, 0, 4, 0, 0, 0, 6, 0, 0, 0};
    EXPECT_EQ(std::memcmp(buffer, expected, sizeof(expected)), 0);
    ZUV_Service_EntityState decoded = {};
    ASSERT_TRUE(
        ZUV_Service_EntityStatePlugin_deserialize_from_cdr_buffer(&decoded, buffer, length));
    EXPECT_EQ(decoded.state, ZUV_Service_EntityStateKind_PAUSED);
}

TEST(EntityState, RefusesAnUnknownState)
{
    const zuv_test::LogCapture log;
    ZUV_Service_EntityState decoded = {ZUV_Service_EntityStateKind_RUNNING};
    for (const char value : {7, -1}) {
        const char payload[12] = {0, 9, 0, 0, 4, 0, 0, 0, value, 0, 0, 0};
        EXPECT_FALSE(
            ZUV_Service_EntityStatePlugin_deserialize_from_cdr_buffer(&decoded, payload, 12));
        EXPECT_EQ(decoded.state, ZUV_Service_EntityStateKind_RUNNING);
    }
}

TEST(BuiltinTopicKey, IsAFinalNestedStructureOfFourWords)
{
    const DDS_TypeCode *type = ZUV_Service_BuiltinTopicKey_get_typecode();
    EXPECT_STREQ(DDS_TypeCode_name(type, nullptr), "ZUV::Service::BuiltinTopicKey");
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(type, nullptr), DDS_FINAL_EXTENSIBILITY);
    EXPECT_TRUE(DDS_TypeCode_is_nested(type, nullptr));
    EXPECT_EQ(DDS_TypeCode_member_id(type, 0, nullptr), 0x00C16320u);
    ZUV_Service_BuiltinTopicKey key;
    ASSERT_TRUE(ZUV_Service_BuiltinTopicKey_initialize(&key));
    for (DDS_UnsignedLong &word : key.value) {
        EXPECT_EQ(word, 0u);
        word = 0x01020304;
    }
    unsigned int length = 0;
    ASSERT_TRUE(ZUV_Service_BuiltinTopicKeyPlugin_serialize_to_cdr_buffer(nullptr, &length, &key));
    EXPECT_EQ(length, 20u);
    EXPECT_EQ(
        ZUV_Service_BuiltinTopicKeyPlugin_get_serialized_sample_max_size(nullptr, DDS_BOOLEAN_TRUE),
        20u);
}
