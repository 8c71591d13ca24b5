#include "platform/typesys/Codec.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TestSamples.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/Md5.hpp"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using namespace zuv_test;
using Octets = std::vector<std::uint8_t>;

constexpr std::uint16_t kPlain = 0x0007;
constexpr std::uint16_t kDelimited = 0x0009;
constexpr std::uint16_t kMutable = 0x000b;

Octets encoded(const DDS_TypeCode *type, const void *sample)
{
    Octets buffer(ZUVCodec_getSize(type, DDS_BOOLEAN_TRUE, sample));
    DDS_UnsignedLong length = 0;
    if (buffer.empty() ||
        !ZUVCodec_serialize(type, sample, buffer.data(),
                            static_cast<DDS_UnsignedLong>(buffer.size()), &length)) {
        return {};
    }
    EXPECT_EQ(length, buffer.size());
    return buffer;
}

bool decode(const DDS_TypeCode *type, void *sample, const Octets &payload)
{
    // A block of its own, so that a sanitizer sees a read behind the end.
    const Octets exact(payload.begin(), payload.end());
    return ZUVCodec_deserialize(type, sample, exact.data(),
                                static_cast<DDS_UnsignedLong>(exact.size()));
}

template <typename T>
void expectRoundTrip(const DDS_TypeCode &type, std::uint16_t identifier, bool isSparse)
{
    Sample<T> sample(type);
    Sample<T> decoded(type);
    fill(*sample, isSparse);
    Wire wire(identifier);
    write(wire, *sample);
    EXPECT_EQ(encoded(&type, &sample), wire.payload());
    ASSERT_TRUE(decode(&type, &decoded, wire.payload()));
    EXPECT_TRUE(ZUVSample_equals(&type, &sample, &decoded));

    Wire bigEndian(static_cast<std::uint16_t>(identifier - 1), false);
    write(bigEndian, *sample);
    Sample<T> turned(type);
    ASSERT_TRUE(decode(&type, &turned, bigEndian.payload()));
    EXPECT_TRUE(ZUVSample_equals(&type, &sample, &turned));
}

} // namespace

TEST(Codec, WritesAndReadsAppendableSamples)
{
    expectRoundTrip<TestEverything>(TestEverything_g_typecode, kDelimited, false);
    expectRoundTrip<TestEverything>(TestEverything_g_typecode, kDelimited, true);
}

TEST(Codec, WritesAndReadsMutableSamples)
{
    expectRoundTrip<TestMutable>(TestMutable_g_typecode, kMutable, false);
    expectRoundTrip<TestMutable>(TestMutable_g_typecode, kMutable, true);
}

TEST(Codec, WritesAndReadsFinalSamples)
{
    const TestPoint point = {1, -2};
    TestPoint decoded = {};
    const Octets expected = {0, 7, 0, 0, 1, 0, 0, 0, 0xfe, 0xff, 0xff, 0xff};
    EXPECT_EQ(encoded(&TestPoint_g_typecode, &point), expected);
    ASSERT_TRUE(decode(&TestPoint_g_typecode, &decoded, expected));
    EXPECT_EQ(decoded.y, -2);
}

TEST(Codec, RefusesAFinalSampleThatEndsBetweenItsMembers)
{
    const LogCapture log;
    TestPoint decoded = {7, 8};
    EXPECT_FALSE(decode(&TestPoint_g_typecode, &decoded, {0, 7, 0, 0, 1, 0, 0, 0}));
    EXPECT_FALSE(decode(&TestPoint_g_typecode, &decoded, {0, 7, 0, 0}));
    EXPECT_EQ(decoded.x, 7);
}

TEST(Codec, RefusesAnotherEncapsulation)
{
    Wire wire(kPlain);
    wire.u32(1).u32(2);
    Octets payload = wire.payload();
    TestPoint point = {};
    LogCapture log;
    for (unsigned identifier = 0; identifier < 0x10000; ++identifier) {
        payload[0] = static_cast<std::uint8_t>(identifier >> 8);
        payload[1] = static_cast<std::uint8_t>(identifier);
        const bool isPlain2 = identifier == 6 || identifier == 7;
        EXPECT_EQ(decode(&TestPoint_g_typecode, &point, payload), isPlain2) << identifier;
    }
}

TEST(Codec, BearsThreeOctetsBehindTheEndAndNoMore)
{
    Wire wire(kDelimited);
    wire.begin().u32(1).u32(2).end();
    Octets payload = wire.payload();
    LogCapture log;
    TestOlder sample = {};
    for (std::size_t extra = 0; extra < 8; ++extra) {
        EXPECT_EQ(decode(&TestOlder_g_typecode, &sample, payload), extra < 4) << extra;
        payload.push_back(0x77);
    }
}

