// Payloads that lie, for every structure and so for every kind of extensibility: they are refused without a step
// behind their end and without an allocation, or give a sample that is no larger than they are, within a small
// multiple, and that can be written and read again.
#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "AllTypes.h"
#include "Payloads.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using namespace zuv_test;

// An element that is all missing takes four octets, and its record in memory some more.
constexpr std::size_t kMultiple = 8;
constexpr std::size_t kHeader = 4;
constexpr std::uint32_t kHostileWords[] = {0,           1,           4,           0x7ffffffc,
                                           0x7fffffff,  0x80000000u, 0x80000001u, 0xfffffff0u,
                                           0xfffffffcu, 0xffffffffu};

std::uint64_t liveBytes()
{
    ZUVOsapiHeapStatistics statistics;
    ZUVOsapiHeap_getStatistics(&statistics);
    return statistics.liveByteCount;
}

// A sample without storage of its own, so that all that a payload makes it hold is seen.
class BareSample
{
public:
    explicit BareSample(const DDS_TypeCode *type) : type_(type), bytes_(ZUVSample_getSize(type))
    {
        ZUVSample_initializeEx(type_, get(), DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE);
    }
    ~BareSample() { ZUVSample_finalizeEx(type_, get(), DDS_BOOLEAN_TRUE); }
    BareSample(const BareSample &) = delete;
    BareSample &operator=(const BareSample &) = delete;

    void *get() { return bytes_.data(); }

private:
    const DDS_TypeCode *type_;
    std::vector<std::byte> bytes_;
};

// Whether a payload was accepted, after a check of what it cost.
bool accepts(const DDS_TypeCode *type, const Octets &payload)
{
    BareSample sample(type);
    const HeapCheck heap;
    const std::uint64_t before = liveBytes();
    const bool isValid =
        ZUVCodec_validate(type, payload.data(), static_cast<DDS_UnsignedLong>(payload.size()));
    EXPECT_EQ(heap.allocations(), 0U);
    const bool isRead = readPayload(type, sample.get(), payload);
    EXPECT_EQ(isRead, isValid);
    if (!isRead) {
        EXPECT_EQ(heap.allocations(), 0U) << "refused, and yet it cost memory";
        return false;
    }
    EXPECT_LE(liveBytes() - before, kMultiple * payload.size());
    const SamplePointer again = newSample(type);
    EXPECT_TRUE(readPayload(type, again.get(), payloadOf(type, sample.get())));
    EXPECT_TRUE(ZUVSample_equals(type, sample.get(), again.get()));
    return true;
}

// Does `attack` with a full and a sparse payload of every structure.
void attackEveryStructure(
    const std::function<void(const DDS_TypeCode *, const Octets &payload)> &attack)
{
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_STRUCTURES)) {
        for (const Filling filling : {Filling::Full, Filling::Sparse}) {
            SCOPED_TRACE(std::string(nameOf(type)) +
                         (filling == Filling::Full ? ", full" : ", sparse"));
            const SamplePointer sample = newSample(type);
            fillSample(type, sample.get(), 1, filling);
            const Octets payload = payloadOf(type, sample.get());
            ASSERT_TRUE(accepts(type, payload));
            attack(type, payload);
        }
    }
}

class HostilePayloads : public testing::Test
{
protected:
    const LogCapture log_;
};

TEST_F(HostilePayloads, ThatEndEarlyAreRefused)
{
    attackEveryStructure([](const DDS_TypeCode *type, const Octets &payload) {
        const std::size_t whole = payload.size() - payload[3];
        for (std::size_t size = 0; size < whole; ++size) {
            EXPECT_FALSE(
                accepts(type, Octets(payload.begin(), payload.begin() + static_cast<long>(size))))
                << size;
        }
    });
}

TEST_F(HostilePayloads, WithMoreThanPaddingBehindTheEndAreRefused)
{
    attackEveryStructure([](const DDS_TypeCode *type, Octets payload) {
        payload.resize(payload.size() - payload[3]);
        for (int extra = 0; extra < 9; ++extra) {
            EXPECT_EQ(accepts(type, payload), extra < 4) << extra;
            payload.push_back(0x55);
        }
    });
}

TEST_F(HostilePayloads, WithAnyWordExchangedCostNoMoreThanTheirSize)
{
    attackEveryStructure([](const DDS_TypeCode *type, const Octets &payload) {
        for (std::size_t offset = 0; offset + sizeof(std::uint32_t) <= payload.size(); ++offset) {
            for (const std::uint32_t word : kHostileWords) {
                Octets changed = payload;
                putWord(changed, offset, word);
                accepts(type, changed);
            }
        }
    });
}

TEST_F(HostilePayloads, WithAnyOctetExchangedCostNoMoreThanTheirSize)
{
    attackEveryStructure([](const DDS_TypeCode *type, const Octets &payload) {
        for (std::size_t offset = 0; offset < payload.size(); ++offset) {
            for (const unsigned change : {0x01U, 0x04U, 0x10U, 0x80U, 0xffU}) {
                Octets changed = payload;
                changed[offset] = static_cast<std::uint8_t>(changed[offset] ^ change);
                accepts(type, changed);
            }
        }
    });
}

