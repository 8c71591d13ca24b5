#include "platform/typesys/TypeCode.h"

#include <limits>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TestTypes.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/TypeTable.hpp"
#include "support/LogCapture.h"

namespace
{

const DDS_TypeCode &kEverything = TestEverything_g_typecode;

DDS_UnsignedLong memberOf(const DDS_TypeCode &type, const char *name)
{
    return DDS_TypeCode_find_member_by_name(&type, name, nullptr);
}

} // namespace

TEST(TypeCode, IsTheSameRecordOnEveryCall)
{
    EXPECT_EQ(TestEverything_get_typecode(), TestEverything_get_typecode());
    EXPECT_EQ(TestEverything_get_typecode(), &kEverything);
}

TEST(TypeCode, TellsKindNameAndExtensibility)
{
    EXPECT_EQ(DDS_TypeCode_kind(&kEverything, nullptr), DDS_TK_STRUCT);
    EXPECT_STREQ(DDS_TypeCode_name(&kEverything, nullptr), "Test::Everything");
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(&kEverything, nullptr), DDS_EXTENSIBLE_EXTENSIBILITY);
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(&TestPoint_g_typecode, nullptr),
              DDS_FINAL_EXTENSIBILITY);
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(&TestMutable_g_typecode, nullptr),
              DDS_MUTABLE_EXTENSIBILITY);
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(&TestColor_g_typecode, nullptr),
              DDS_MUTABLE_EXTENSIBILITY);
    EXPECT_EQ(DDS_TypeCode_kind(&DDS_g_tc_null, nullptr), DDS_TK_NULL);
    EXPECT_EQ(DDS_TypeCode_kind(&DDS_g_tc_string, nullptr), DDS_TK_STRING);
    EXPECT_EQ(DDS_TypeCode_kind(&TestName_g_typecode, nullptr), DDS_TK_ALIAS);
}

TEST(TypeCode, TellsNestingIdsAndRepresentations)
{
    EXPECT_FALSE(DDS_TypeCode_is_nested(&kEverything, nullptr));
    EXPECT_TRUE(DDS_TypeCode_is_nested(&TestPoint_g_typecode, nullptr));
    EXPECT_TRUE(DDS_TypeCode_is_autoid_hash(&kEverything, nullptr));
    EXPECT_EQ(DDS_TypeCode_allowed_representations(&kEverything, nullptr),
              DDS_XCDR2_DATA_REPRESENTATION_MASK);
    EXPECT_EQ(DDS_TypeCode_allowed_representations(&TestColor_g_typecode, nullptr),
              DDS_XCDR_DATA_REPRESENTATION_MASK | DDS_XCDR2_DATA_REPRESENTATION_MASK);
    EXPECT_EQ(DDS_TypeCode_allowed_representations(&TestName_g_typecode, nullptr),
              DDS_XCDR_DATA_REPRESENTATION_MASK | DDS_XCDR2_DATA_REPRESENTATION_MASK);
}

TEST(TypeCode, WalksMembers)
{
    ASSERT_EQ(DDS_TypeCode_member_count(&kEverything, nullptr), 31u);
    EXPECT_STREQ(DDS_TypeCode_member_name(&kEverything, 0, nullptr), "flag");
    const DDS_UnsignedLong name = memberOf(kEverything, "name");
    EXPECT_EQ(DDS_TypeCode_member_type(&kEverything, name, nullptr), &TestName_g_typecode);
    EXPECT_EQ(DDS_TypeCode_member_id(&kEverything, name, nullptr), 0x0c9368b0u);
    EXPECT_EQ(DDS_TypeCode_find_member_by_id(&kEverything, 0x0c9368b0u, nullptr), name);
    EXPECT_TRUE(DDS_TypeCode_is_member_required(&kEverything, name, nullptr));

    const DDS_UnsignedLong maybe = memberOf(kEverything, "maybe_text");
    EXPECT_TRUE(DDS_TypeCode_is_member_optional(&kEverything, maybe, nullptr));
    EXPECT_FALSE(DDS_TypeCode_is_member_required(&kEverything, maybe, nullptr));
    EXPECT_TRUE(DDS_TypeCode_is_member_key(&TestMutable_g_typecode, 0, nullptr));
    EXPECT_FALSE(DDS_TypeCode_is_member_required(&TestMutable_g_typecode, 0, nullptr));
}