TEST(Codec, CountsThePaddingInTheHeader)
{
    for (unsigned length = 0; length < 8; ++length) {
        ZUV_TEST_SAMPLE(TestNewer, sample);
        DDS_String_replace(&sample->note, std::string(length, 'n').c_str());
        DDS_String_replace(&sample->name, std::string(length, 'm').c_str());
        const Octets payload = encoded(sample.type(), &sample);
        ASSERT_EQ(payload.size() % 4, 0u);
        EXPECT_EQ(payload[2], 0);
        std::uint32_t inner = 0;
        std::memcpy(&inner, payload.data() + 4, 4);
        EXPECT_EQ(8 + inner + payload[3], payload.size());
    }
}

TEST(Codec, ReadsASampleOfAnOlderVersion)
{
    Wire wire(kDelimited);
    wire.begin().u32(1).u32(2).end();
    ZUV_TEST_SAMPLE(TestNewer, sample);
    sample->c = 99;
    DDS_String_replace(&sample->name, "left");
    sample->point = {8, 9};
    DDS_String_replace(&sample->note, "over");
    sample->color = TestColor_BLUE;
    ASSERT_TRUE(decode(sample.type(), &sample, wire.payload()));
    EXPECT_EQ(sample->a, 1);
    EXPECT_EQ(sample->b, 2);
    EXPECT_EQ(sample->c, 0);
    EXPECT_STREQ(sample->name, "");
    EXPECT_EQ(sample->point.x, 0);
    EXPECT_EQ(sample->note, nullptr);
    EXPECT_EQ(sample->color, TestColor_GREEN);
}

TEST(Codec, ReadsASampleOfANewerVersion)
{
    ZUV_TEST_SAMPLE(TestNewer, newer);
    newer->a = 5;
    newer->b = 6;
    newer->c = 7;
    TestOlder older = {};
    ASSERT_TRUE(decode(&TestOlder_g_typecode, &older, encoded(newer.type(), &newer)));
    EXPECT_EQ(older.a, 5);
    EXPECT_EQ(older.b, 6);
}

// An older sample ends between members: neither within one nor within a final structure.
TEST(Codec, RefusesASampleThatEndsWithinAMember)
{
    const LogCapture log;
    const auto isAccepted = [](std::size_t size) {
        Wire wire(kDelimited);
        wire.begin().u32(1).u32(2).u32(3).text("abc").u32(4).u32(5).u8(0).u32(TestColor_RED).end();
        Octets payload = wire.payload();
        payload.resize(8 + size);
        payload[4] = static_cast<std::uint8_t>(size);
        ZUV_TEST_SAMPLE(TestNewer, sample);
        return decode(sample.type(), &sample, payload);
    };
    std::vector<std::size_t> accepted;
    for (std::size_t size = 0; size <= 36; ++size) {
        if (isAccepted(size)) {
            accepted.push_back(size);
        }
    }
    // Behind a, b, c, name (12 + 8), point, note, color.
    EXPECT_EQ(accepted, (std::vector<std::size_t>{0, 4, 8, 12, 20, 28, 29, 36}));
}

TEST(Codec, SkipsUnknownMembersOfAMutableSample)
{
    Wire wire(kMutable);
    wire.begin();
    wire.u32(0x20000001u).u32(7);              // four octets
    wire.u32(0x00000002u).u8(1);               // one
    wire.u32(0xa4b70bb8u).u32(42);             // id
    wire.u32(0x50000003u).text("unknown");     // a length that is a part of the member
    wire.u32(0x40000004u).begin().u8(1).end(); // a length of its own
    wire.u32(0x60000005u).u32(2).u32(0).u32(0);
    wire.u32(0x70000006u).u32(1).u64(0);
    wire.u32(0x30000007u).u64(0);
    wire.u32(0x10000008u).u16(0);
    wire.end();
    ZUV_TEST_SAMPLE(TestMutable, sample);
    fill(*sample, false);
    ASSERT_TRUE(decode(sample.type(), &sample, wire.payload()));
    EXPECT_EQ(sample->id, 42);
    EXPECT_STREQ(sample->name, ""); // what the sample lacks has its default
    EXPECT_EQ(sample->note, nullptr);
    EXPECT_EQ(sample->maybe, nullptr);
    EXPECT_EQ(sample->weight, 0.0);
    EXPECT_EQ(sample->octets._length, 0u);
    EXPECT_EQ(sample->color, TestColor_GREEN);
}