TEST_F(HostilePayloads, WithADelimiterBeyondTheEndAreRefused)
{
    attackEveryStructure([](const DDS_TypeCode *type, const Octets &payload) {
        if (DDS_TypeCode_extensibility_kind(type, nullptr) == DDS_FINAL_EXTENSIBILITY) {
            return; // has none
        }
        const std::uint32_t size = wordAt(payload, kHeader);
        EXPECT_EQ(size, payload.size() - payload[3] - 2 * kHeader);
        const std::uint32_t room = static_cast<std::uint32_t>(payload.size() - 2 * kHeader);
        for (const std::uint32_t wrong : {room + 1, room + 4, 2 * room + 4, 0x7fffffffU,
                                          0x80000000U, 0xfffffff8U, 0xffffffffU}) {
            Octets changed = payload;
            putWord(changed, kHeader, wrong);
            EXPECT_FALSE(accepts(type, changed)) << wrong;
        }
    });
}

TEST_F(HostilePayloads, WithADelimiterThatLeavesOctetsBehindAreRefused)
{
    attackEveryStructure([](const DDS_TypeCode *type, const Octets &payload) {
        const std::uint32_t size = wordAt(payload, kHeader);
        if (DDS_TypeCode_extensibility_kind(type, nullptr) == DDS_FINAL_EXTENSIBILITY || size < 4) {
            return;
        }
        for (std::uint32_t wrong = 0; wrong <= size - 4; ++wrong) {
            Octets changed = payload;
            putWord(changed, kHeader, wrong);
            EXPECT_FALSE(accepts(type, changed)) << wrong;
        }
    });
}

TEST_F(HostilePayloads, UnderTheHeaderOfAnotherExtensibilityAreRefused)
{
    attackEveryStructure([](const DDS_TypeCode *type, const Octets &payload) {
        for (unsigned identifier = 0; identifier < 16; ++identifier) {
            if ((identifier | 1) == payload[1]) {
                continue; // its own, in one byte order or the other
            }
            Octets changed = payload;
            changed[1] = static_cast<std::uint8_t>(identifier);
            EXPECT_FALSE(accepts(type, changed)) << identifier;
            changed[0] = 1;
            changed[1] = payload[1];
            EXPECT_FALSE(accepts(type, changed));
        }
    });
}

// -- By name: one lie at a time, in a sample of each kind ---------------------------------------------------

// The only place of some octets in a payload.
std::size_t placeOf(const Octets &payload, std::string_view octets)
{
    const auto find = [&](auto from) {
        return std::search(
            from, payload.end(), octets.begin(), octets.end(),
            [](std::uint8_t left, char right) { return left == static_cast<std::uint8_t>(right); });
    };
    const auto found = find(payload.begin());
    EXPECT_NE(found, payload.end());
    EXPECT_EQ(find(found + 1), payload.end());
    return static_cast<std::size_t>(found - payload.begin());
}

// A text lies about its length, has no terminator, or goes beyond its bound.
void attackText(const DDS_TypeCode *type, const Octets &payload, std::string_view text)
{
    const std::size_t place = placeOf(payload, text);
    const auto isAcceptedWithLength = [&](std::uint32_t length) {
        Octets changed = payload;
        putWord(changed, place - 4, length);
        return accepts(type, changed);
    };
    const auto length = static_cast<std::uint32_t>(text.size() + 1);
    ASSERT_EQ(wordAt(payload, place - 4), length);
    EXPECT_TRUE(isAcceptedWithLength(length));
    const auto rest = static_cast<std::uint32_t>(payload.size() - place);
    for (const std::uint32_t wrong :
         {0U, length - 1, rest + 1, 0x7fffffffU, 0x80000000U, 0xfffffffcU, 0xffffffffU}) {
        EXPECT_FALSE(isAcceptedWithLength(wrong)) << wrong;
    }
    Octets open = payload;
    open[place + text.size()] = '!';
    EXPECT_FALSE(accepts(type, open)) << "no terminator";
}