TEST(TypeCode, WalksEnumerators)
{
    ASSERT_EQ(DDS_TypeCode_member_count(&TestColor_g_typecode, nullptr), 3u);
    EXPECT_STREQ(DDS_TypeCode_member_name(&TestColor_g_typecode, 2, nullptr), "BLUE");
    EXPECT_EQ(DDS_TypeCode_member_ordinal(&TestColor_g_typecode, 2, nullptr), 10);
    EXPECT_EQ(DDS_TypeCode_member_type(&TestColor_g_typecode, 2, nullptr), nullptr);
}

TEST(TypeCode, WalksCollectionsAndAliases)
{
    const DDS_TypeCode *longs =
        DDS_TypeCode_member_type(&kEverything, memberOf(kEverything, "longs"), nullptr);
    EXPECT_EQ(DDS_TypeCode_kind(longs, nullptr), DDS_TK_SEQUENCE);
    EXPECT_EQ(DDS_TypeCode_length(longs, nullptr), 4u);
    EXPECT_EQ(DDS_TypeCode_content_type(longs, nullptr), &DDS_g_tc_long);
    const DDS_TypeCode *octets =
        DDS_TypeCode_member_type(&kEverything, memberOf(kEverything, "octets"), nullptr);
    EXPECT_EQ(DDS_TypeCode_length(octets, nullptr), 0x7fffffffu);
    const DDS_TypeCode *three =
        DDS_TypeCode_member_type(&kEverything, memberOf(kEverything, "three"), nullptr);
    EXPECT_EQ(DDS_TypeCode_kind(three, nullptr), DDS_TK_ARRAY);
    EXPECT_EQ(DDS_TypeCode_length(three, nullptr), 3u);
    const DDS_TypeCode *text = DDS_TypeCode_content_type(&TestName_g_typecode, nullptr);
    EXPECT_EQ(DDS_TypeCode_resolve_alias(&TestName_g_typecode), text);
    EXPECT_EQ(DDS_TypeCode_length(text, nullptr), 8u);
    EXPECT_EQ(DDS_TypeCode_resolve_alias(nullptr), nullptr);
    EXPECT_EQ(DDS_TypeCode_concrete_base_type(&kEverything, nullptr), nullptr);
}