TEST(Codec, RefusesAnUnknownMemberThatMustBeUnderstood)
{
    const LogCapture log;
    Wire wire(kMutable);
    wire.begin().u32(0xa4b70bb8u).u32(42).u32(0xa0000001u).u32(7).end();
    ZUV_TEST_SAMPLE(TestMutable, sample);
    EXPECT_FALSE(decode(sample.type(), &sample, wire.payload()));
}

TEST(Codec, RefusesAMutableSampleWithoutItsKeyOrWithAMemberTwice)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestMutable, sample);
    Wire keyless(kMutable);
    keyless.begin().u32(0x2fa5dd70u).u32(1).end();
    EXPECT_FALSE(decode(sample.type(), &sample, keyless.payload()));
    Wire twice(kMutable);
    twice.begin().u32(0xa4b70bb8u).u32(1).u32(0xa4b70bb8u).u32(1).end();
    EXPECT_FALSE(decode(sample.type(), &sample, twice.payload()));
}

TEST(Codec, ReadsMutableMembersInAnyOrder)
{
    Wire wire(kMutable);
    wire.begin().u32(0x2fa5dd70u).u32(TestColor_BLUE).u32(0x5c9368b0u).text("n");
    wire.u32(0x24b70bb8u).u32(3).end(); // the key, not marked as one that must be understood
    ZUV_TEST_SAMPLE(TestMutable, sample);
    ASSERT_TRUE(decode(sample.type(), &sample, wire.payload()));
    EXPECT_EQ(sample->id, 3);
    EXPECT_EQ(sample->color, TestColor_BLUE);
    EXPECT_STREQ(sample->name, "n");
}

TEST(Codec, RefusesAMutableMemberOfTheWrongSize)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestMutable, sample);
    for (const std::uint32_t header : {0x04b70bb8u, 0x14b70bb8u, 0x34b70bb8u}) {
        Wire wire(kMutable);
        wire.begin().u32(header).u64(1).end();
        EXPECT_FALSE(decode(sample.type(), &sample, wire.payload())) << header;
    }
    Wire longer(kMutable);
    longer.begin().u32(0x44b70bb8u).begin().u32(1).u32(2).end().end();
    EXPECT_FALSE(decode(sample.type(), &sample, longer.payload()));
    Wire overflowing(kMutable);
    overflowing.begin().u32(0x74b70bb8u).u32(0x20000000u).u32(0).end();
    EXPECT_FALSE(decode(sample.type(), &sample, overflowing.payload()));
}

// What tells the size of a collection tells it exactly.
TEST(Codec, RefusesADelimiterThatDoesNotFitItsElements)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, decoded);
    fill(*sample, false);
    const Octets payload = encoded(sample.type(), &sample);
    // The points: their delimiter, their number, their four coordinates. The corners: a delimiter of 16
    // as well, with four coordinates behind it, at the very end.
    const std::uint8_t points[] = {20, 0, 0, 0, 2, 0, 0, 0, 71, 0, 0, 0};
    const auto found =
        std::search(payload.begin(), payload.end(), std::begin(points), std::end(points));
    ASSERT_NE(found, payload.end());
    const std::size_t offsets[] = {static_cast<std::size_t>(found - payload.begin()),
                                   payload.size() - 20};
    for (const std::size_t offset : offsets) {
        ASSERT_TRUE(decode(sample.type(), &decoded, payload));
        for (const int change : {-4, -1, 1, 4}) {
            Octets changed = payload;
            changed[offset] = static_cast<std::uint8_t>(changed[offset] + change);
            EXPECT_FALSE(decode(sample.type(), &decoded, changed)) << offset << ' ' << change;
        }
    }
    // One element less than the delimiter has room for.
    Octets fewer = payload;
    fewer[offsets[0] + 4] = 1;
    EXPECT_FALSE(decode(sample.type(), &decoded, fewer));
}

TEST(Codec, RefusesAValueThatAnEnumerationDoesNotHave)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestMutable, sample);
    for (std::uint32_t value = 0; value < 12; ++value) {
        Wire wire(kMutable);
        wire.begin().u32(0x24b70bb8u).u32(3).u32(0x2fa5dd70u).u32(value).end();
        const bool isKnown = value == 1 || value == 2 || value == 10;
        EXPECT_EQ(decode(sample.type(), &sample, wire.payload()), isKnown) << value;
    }
    Wire negative(kMutable);
    negative.begin().u32(0x24b70bb8u).u32(3).u32(0x2fa5dd70u).u32(0xffffffffu).end();
    EXPECT_FALSE(decode(sample.type(), &sample, negative.payload()));
}