TEST_F(HostilePayloads, OfAnAppendableRequestLieAboutTextsCountsAndValues)
{
    const DDS_TypeCode *type = ZUV_Service_Admin_CommandRequest_get_typecode();
    const SamplePointer sample = newSample(type);
    auto *request = static_cast<ZUV_Service_Admin_CommandRequest *>(sample.get());
    DDS_String_replace(&request->application_name, "application");
    request->action = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;
    DDS_String_replace(&request->resource_identifier, "identifier");
    DDS_String_replace(&request->string_body, "the body");
    const DDS_Octet octets[] = {0xd0, 0xd1, 0xd2, 0xd3};
    ASSERT_TRUE(DDS_OctetSeq_from_array(&request->octet_body, octets, 4));
    const Octets payload = payloadOf(type, request);
    attackText(type, payload, "application");
    attackText(type, payload, "identifier");
    attackText(type, payload, "the body");

    const std::size_t body = placeOf(payload, "\xd0\xd1\xd2\xd3");
    for (const std::uint32_t count : {5U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
        Octets changed = payload;
        putWord(changed, body - 4, count);
        EXPECT_FALSE(accepts(type, changed)) << count;
    }
    constexpr std::size_t kFlag = 12; // behind header, delimiter and instance
    constexpr std::size_t kAction = 32;
    ASSERT_EQ(payload[kFlag], 1);
    ASSERT_EQ(wordAt(payload, kAction), 3U);
    for (const std::uint32_t action : {4U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
        Octets changed = payload;
        putWord(changed, kAction, action);
        EXPECT_FALSE(accepts(type, changed)) << action;
    }
    for (const unsigned flag : {2U, 0x80U, 0xffU}) {
        Octets changed = payload;
        changed[kFlag] = static_cast<std::uint8_t>(flag);
        EXPECT_FALSE(accepts(type, changed)) << flag;
    }
}

TEST_F(HostilePayloads, OfAMutableConfigurationLieAboutTextsAndMembers)
{
    const DDS_TypeCode *type = ZUV_Service_Monitoring_EntityConfig_get_typecode();
    const SamplePointer sample = newSample(type);
    auto *config = static_cast<ZUV_Service_Monitoring_EntityConfig *>(sample.get());
    DDS_String_replace(&config->resource_id, "/a/resource");
    DDS_String_replace(&config->configuration, "<route name='a'/>");
    const Octets payload = payloadOf(type, config);
    attackText(type, payload, "/a/resource");
    attackText(type, payload, "<route name='a'/>");

    constexpr std::size_t kMember = 8;
    const std::uint32_t header = wordAt(payload, kMember);
    ASSERT_EQ(header & 0x0fffffffU, 0x0BEFF3E2U);
    for (std::uint32_t code = 0; code < 8; ++code) { // of the member's length
        Octets changed = payload;
        putWord(changed, kMember, (header & 0x8fffffffU) | code << 28);
        EXPECT_EQ(accepts(type, changed), code == (header >> 28 & 7)) << code;
    }
    Octets unknown = payload;
    putWord(unknown, kMember, header ^ 1);
    EXPECT_TRUE(accepts(type, unknown)); // skipped
    putWord(unknown, kMember, (header ^ 1) | 0x80000000U);
    EXPECT_FALSE(accepts(type, unknown)) << "must be understood";
}

TEST_F(HostilePayloads, OfAMutablePoolLieAboutItsElementsAndWhatIsInThem)
{
    const DDS_TypeCode *type = ZUV_Service_Monitoring_ThreadPoolPeriodic_get_typecode();
    const SamplePointer sample = newSample(type);
    fillSample(type, sample.get(), 1);
    const Octets payload = payloadOf(type, sample.get());
    // Delimiter of the sample, member header with its length, delimiter of the sequence, count, the first
    // element's delimiter.
    constexpr std::size_t kLength = 12;
    constexpr std::size_t kCount = 16;
    constexpr std::size_t kElement = 20;
    ASSERT_EQ(wordAt(payload, kCount), 3U);
    for (const std::uint32_t count :
         {0U, 2U, 4U, 0x10000U, 0x10000000U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
        Octets changed = payload;
        putWord(changed, kCount, count);
        EXPECT_FALSE(accepts(type, changed)) << count;
    }
    for (const std::size_t place : {kLength, kElement}) {
        const std::uint32_t right = wordAt(payload, place);
        for (const std::uint32_t wrong : {0U, right - 4, right + 4, 0x7fffffffU, 0xffffffffU}) {
            Octets changed = payload;
            putWord(changed, place, wrong);
            EXPECT_FALSE(accepts(type, changed)) << place << ' ' << wrong;
        }
    }
    // Elements of which everything is missing are cheap on the wire: still no more memory than a multiple.
    constexpr std::uint32_t kElements = 1000;
    Octets many(kElement + 4 * kElements);
    std::copy_n(payload.begin(), kElement, many.begin());
    putWord(many, 4, 12 + 4 * kElements);
    putWord(many, kLength, 4 + 4 * kElements);
    putWord(many, kCount, kElements);
    EXPECT_TRUE(accepts(type, many));
}

TEST_F(HostilePayloads, OfAMutableEventHaveAStateThatThereIsNot)
{
    const DDS_TypeCode *type = ZUV_Service_Monitoring_EntityEvent_get_typecode();
    const SamplePointer sample = newSample(type);
    const Octets payload = payloadOf(type, sample.get());
    ASSERT_EQ(payload.size(), 16U);
    for (const std::uint32_t state : {7U, 10000U, 0x80000000U, 0xffffffffU}) {
        Octets changed = payload;
        putWord(changed, 12, state);
        EXPECT_FALSE(accepts(type, changed)) << state;
    }
}

TEST_F(HostilePayloads, OfAFinalGuidAreOfItsSizeOrRefused)
{
    const DDS_TypeCode *type = ZUV_Service_Monitoring_ResourceGuid_get_typecode();
    for (std::size_t size = 0; size < 40; ++size) {
        Octets payload(kHeader + size);
        payload[1] = 7;
        EXPECT_EQ(accepts(type, payload), size >= 16 && size < 20) << size;
    }
}

} // namespace
