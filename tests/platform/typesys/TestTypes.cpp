#include "TestTypes.h"

#include "platform/typesys/TypeTable.hpp"

static constexpr DDS_TypeCodeMember kColors[] = {
    ZUV_TYPE_ENUMERATOR(TestColor, RED),
    ZUV_TYPE_ENUMERATOR(TestColor, GREEN),
    ZUV_TYPE_ENUMERATOR(TestColor, BLUE),
};
ZUV_TYPE_ENUM(TestColor, "Test::Color", DDS_MUTABLE_EXTENSIBILITY, TestColor_GREEN, kColors);
ZUV_TYPE_DEFINE_ENUM(TestColor)

ZUV_TYPE_ALIAS(TestName, "Test::Name", zuv::kText<8>);
ZUV_TYPE_DEFINE_ALIAS(TestName)

static constexpr DDS_TypeCodeMember kPointMembers[] = {
    ZUV_TYPE_MEMBER(TestPoint, x, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestPoint, y, DDS_g_tc_long, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestPoint, "Test::Point", DDS_FINAL_EXTENSIBILITY, zuv::kIsNested, kPointMembers);
ZUV_TYPE_DEFINE_NESTED(TestPoint)

static constexpr DDS_TypeCodeMember kInnerMembers[] = {
    ZUV_TYPE_MEMBER(TestInner, a, DDS_g_tc_octet, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestInner, b, DDS_g_tc_long, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestInner, "Test::Inner", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsNested,
                kInnerMembers);
ZUV_TYPE_DEFINE_NESTED(TestInner)

static constexpr DDS_TypeCodeMember kMutableMembers[] = {
    ZUV_TYPE_MEMBER(TestMutable, id, DDS_g_tc_long, zuv::kKey),
    ZUV_TYPE_MEMBER(TestMutable, name, TestName_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestMutable, note, DDS_g_tc_string, zuv::kOptional),
    ZUV_TYPE_MEMBER(TestMutable, weight, DDS_g_tc_double, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestMutable, point, TestPoint_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestMutable, inner, TestInner_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestMutable, maybe, TestInner_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(TestMutable, octets, zuv::kSequence<DDS_g_tc_octet>, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestMutable, longs, zuv::kSequence<DDS_g_tc_long>, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestMutable, color, TestColor_g_typecode, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestMutable, "Test::Mutable", DDS_MUTABLE_EXTENSIBILITY, zuv::kIsTopic,
                kMutableMembers);
ZUV_TYPE_DEFINE_TOPIC_KEYED(TestMutable)

static constexpr DDS_TypeCodeMember kEverythingMembers[] = {
    ZUV_TYPE_MEMBER(TestEverything, flag, DDS_g_tc_boolean, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, octet, DDS_g_tc_octet, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, letter, DDS_g_tc_char, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, small, DDS_g_tc_short, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, usmall, DDS_g_tc_ushort, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, number, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, unumber, DDS_g_tc_ulong, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, large, DDS_g_tc_longlong, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, ularge, DDS_g_tc_ulonglong, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, real, DDS_g_tc_float, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, precise, DDS_g_tc_double, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, color, TestColor_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, name, TestName_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, text, DDS_g_tc_string, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, point, TestPoint_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, inner, TestInner_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, maybe_number, DDS_g_tc_long, zuv::kOptional),
    ZUV_TYPE_MEMBER(TestEverything, maybe_point, TestPoint_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(TestEverything, maybe_text, DDS_g_tc_string, zuv::kOptional),
    ZUV_TYPE_MEMBER(TestEverything, maybe_longs, zuv::kSequence<DDS_g_tc_long>, zuv::kOptional),
    ZUV_TYPE_MEMBER(TestEverything, octets, zuv::kSequence<DDS_g_tc_octet>, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, longs, (zuv::kSequence<DDS_g_tc_long, 4>), zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, flags, zuv::kSequence<DDS_g_tc_boolean>, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, names, zuv::kSequence<TestName_g_typecode>, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, points, zuv::kSequence<TestPoint_g_typecode>, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, colors, zuv::kSequence<TestColor_g_typecode>, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, mutables, zuv::kSequence<TestMutable_g_typecode>,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, three, (zuv::kArray<DDS_g_tc_long, 3>), zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, switches, (zuv::kArray<DDS_g_tc_boolean, 2>), zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, pair, (zuv::kArray<TestColor_g_typecode, 2>), zuv::kRequired),
    ZUV_TYPE_MEMBER(TestEverything, corners, (zuv::kArray<TestPoint_g_typecode, 2>),
                    zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestEverything, "Test::Everything", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kEverythingMembers);
ZUV_TYPE_DEFINE_TOPIC(TestEverything)

static constexpr DDS_TypeCodeMember kOlderMembers[] = {
    ZUV_TYPE_MEMBER(TestOlder, a, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestOlder, b, DDS_g_tc_long, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestOlder, "Test::Versioned", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kOlderMembers);
ZUV_TYPE_DEFINE_TOPIC(TestOlder)

static constexpr DDS_TypeCodeMember kNewerMembers[] = {
    ZUV_TYPE_MEMBER(TestNewer, a, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestNewer, b, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestNewer, c, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestNewer, name, TestName_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestNewer, point, TestPoint_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestNewer, note, DDS_g_tc_string, zuv::kOptional),
    ZUV_TYPE_MEMBER(TestNewer, color, TestColor_g_typecode, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestNewer, "Test::Versioned", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kNewerMembers);
ZUV_TYPE_DEFINE_TOPIC(TestNewer)

static constexpr DDS_TypeCodeMember kTextKeyMembers[] = {
    ZUV_TYPE_MEMBER(TestTextKey, second, TestName_g_typecode, zuv::kKey),
    ZUV_TYPE_MEMBER(TestTextKey, value, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestTextKey, first, DDS_g_tc_long, zuv::kKey),
};
ZUV_TYPE_STRUCT(TestTextKey, "Test::TextKey", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kTextKeyMembers);
ZUV_TYPE_DEFINE_TOPIC_KEYED(TestTextKey)

static constexpr DDS_TypeCodeMember kGuidMembers[] = {
    ZUV_TYPE_MEMBER(TestGuid, value, (zuv::kArray<DDS_g_tc_octet, 16>), zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestGuid, "Test::Guid", DDS_FINAL_EXTENSIBILITY, zuv::kIsNested, kGuidMembers);
ZUV_TYPE_DEFINE_NESTED(TestGuid)

static constexpr DDS_TypeCodeMember kGuidKeyMembers[] = {
    ZUV_TYPE_MEMBER(TestGuidKey, guid, TestGuid_g_typecode, zuv::kKey),
    ZUV_TYPE_MEMBER(TestGuidKey, owner, TestGuid_g_typecode, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestGuidKey, "Test::GuidKey", DDS_MUTABLE_EXTENSIBILITY, zuv::kIsTopic,
                kGuidKeyMembers);
ZUV_TYPE_DEFINE_TOPIC_KEYED(TestGuidKey)

static constexpr DDS_TypeCodeMember kTagMembers[] = {
    ZUV_TYPE_MEMBER(TestTag, name, TestName_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestTag, number, DDS_g_tc_long, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestTag, "Test::Tag", DDS_FINAL_EXTENSIBILITY, zuv::kIsNested, kTagMembers);
ZUV_TYPE_DEFINE_NESTED(TestTag)

static constexpr DDS_TypeCodeMember kTagKeyMembers[] = {
    ZUV_TYPE_MEMBER(TestTagKey, before, DDS_g_tc_string, zuv::kRequired),
    ZUV_TYPE_MEMBER(TestTagKey, tag, TestTag_g_typecode, zuv::kKey),
    ZUV_TYPE_MEMBER(TestTagKey, after, DDS_g_tc_string, zuv::kRequired),
};
ZUV_TYPE_STRUCT(TestTagKey, "Test::TagKey", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kTagKeyMembers);
ZUV_TYPE_DEFINE_TOPIC_KEYED(TestTagKey)