TEST(Codec, DoesNotWriteWhatItWouldNotRead)
{
    LogCapture log;
    ZUV_TEST_SAMPLE(TestEverything, sample);
    const auto isRefusedFor = [&](const std::string &reason) {
        log.clear();
        EXPECT_EQ(ZUVCodec_getSize(sample.type(), DDS_BOOLEAN_TRUE, &sample), 0u);
        return log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!" + reason},
                              {&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "!serialize Test::Everything"}});
    };
    EXPECT_FALSE(encoded(sample.type(), &sample).empty());

    sample->color = static_cast<TestColor>(3);
    EXPECT_TRUE(isRefusedFor("an enumeration holds a value that it does not have"));
    sample->color = TestColor_RED;

    DDS_String_replace(&sample->name, "9 letters");
    EXPECT_TRUE(isRefusedFor("a text or sequence is beyond its bound"));
    DDS_String_replace(&sample->name, "8letters");
    EXPECT_FALSE(encoded(sample.type(), &sample).empty());

    DDS_String_replace(&sample->text, nullptr);
    EXPECT_TRUE(isRefusedFor("a text that is not optional is NULL"));
    DDS_String_replace(&sample->text, "");

    DDS_LongSeq_set_absolute_maximum(&sample->longs, 5);
    DDS_LongSeq_set_length(&sample->longs, 5);
    EXPECT_TRUE(isRefusedFor("a text or sequence is beyond its bound"));
    DDS_LongSeq_set_length(&sample->longs, 4);
    EXPECT_FALSE(encoded(sample.type(), &sample).empty());
}

TEST(Codec, WritesAnySetBooleanAsOne)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    sample->flag = 7;
    const Octets payload = encoded(sample.type(), &sample);
    ASSERT_FALSE(payload.empty());
    EXPECT_EQ(payload[8], 1);
}

TEST(Codec, NeedsNoMoreRoomThanItSays)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestEverything, sample);
    fill(*sample, false);
    const Octets expected = encoded(sample.type(), &sample);
    for (std::size_t capacity = 0; capacity <= expected.size(); ++capacity) {
        Octets buffer(capacity);
        buffer.reserve(1); // an address even for no capacity at all
        DDS_UnsignedLong length = 12345;
        const bool fits = ZUVCodec_serialize(sample.type(), &sample, buffer.data(),
                                             static_cast<DDS_UnsignedLong>(capacity), &length);
        EXPECT_EQ(fits, capacity == expected.size()) << capacity;
        EXPECT_EQ(length, fits ? expected.size() : 12345u);
    }
}

TEST(Codec, WritesIntoBuffersOfAnyAlignment)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, decoded);
    fill(*sample, false);
    const Octets expected = encoded(sample.type(), &sample);
    for (std::size_t shift = 0; shift < 8; ++shift) {
        Octets buffer(expected.size() + shift, 0xa5); // padding is written as well
        DDS_UnsignedLong length = 0;
        ASSERT_TRUE(ZUVCodec_serialize(sample.type(), &sample, buffer.data() + shift,
                                       static_cast<DDS_UnsignedLong>(expected.size()), &length));
        EXPECT_EQ(Octets(buffer.begin() + static_cast<std::ptrdiff_t>(shift), buffer.end()),
                  expected);
        ASSERT_TRUE(ZUVCodec_deserialize(sample.type(), &decoded, buffer.data() + shift, length));
        EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &decoded));
    }
}

TEST(Codec, DecodingAgainIntoASampleAllocatesNothing)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, decoded);
    fill(*sample, false);
    const Octets payload = encoded(sample.type(), &sample);
    ASSERT_TRUE(decode(sample.type(), &decoded, payload));
    const HeapCheck heap;
    ASSERT_TRUE(decode(sample.type(), &decoded, payload));
    EXPECT_EQ(heap.allocations(), 0u);
    ASSERT_FALSE(encoded(sample.type(), &sample).empty());
    EXPECT_EQ(heap.allocations(), 0u);
}

