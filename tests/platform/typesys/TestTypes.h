// Types that between them use everything that a table can say.
#ifndef ZUV_TESTS_PLATFORM_TYPESYS_TEST_TYPES_H
#define ZUV_TESTS_PLATFORM_TYPESYS_TEST_TYPES_H

#include "platform/typesys/PrimitiveSequences.h"
#include "platform/typesys/TypeFamily.h"

extern "C" {

// Values with gaps between, and a default that is neither 0 nor the first.
typedef enum TestColor { TestColor_RED = 1, TestColor_GREEN = 2, TestColor_BLUE = 10 } TestColor;
ZUV_TYPE_DECLARE_ENUM(TestColor)

typedef char *TestName; // at most 8 characters
ZUV_TYPE_DECLARE_ALIAS(TestName)

// Final: becomes a part of its parent.
typedef struct TestPoint {
    DDS_Long x;
    DDS_Long y;
} TestPoint;
ZUV_TYPE_DECLARE_NESTED(TestPoint)

// Appendable, with a hole in memory and on the wire.
typedef struct TestInner {
    DDS_Octet a;
    DDS_Long b;
} TestInner;
ZUV_TYPE_DECLARE_NESTED(TestInner)

typedef struct TestMutable {
    DDS_Long id; // key
    TestName name;
    char *note; // optional
    DDS_Double weight;
    TestPoint point;
    TestInner inner;
    TestInner *maybe; // optional
    DDS_OctetSeq octets;
    DDS_LongSeq longs;
    TestColor color;
} TestMutable;
ZUV_TYPE_DECLARE_TOPIC_KEYED(TestMutable)

typedef struct TestEverything {
    DDS_Boolean flag;
    DDS_Octet octet;
    DDS_Char letter;
    DDS_Short small;
    DDS_UnsignedShort usmall;
    DDS_Long number;
    DDS_UnsignedLong unumber;
    DDS_LongLong large;
    DDS_UnsignedLongLong ularge;
    DDS_Float real;
    DDS_Double precise;
    TestColor color;
    TestName name;
    char *text;
    TestPoint point;
    TestInner inner;
    DDS_Long *maybe_number;   // optional
    TestPoint *maybe_point;   // optional
    char *maybe_text;         // optional
    DDS_LongSeq *maybe_longs; // optional
    DDS_OctetSeq octets;
    DDS_LongSeq longs; // at most 4
    DDS_BooleanSeq flags;
    TestNameSeq names;
    TestPointSeq points;
    TestColorSeq colors;
    TestMutableSeq mutables;
    DDS_Long three[3];
    DDS_Boolean switches[2];
    TestColor pair[2];
    TestPoint corners[2];
} TestEverything;
ZUV_TYPE_DECLARE_TOPIC(TestEverything)

// Two versions of a type: the newer one has more members.
typedef struct TestOlder {
    DDS_Long a;
    DDS_Long b;
} TestOlder;
ZUV_TYPE_DECLARE_TOPIC(TestOlder)

typedef struct TestNewer {
    DDS_Long a;
    DDS_Long b;
    DDS_Long c;
    TestName name;
    TestPoint point;
    char *note; // optional
    TestColor color;
} TestNewer;
ZUV_TYPE_DECLARE_TOPIC(TestNewer)

// A key that is hashed: two members, declared against the order of their ids, one of them a text.
typedef struct TestTextKey {
    TestName second; // key
    DDS_Long value;
    DDS_Long first; // key
} TestTextKey;
ZUV_TYPE_DECLARE_TOPIC_KEYED(TestTextKey)

// A key that lies in a member structure: 16 octets in all.
typedef struct TestGuid {
    DDS_Octet value[16];
} TestGuid;
ZUV_TYPE_DECLARE_NESTED(TestGuid)

typedef struct TestGuidKey {
    TestGuid guid; // key
    TestGuid owner;
} TestGuidKey;
ZUV_TYPE_DECLARE_TOPIC_KEYED(TestGuidKey)

// A key whose structure takes two operations, among texts that are none.
typedef struct TestTag {
    TestName name;
    DDS_Long number;
} TestTag;
ZUV_TYPE_DECLARE_NESTED(TestTag)

typedef struct TestTagKey {
    char *before;
    TestTag tag; // key
    char *after;
} TestTagKey;
ZUV_TYPE_DECLARE_TOPIC_KEYED(TestTagKey)
}

#endif