TEST(TypeCode, TellsDefaultsAndRanges)
{
    const auto defaultOf = [](const char *name) {
        return DDS_TypeCode_member_default_value(&kEverything, memberOf(kEverything, name),
                                                 nullptr);
    };
    EXPECT_EQ(defaultOf("number").kind, DDS_TK_LONG);
    EXPECT_EQ(defaultOf("number").value.signedValue, 0);
    EXPECT_EQ(defaultOf("color").kind, DDS_TK_ENUM);
    EXPECT_EQ(defaultOf("color").value.signedValue, TestColor_GREEN);
    EXPECT_EQ(defaultOf("name").kind, DDS_TK_STRING);
    EXPECT_STREQ(defaultOf("name").value.text, "");
    EXPECT_EQ(defaultOf("inner").kind, DDS_TK_NULL);

    const auto least = [](const char *name) {
        return DDS_TypeCode_member_min_value(&kEverything, memberOf(kEverything, name), nullptr);
    };
    const auto greatest = [](const char *name) {
        return DDS_TypeCode_member_max_value(&kEverything, memberOf(kEverything, name), nullptr);
    };
    EXPECT_EQ(least("number").value.signedValue, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(greatest("number").value.signedValue, std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(greatest("octet").value.unsignedValue, 255u);
    EXPECT_EQ(least("small").value.signedValue, -32768);
    EXPECT_EQ(greatest("usmall").value.unsignedValue, 65535u);
    EXPECT_EQ(greatest("unumber").value.unsignedValue, 0xffffffffu);
    EXPECT_EQ(least("large").value.signedValue, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(greatest("ularge").value.unsignedValue, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(least("real").value.floatValue, -3.4028234663852886e+38);
    EXPECT_EQ(greatest("real").value.floatValue, 3.4028234663852886e+38);
    EXPECT_EQ(greatest("precise").value.floatValue, std::numeric_limits<double>::max());
    EXPECT_EQ(least("name").kind, DDS_TK_NULL);
    EXPECT_EQ(least("flag").kind, DDS_TK_NULL);
    EXPECT_EQ(DDS_TypeCode_default_value(&TestColor_g_typecode, nullptr).value.signedValue, 2);
    EXPECT_STREQ(DDS_TypeCode_default_value(&TestName_g_typecode, nullptr).value.text, "");
}

TEST(TypeCode, GivesNeutralResultsWithTheReason)
{
    DDS_ExceptionCode_t exception = DDS_NO_EXCEPTION_CODE;
    EXPECT_EQ(DDS_TypeCode_kind(nullptr, &exception), DDS_TK_NULL);
    EXPECT_EQ(exception, DDS_BAD_PARAM_USER_EXCEPTION_CODE);
    EXPECT_EQ(DDS_TypeCode_name(&DDS_g_tc_long, &exception), nullptr);
    EXPECT_EQ(exception, DDS_BADKIND_USER_EXCEPTION_CODE);
    EXPECT_EQ(DDS_TypeCode_member_name(&TestPoint_g_typecode, 2, &exception), nullptr);
    EXPECT_EQ(exception, DDS_BOUNDS_USER_EXCEPTION_CODE);
    EXPECT_EQ(DDS_TypeCode_find_member_by_name(&TestPoint_g_typecode, "z", &exception),
              DDS_MEMBER_INDEX_INVALID);
    EXPECT_EQ(exception, DDS_BAD_MEMBER_NAME_USER_EXCEPTION_CODE);
    EXPECT_EQ(DDS_TypeCode_find_member_by_name(&TestPoint_g_typecode, nullptr, &exception),
              DDS_MEMBER_INDEX_INVALID);
    EXPECT_EQ(DDS_TypeCode_find_member_by_id(&TestPoint_g_typecode, 1, &exception),
              DDS_MEMBER_INDEX_INVALID);
    EXPECT_EQ(exception, DDS_BAD_MEMBER_ID_USER_EXCEPTION_CODE);
    EXPECT_EQ(DDS_TypeCode_length(&TestPoint_g_typecode, &exception), 0u);
    EXPECT_EQ(DDS_TypeCode_content_type(&TestPoint_g_typecode, &exception), nullptr);
    EXPECT_EQ(DDS_TypeCode_member_count(&DDS_g_tc_long, &exception), 0u);
    EXPECT_EQ(exception, DDS_BADKIND_USER_EXCEPTION_CODE);
    EXPECT_EQ(DDS_TypeCode_kind(&DDS_g_tc_long, &exception), DDS_TK_LONG);
    EXPECT_EQ(exception, DDS_NO_EXCEPTION_CODE);
}

TEST(TypeCode, ChoosesTheEncapsulationByExtensibilityAndRepresentation)
{
    const auto encapsulation = [](const DDS_TypeCode &type, DDS_DataRepresentationId_t id) {
        return DDS_TypeCode_get_native_encapsulation(&type, id);
    };
    EXPECT_EQ(encapsulation(kEverything, DDS_AUTO_DATA_REPRESENTATION), 0x0009u);
    EXPECT_EQ(encapsulation(kEverything, DDS_XCDR2_DATA_REPRESENTATION), 0x0009u);
    EXPECT_EQ(encapsulation(TestPoint_g_typecode, DDS_XCDR2_DATA_REPRESENTATION), 0x0007u);
    EXPECT_EQ(encapsulation(TestMutable_g_typecode, DDS_XCDR2_DATA_REPRESENTATION), 0x000bu);
    EXPECT_EQ(encapsulation(TestName_g_typecode, DDS_XCDR2_DATA_REPRESENTATION), 0x0007u);
    EXPECT_GT(encapsulation(kEverything, DDS_XCDR_DATA_REPRESENTATION), 65534u);
    EXPECT_GT(encapsulation(kEverything, DDS_XML_DATA_REPRESENTATION), 65534u);
    EXPECT_GT(encapsulation(DDS_g_tc_null, DDS_AUTO_DATA_REPRESENTATION), 65534u);
    EXPECT_GT(DDS_TypeCode_get_native_encapsulation(nullptr, DDS_AUTO_DATA_REPRESENTATION), 65534u);
}

TEST(TypeCode, EquivalenceLooksAtStructureNotAtTypeNames)
{
    constexpr DDS_TypeCodeMember members[] = {
        {.name = "x", .type = &DDS_g_tc_long, .id = zuv::memberIdOf("x")},
        {.name = "y", .type = &DDS_g_tc_long, .id = zuv::memberIdOf("y")},
    };
    const DDS_TypeCode point = {.kind = DDS_TK_STRUCT, .name = "Other::Name", .members = members};
    EXPECT_TRUE(DDS_TypeCode_equivalent(&point, &TestPoint_g_typecode, nullptr));

    DDS_TypeCodeMember changed[] = {members[0], members[1]};
    const DDS_TypeCode other = {.kind = DDS_TK_STRUCT, .members = changed};
    changed[1].name = "z";
    EXPECT_FALSE(DDS_TypeCode_equivalent(&other, &TestPoint_g_typecode, nullptr));
    changed[1] = members[1];
    EXPECT_TRUE(DDS_TypeCode_equivalent(&other, &TestPoint_g_typecode, nullptr));
    changed[1].id = 1;
    EXPECT_FALSE(DDS_TypeCode_equivalent(&other, &TestPoint_g_typecode, nullptr));
    changed[1] = members[1];
    changed[1].marks = zuv::kOptional;
    EXPECT_FALSE(DDS_TypeCode_equivalent(&other, &TestPoint_g_typecode, nullptr));
    changed[1] = members[1];
    changed[1].type = &DDS_g_tc_ulong;
    EXPECT_FALSE(DDS_TypeCode_equivalent(&other, &TestPoint_g_typecode, nullptr));
    const DDS_TypeCode shorter = {.kind = DDS_TK_STRUCT,
                                  .members = std::span(members).subspan(0, 1)};
    EXPECT_FALSE(DDS_TypeCode_equivalent(&shorter, &TestPoint_g_typecode, nullptr));
    const DDS_TypeCode appendable = {
        .kind = DDS_TK_STRUCT, .members = members, .extensibility = DDS_EXTENSIBLE_EXTENSIBILITY};
    EXPECT_FALSE(DDS_TypeCode_equivalent(&appendable, &TestPoint_g_typecode, nullptr));
}

TEST(TypeCode, EquivalenceSeesThroughAliases)
{
    EXPECT_TRUE(DDS_TypeCode_equivalent(&TestName_g_typecode, &zuv::kText<8>, nullptr));
    EXPECT_FALSE(DDS_TypeCode_equivalent(&TestName_g_typecode, &zuv::kText<9>, nullptr));
    EXPECT_FALSE(DDS_TypeCode_equivalent(&TestOlder_g_typecode, &TestNewer_g_typecode, nullptr));
    DDS_ExceptionCode_t exception = DDS_NO_EXCEPTION_CODE;
    EXPECT_FALSE(DDS_TypeCode_equivalent(nullptr, &DDS_g_tc_long, &exception));
    EXPECT_EQ(exception, DDS_BAD_PARAM_USER_EXCEPTION_CODE);
    EXPECT_FALSE(DDS_TypeCode_equivalent(&DDS_g_tc_long, nullptr, &exception));
    EXPECT_EQ(exception, DDS_BAD_PARAM_USER_EXCEPTION_CODE);
    EXPECT_TRUE(DDS_TypeCode_equivalent(&DDS_g_tc_null, &DDS_g_tc_null, &exception));
    EXPECT_EQ(exception, DDS_NO_EXCEPTION_CODE);
}

TEST(TypeCode, TellsWhereMembersLie)
{
    const ZUVSampleAccessInfo *info = TestInner_get_sample_access_info();
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info, TestInner_get_sample_access_info());
    EXPECT_EQ(info->sampleSize, sizeof(TestInner));
    ASSERT_EQ(info->memberCount, 2u);
    EXPECT_EQ(info->memberOffsets[1], offsetof(TestInner, b));
    EXPECT_EQ(TestName_get_sample_access_info()->sampleSize, sizeof(char *));
    EXPECT_EQ(TestName_get_sample_access_info()->memberOffsets, nullptr);
    EXPECT_EQ(TestColor_get_sample_access_info()->sampleSize, sizeof(TestColor));
}

TEST(Program, IsCompiledOnceByThreadsThatComeTogether)
{
    // Types that no other test touches.
    static constinit zuv::TypeSlot slot{};
    constexpr DDS_TypeCodeMember members[] = {
        {.name = "a", .type = &DDS_g_tc_long, .id = 1, .offset = 0, .size = 4},
        {.name = "b", .type = &DDS_g_tc_long, .id = 2, .offset = 4, .size = 4},
    };
    const DDS_TypeCode type =
        zuv::makeStruct("Race", 8, DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic, members, &slot);
    std::vector<const ZUVSampleAccessInfo *> infos(8);
    std::vector<std::thread> threads;
    for (auto &info : infos) {
        threads.emplace_back([&info, &type] { info = ZUVType_getSampleAccessInfo(&type); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (const auto *info : infos) {
        EXPECT_NE(info, nullptr);
        EXPECT_EQ(info, infos[0]);
    }
}

TEST(Program, OfATypeThatDoesNotFitItsMemoryIsRefused)
{
    static constinit zuv::TypeSlot slots[5]{};
    constexpr DDS_TypeCodeMember wrongSize[] = {
        {.name = "a", .type = &DDS_g_tc_long, .id = 1, .offset = 0, .size = 8}};
    const DDS_TypeCode emptyEnum = {.kind = DDS_TK_ENUM, .slot = &slots[2]};
    const DDS_TypeCode types[] = {
        zuv::makeStruct("WrongSize", 8, DDS_FINAL_EXTENSIBILITY, zuv::kIsTopic, wrongSize,
                        &slots[0]),
        zuv::makeStruct("NoMembers", 8, DDS_FINAL_EXTENSIBILITY, zuv::kIsTopic, {}, &slots[1]),
        emptyEnum,
        {.kind = DDS_TK_UNION, .name = "Union", .slot = &slots[3]},
        {.kind = DDS_TK_ARRAY, .content = &DDS_g_tc_long, .slot = &slots[4]},
        {.kind = DDS_TK_STRUCT, .name = "OnlyDescribed", .members = wrongSize},
    };
    zuv_test::LogCapture log;
    for (const DDS_TypeCode &type : types) {
        log.clear();
        EXPECT_EQ(ZUVSample_getSize(&type), 0u);
        EXPECT_EQ(ZUVSample_newEx(&type, DDS_BOOLEAN_TRUE), nullptr);
        ASSERT_EQ(log.lines().size(), 2u);
        EXPECT_EQ(log.lines()[0].message, &ZUV_LOG_ANY_FAILURE_s);
    }
    EXPECT_EQ(ZUVSample_getSize(&DDS_g_tc_null), 0u);
    EXPECT_EQ(ZUVSample_getSize(nullptr), 0u);
}

TEST(Program, OfATypeWithinItselfIsRefused)
{
    struct Node {
        ZUVSequence children;
    };
    static constinit zuv::TypeSlot slot{};
    static constinit zuv::TypeSlot childrenSlot{};
    DDS_TypeCode children = {
        .kind = DDS_TK_SEQUENCE, .length = DDS_UNBOUNDED, .slot = &childrenSlot};
    const DDS_TypeCodeMember members[] = {
        {.name = "children", .type = &children, .id = 1, .offset = 0, .size = sizeof(Node)}};
    const DDS_TypeCode node = zuv::makeStruct("Node", sizeof(Node), DDS_EXTENSIBLE_EXTENSIBILITY,
                                              zuv::kIsNested, members, &slot);
    children.content = &node;
    const zuv_test::LogCapture log;
    EXPECT_EQ(ZUVSample_getSize(&node), 0u);
    ASSERT_FALSE(log.lines().empty());
    EXPECT_EQ(log.lines()[0].text, "!compile type Node: it is nested too deep, or within itself");
    EXPECT_EQ(ZUVSample_getSize(&TestPoint_g_typecode), sizeof(TestPoint));
}

TEST(Program, IsCompiledLaterWhenItFailedFirst)
{
    static constinit zuv::TypeSlot slot{};
    constexpr DDS_TypeCodeMember members[] = {
        {.name = "a", .type = &DDS_g_tc_long, .id = 1, .offset = 0, .size = 4}};
    const DDS_TypeCode type =
        zuv::makeStruct("Later", 4, DDS_FINAL_EXTENSIBILITY, zuv::kIsTopic, members, &slot);
    zuv_test::LogCapture log;
    ZUVOsapiFault_arm("typesys.compile", 1, 0);
    EXPECT_EQ(ZUVSample_getSize(&type), 0u);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(ZUVSample_getSize(&type), 4u);
}

TEST(MemberDefault, OfTheTableWinsOverThatOfTheType)
{
    static constinit zuv::TypeSlot slot{};
    struct Defaulted {
        DDS_Short number;
        DDS_Float real;
        DDS_Double precise;
        TestColor color;
    };
    constexpr DDS_AnnotationParameterValue number = {DDS_TK_SHORT, {.signedValue = -7}};
    constexpr DDS_AnnotationParameterValue real = {DDS_TK_FLOAT, {.floatValue = 1.5}};
    constexpr DDS_AnnotationParameterValue precise = {DDS_TK_DOUBLE, {.floatValue = -2.25}};
    constexpr DDS_AnnotationParameterValue color = {DDS_TK_ENUM, {.signedValue = 10}};
    const DDS_TypeCodeMember members[] = {
        {.name = "number",
         .type = &DDS_g_tc_short,
         .id = 1,
         .offset = offsetof(Defaulted, number),
         .size = 2,
         .defaultValue = number},
        {.name = "real",
         .type = &DDS_g_tc_float,
         .id = 2,
         .offset = offsetof(Defaulted, real),
         .size = 4,
         .defaultValue = real},
        {.name = "precise",
         .type = &DDS_g_tc_double,
         .id = 3,
         .offset = offsetof(Defaulted, precise),
         .size = 8,
         .defaultValue = precise},
        {.name = "color",
         .type = &TestColor_g_typecode,
         .id = 4,
         .offset = offsetof(Defaulted, color),
         .size = 4,
         .defaultValue = color},
    };
    const DDS_TypeCode type = zuv::makeStruct(
        "Defaulted", sizeof(Defaulted), DDS_FINAL_EXTENSIBILITY, zuv::kIsTopic, members, &slot);
    Defaulted sample;
    ASSERT_TRUE(ZUVSample_initializeEx(&type, &sample, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE));
    EXPECT_EQ(sample.number, -7);
    EXPECT_EQ(sample.real, 1.5F);
    EXPECT_EQ(sample.precise, -2.25);
    EXPECT_EQ(sample.color, TestColor_BLUE);
    EXPECT_EQ(DDS_TypeCode_member_default_value(&type, 0, nullptr).value.signedValue, -7);
}