TEST(Codec, WritesAndReadsALoan)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    ZUV_TEST_SAMPLE(TestMutable, decoded);
    fill(*sample, true);
    DDS_Octet octets[] = {1, 2, 3, 4};
    DDS_Long longs[] = {5, 6, 7};
    DDS_Long *pointers[] = {&longs[2], &longs[1], &longs[0]};
    ASSERT_TRUE(DDS_OctetSeq_loan_contiguous(&sample->octets, octets, 3, 4));
    ASSERT_TRUE(DDS_LongSeq_loan_discontiguous(&sample->longs, pointers, 3, 3));
    Wire wire(kMutable);
    const Octets payload = encoded(sample.type(), &sample);
    ASSERT_TRUE(decode(sample.type(), &decoded, payload));
    EXPECT_EQ(DDS_LongSeq_get(&decoded->longs, 0), 7);
    EXPECT_EQ(DDS_LongSeq_get(&decoded->longs, 2), 5);
    EXPECT_EQ(DDS_OctetSeq_get_length(&decoded->octets), 3);

    // Into the loan: a sample that fits, and one that does not.
    longs[2] = 0;
    octets[0] = 0;
    ASSERT_TRUE(decode(sample.type(), &sample, payload));
    EXPECT_EQ(longs[2], 7);
    EXPECT_EQ(octets[0], 1);
    const DDS_Octet more[] = {1, 2, 3, 4, 5};
    DDS_OctetSeq_from_array(&decoded->octets, more, 5);
    LogCapture log;
    EXPECT_FALSE(decode(sample.type(), &sample, encoded(decoded.type(), &decoded)));
    EXPECT_TRUE(log.isExactly({{&DDS_LOG_SEQUENCE_NOT_OWNER, log.texts().at(0)},
                               {&ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, log.texts().at(1)}}));
}

TEST(Codec, TellsGreatestAndLeastSizes)
{
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestPoint_g_typecode, DDS_BOOLEAN_FALSE), 8u);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestPoint_g_typecode, DDS_BOOLEAN_TRUE), 12u);
    EXPECT_EQ(ZUVCodec_getMinSize(&TestPoint_g_typecode, DDS_BOOLEAN_TRUE), 12u);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestInner_g_typecode, DDS_BOOLEAN_FALSE), 12u);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestName_g_typecode, DDS_BOOLEAN_FALSE), 13u);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestName_g_typecode, DDS_BOOLEAN_TRUE), 20u);
    EXPECT_EQ(ZUVCodec_getMinSize(&TestName_g_typecode, DDS_BOOLEAN_FALSE), 5u);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestColor_g_typecode, DDS_BOOLEAN_FALSE), 4u);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestEverything_g_typecode, DDS_BOOLEAN_TRUE), 0x7ffffbffu);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestEverything_g_typecode, DDS_BOOLEAN_FALSE), 0x7ffffbffu);
    EXPECT_EQ(ZUVCodec_getMaxSize(&TestGuidKey_g_typecode, DDS_BOOLEAN_FALSE), 4u + 2 * (8 + 16));

    ZUV_TEST_SAMPLE(TestEverything, empty);
    EXPECT_EQ(ZUVCodec_getMinSize(&TestEverything_g_typecode, DDS_BOOLEAN_TRUE),
              ZUVCodec_getSize(empty.type(), DDS_BOOLEAN_TRUE, &empty));
    ZUV_TEST_SAMPLE(TestMutable, least);
    EXPECT_EQ(ZUVCodec_getMinSize(&TestMutable_g_typecode, DDS_BOOLEAN_FALSE),
              ZUVCodec_getSize(least.type(), DDS_BOOLEAN_FALSE, &least));
}

// Cut a payload anywhere, change any octet, and put any word in the place of any other: a payload is
// refused, or gives a sample that can be written and read again.
TEST(Codec, SurvivesEveryCutAndEveryChange)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, decoded);
    ZUV_TEST_SAMPLE(TestEverything, again);
    fill(*sample, false);
    const Octets payload = encoded(sample.type(), &sample);

    const auto isSound = [&](const Octets &changed) {
        if (!decode(sample.type(), &decoded, changed)) {
            return true;
        }
        const Octets written = encoded(sample.type(), &decoded);
        return decode(sample.type(), &again, written) &&
               ZUVSample_equals(sample.type(), &decoded, &again);
    };
    for (std::size_t size = 0; size < payload.size(); ++size) {
        EXPECT_FALSE(
            decode(sample.type(), &decoded,
                   Octets(payload.begin(), payload.begin() + static_cast<std::ptrdiff_t>(size))))
            << size;
    }
    for (std::size_t i = 0; i < payload.size(); ++i) {
        for (const unsigned change : {0x01u, 0x02u, 0x04u, 0x80u, 0xffu}) {
            Octets changed = payload;
            changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
            EXPECT_TRUE(isSound(changed)) << i;
        }
    }
    for (std::size_t i = 4; i + 4 <= payload.size(); ++i) {
        for (const std::uint32_t word :
             {0u, 1u, 0x7fffffffu, 0x80000000u, 0xfffffffcu, 0xffffffffu}) {
            Octets changed = payload;
            std::memcpy(changed.data() + i, &word, sizeof(word));
            EXPECT_TRUE(isSound(changed)) << i;
        }
    }
}

// No payload makes the decoder allocate more than a small multiple of its size.
TEST(Codec, AllocatesInProportionToThePayload)
{
    const LogCapture log;
    for (const std::uint32_t count : {0x10000u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        ZUV_TEST_SAMPLE(TestMutable, sample);
        const HeapCheck heap;
        Wire wire(kMutable);
        wire.begin().u32(0x24b70bb8u).u32(3).u32(0x51755348u).u32(count).u32(0).end();
        EXPECT_FALSE(decode(sample.type(), &sample, wire.payload()));
        EXPECT_EQ(heap.allocations(), 0u);
    }
}

TEST(Codec, GivesTextsThatItReadsNoMoreRoomThanTheyNeed)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, decoded);
    fill(*sample, false);
    ASSERT_TRUE(decode(sample.type(), &decoded, encoded(sample.type(), &sample)));
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(TestNameSeq_get(&decoded->names, 0)), 4u);
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(TestNameSeq_get(&decoded->names, 1)), 1u);
    const TestMutable *nested = TestMutableSeq_get_reference(&decoded->mutables, 0);
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(nested->name), sizeof("mutable"));
}

TEST(Codec, LeavesASampleAsItWasWhenItRefusesAPayload)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, before);
    fill(*sample, false);
    fill(*before, false);
    Wire wire(kDelimited);
    ZUV_TEST_SAMPLE(TestEverything, other);
    write(wire, *other);
    Octets payload = wire.payload();
    payload.resize(payload.size() - 4); // the last member is missing a part
    EXPECT_FALSE(decode(sample.type(), &sample, payload));
    EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &before));
}

TEST(Codec, SurvivesEveryFailedAllocationWhileReading)
{
    LogCapture log;
    ZUV_TEST_SAMPLE(TestEverything, sample);
    fill(*sample, false);
    const Octets payload = encoded(sample.type(), &sample);
    const HeapCheck heap;
    for (const bool isOnward : {false, true}) {
        for (std::uint32_t count = 1;; ++count) {
            {
                ZUV_TEST_SAMPLE(TestEverything, decoded);
                log.clear();
                ZUVOsapiFault_arm(nullptr, count, isOnward);
                const bool isRead = decode(sample.type(), &decoded, payload);
                ZUVOsapiFault_disarm();
                EXPECT_EQ(isRead, ZUVOsapiFault_getInjectedCount() == 0);
                EXPECT_EQ(isRead, log.lines().empty());
                ASSERT_TRUE(decode(sample.type(), &decoded, payload));
                EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &decoded));
            }
            EXPECT_TRUE(heap.isBalanced());
            if (ZUVOsapiFault_getInjectedCount() == 0) {
                break;
            }
        }
    }
}

TEST(Codec, RefusesNullArguments)
{
    LogCapture log;
    TestPoint point = {};
    DDS_Octet buffer[16];
    DDS_UnsignedLong length = 0;
    EXPECT_FALSE(ZUVCodec_serialize(&TestPoint_g_typecode, nullptr, buffer, 16, &length));
    EXPECT_FALSE(ZUVCodec_serialize(&TestPoint_g_typecode, &point, nullptr, 16, &length));
    EXPECT_FALSE(ZUVCodec_serialize(&TestPoint_g_typecode, &point, buffer, 16, nullptr));
    EXPECT_FALSE(ZUVCodec_serialize(nullptr, &point, buffer, 16, &length));
    EXPECT_FALSE(ZUVCodec_deserialize(&TestPoint_g_typecode, nullptr, buffer, 16));
    EXPECT_FALSE(ZUVCodec_deserialize(&TestPoint_g_typecode, &point, nullptr, 16));
    EXPECT_FALSE(ZUVCodec_validate(&TestPoint_g_typecode, nullptr, 16));
    EXPECT_EQ(ZUVCodec_getSize(&TestPoint_g_typecode, DDS_BOOLEAN_TRUE, nullptr), 0u);
    EXPECT_EQ(log.lines().size(), 8u);
}

TEST(CdrBuffer, TellsItsSizeFirst)
{
    const TestOlder sample = {1, 2};
    unsigned int length = 0;
    ASSERT_TRUE(TestOlderPlugin_serialize_to_cdr_buffer(nullptr, &length, &sample));
    EXPECT_EQ(length, 16u);
    char buffer[32];
    std::memset(buffer, 0x55, sizeof(buffer));
    length = sizeof(buffer);
    ASSERT_TRUE(TestOlderPlugin_serialize_to_cdr_buffer(buffer, &length, &sample));
    EXPECT_EQ(length, 16u);
    EXPECT_EQ(buffer[16], 0x55);
    TestOlder decoded = {};
    ASSERT_TRUE(TestOlderPlugin_deserialize_from_cdr_buffer(&decoded, buffer, length));
    EXPECT_EQ(decoded.b, 2);
}

TEST(CdrBuffer, ReleasesOptionalMembersBeforeItReads)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestNewer, sample);
    sample->a = 5;
    DDS_String_replace(&sample->note, "left over");
    const char refused[] = {0, 9, 0, 0, 99, 0, 0, 0};
    EXPECT_FALSE(TestNewerPlugin_deserialize_from_cdr_buffer(&sample, refused, sizeof(refused)));
    EXPECT_EQ(sample->note, nullptr);
    EXPECT_EQ(sample->a, 5);
    EXPECT_FALSE(TestNewerPlugin_deserialize_from_cdr_buffer(nullptr, refused, sizeof(refused)));
}

TEST(CdrBuffer, RefusesNoLengthTooSmallABufferAndAnotherRepresentation)
{
    const LogCapture log;
    const TestOlder sample = {1, 2};
    char buffer[32];
    unsigned int length = 15;
    EXPECT_FALSE(TestOlderPlugin_serialize_to_cdr_buffer(buffer, nullptr, &sample));
    EXPECT_FALSE(TestOlderPlugin_serialize_to_cdr_buffer(buffer, &length, &sample));
    EXPECT_EQ(length, 15u);
    length = sizeof(buffer);
    EXPECT_FALSE(TestOlderPlugin_serialize_to_cdr_buffer_ex(buffer, &length, &sample,
                                                            DDS_XCDR_DATA_REPRESENTATION));
    EXPECT_FALSE(TestOlderPlugin_serialize_to_cdr_buffer_ex(buffer, &length, &sample,
                                                            DDS_XML_DATA_REPRESENTATION));
    EXPECT_TRUE(TestOlderPlugin_serialize_to_cdr_buffer_ex(buffer, &length, &sample,
                                                           DDS_XCDR2_DATA_REPRESENTATION));
}

TEST(KeyHash, OfAShortKeyIsTheKeyBigEndianFilledWithZeros)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    sample->id = 0x01020304;
    ZUVKeyHash hash = {};
    ASSERT_TRUE(ZUVCodec_getKeyHash(sample.type(), &sample, &hash));
    const DDS_Octet expected[16] = {1, 2, 3, 4};
    EXPECT_EQ(std::memcmp(hash.value, expected, 16), 0);
    EXPECT_EQ(ZUVCodec_getKeyHashInputMaxSize(sample.type()), 4u);
}

TEST(KeyHash, OfSixteenOctetsIsTheKeyItself)
{
    TestGuidKey sample = {};
    for (unsigned i = 0; i < 16; ++i) {
        sample.guid.value[i] = static_cast<DDS_Octet>(i + 1);
    }
    sample.owner.value[0] = 99;
    ZUVKeyHash hash = {};
    ASSERT_TRUE(ZUVCodec_getKeyHash(&TestGuidKey_g_typecode, &sample, &hash));
    EXPECT_EQ(std::memcmp(hash.value, sample.guid.value, 16), 0);
    EXPECT_EQ(ZUVCodec_getKeyMaxSize(&TestGuidKey_g_typecode, DDS_BOOLEAN_TRUE), 20u);
}

// Members by id (first 0x03d5048b, second 0x0ae6f0a9), whatever their order of declaration.
TEST(KeyHash, OfALongKeyIsItsDigest)
{
    ZUV_TEST_SAMPLE(TestTextKey, sample);
    sample->first = 7;
    DDS_String_replace(&sample->second, "ab");
    ZUVKeyHash hash = {};
    ASSERT_TRUE(ZUVCodec_getKeyHash(sample.type(), &sample, &hash));
    EXPECT_EQ(ZUVCodec_getKeyHashInputMaxSize(sample.type()), 4u + 4 + 9);
    const DDS_Octet key[] = {0, 0, 0, 7, 0, 0, 0, 3, 'a', 'b', 0};
    zuv::Md5 md5;
    md5.update(key);
    const zuv::Md5Digest digest = md5.finish();
    EXPECT_EQ(std::memcmp(hash.value, digest.data(), 16), 0);
}

TEST(KeyHash, OfATypeWithoutAKeyDoesNotExist)
{
    const TestOlder sample = {1, 2};
    ZUVKeyHash hash = {};
    EXPECT_FALSE(ZUVCodec_getKeyHash(&TestOlder_g_typecode, &sample, &hash));
    EXPECT_EQ(ZUVCodec_getKeyMaxSize(&TestOlder_g_typecode, DDS_BOOLEAN_TRUE), 0u);
    EXPECT_EQ(ZUVCodec_getKeyHashInputMaxSize(&TestOlder_g_typecode), 0u);
    EXPECT_FALSE(ZUVCodec_hasKey(&TestOlder_g_typecode));
}

TEST(Key, IsReadFromASampleWithoutTheOtherTexts)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestTagKey, sample);
    ZUV_TEST_SAMPLE(TestTagKey, decoded);
    DDS_String_replace(&sample->before, "before");
    DDS_String_replace(&sample->tag.name, "ab");
    sample->tag.number = 7;
    DDS_String_replace(&sample->after, "after");
    DDS_String_replace(&decoded->after, "old");
    DDS_Octet buffer[64];
    DDS_UnsignedLong length = 0;
    ASSERT_TRUE(ZUVCodec_serialize(sample.type(), &sample, buffer, sizeof(buffer), &length));
    ASSERT_TRUE(ZUVCodec_deserializeKeyOfSample(decoded.type(), &decoded, buffer, length));
    EXPECT_STREQ(decoded->tag.name, "ab");
    EXPECT_EQ(decoded->tag.number, 7);
    EXPECT_STREQ(decoded->before, "");
    EXPECT_STREQ(decoded->after, "old");
    DDS_String_replace(&decoded->tag.name, "kept");
    const DDS_UnsignedLong padding = buffer[3];
    for (DDS_UnsignedLong size = 0; size < length - padding; ++size) {
        EXPECT_FALSE(ZUVCodec_deserializeKeyOfSample(decoded.type(), &decoded, buffer, size))
            << size;
    }
    EXPECT_STREQ(decoded->tag.name, "kept");
}

TEST(Key, IsReadFromASampleOfAnyType)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    ZUV_TEST_SAMPLE(TestMutable, decoded);
    sample->id = 7;
    DDS_Octet buffer[256];
    DDS_UnsignedLong length = 0;
    ASSERT_TRUE(ZUVCodec_serialize(sample.type(), &sample, buffer, sizeof(buffer), &length));
    ASSERT_TRUE(ZUVCodec_deserializeKeyOfSample(decoded.type(), &decoded, buffer, length));
    EXPECT_EQ(decoded->id, 7);

    ZUV_TEST_SAMPLE(TestTextKey, runs);
    ZUV_TEST_SAMPLE(TestTextKey, decodedRuns);
    DDS_String_replace(&runs->second, "ab");
    runs->first = 8;
    ASSERT_TRUE(ZUVCodec_serialize(runs.type(), &runs, buffer, sizeof(buffer), &length));
    ASSERT_TRUE(ZUVCodec_deserializeKeyOfSample(runs.type(), &decodedRuns, buffer, length));
    EXPECT_STREQ(decodedRuns->second, "ab");
    EXPECT_EQ(decodedRuns->first, 8);
}

TEST(Key, IsNotReadFromASampleThatHasNone)
{
    const TestOlder sample = {1, 2};
    TestOlder decoded = {3, 4};
    DDS_Octet buffer[32];
    DDS_UnsignedLong length = 0;
    ASSERT_TRUE(
        ZUVCodec_serialize(&TestOlder_g_typecode, &sample, buffer, sizeof(buffer), &length));
    EXPECT_FALSE(ZUVCodec_deserializeKeyOfSample(&TestOlder_g_typecode, &decoded, buffer, length));
    EXPECT_EQ(decoded.a, 3);
}

TEST(Key, TravelsAlone)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestTextKey, sample);
    ZUV_TEST_SAMPLE(TestTextKey, decoded);
    sample->first = 7;
    sample->value = 8;
    DDS_String_replace(&sample->second, "ab");
    DDS_Octet buffer[32];
    DDS_UnsignedLong length = 0;
    ASSERT_TRUE(ZUVCodec_serializeKey(sample.type(), &sample, buffer, sizeof(buffer), &length));
    const DDS_Octet expected[] = {0, 7, 0, 1, 7, 0, 0, 0, 3, 0, 0, 0, 'a', 'b', 0, 0};
    ASSERT_EQ(length, sizeof(expected));
    EXPECT_EQ(std::memcmp(buffer, expected, length), 0);
    ASSERT_TRUE(ZUVCodec_deserializeKey(sample.type(), &decoded, buffer, length));
    EXPECT_EQ(decoded->first, 7);
    EXPECT_EQ(decoded->value, 0);
    EXPECT_STREQ(decoded->second, "ab");
    for (DDS_UnsignedLong size = 0; size < 15; ++size) {
        EXPECT_FALSE(ZUVCodec_serializeKey(sample.type(), &sample, buffer, size, &length));
        EXPECT_FALSE(ZUVCodec_deserializeKey(sample.type(), &decoded, expected, size)) << size;
    }
}
