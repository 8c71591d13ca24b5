#include "config/DdsUtils.h"

#include <initializer_list>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "support/LogCapture.h"

namespace
{

struct Texts : DDS_StringSeq {
    Texts(std::initializer_list<const char *> texts) : DDS_StringSeq(DDS_SEQUENCE_INITIALIZER)
    {
        const auto count = static_cast<DDS_Long>(texts.size());
        EXPECT_TRUE(
            DDS_StringSeq_from_array(this, const_cast<char *const *>(texts.begin()), count));
    }
    Texts(const Texts &) = delete;
    Texts &operator=(const Texts &) = delete;
    ~Texts() { DDS_StringSeq_finalize(this); }
};

bool areEqual(const Texts &a, const Texts &b)
{
    const int result = BRELUtils_StringSeq_equals(&a, &b);
    EXPECT_EQ(BRELUtils_StringSeq_equals(&b, &a), result);
    return result != 0;
}

TEST(StringSeqEquals, comparesTextsInTheirOrder)
{
    EXPECT_TRUE(areEqual({}, {}));
    EXPECT_TRUE(areEqual({"a", "b"}, {"a", "b"}));
    EXPECT_FALSE(areEqual({"a", "b"}, {"b", "a"}));
    EXPECT_FALSE(areEqual({"a"}, {"a", "b"}));
    EXPECT_FALSE(areEqual({"a"}, {"A"}));
}

TEST(StringSeqEquals, takesTwoMissingTextsForEqual)
{
    EXPECT_TRUE(areEqual({nullptr, "b"}, {nullptr, "b"}));
    EXPECT_FALSE(areEqual({nullptr}, {""}));
}

class HandleInSequence : public testing::Test
{
protected:
    HandleInSequence()
    {
        handles_[0].value[15] = 1;
        handles_[1].value[0] = 1;
        handles_[2].value[0] = 2;
        for (auto &handle : handles_) {
            handle.isValid = DDS_BOOLEAN_TRUE;
        }
        EXPECT_TRUE(DDS_InstanceHandleSeq_from_array(&seq_, handles_, 2));
    }
    ~HandleInSequence() override { DDS_InstanceHandleSeq_finalize(&seq_); }

    DDS_InstanceHandle_t handles_[3] = {};
    DDS_InstanceHandleSeq seq_ = DDS_SEQUENCE_INITIALIZER;
};

TEST_F(HandleInSequence, isFoundWhereverItIs)
{
    EXPECT_EQ(BRELUtils_isHandleInSequence(&seq_, &handles_[0]), 1);
    EXPECT_EQ(BRELUtils_isHandleInSequence(&seq_, &handles_[1]), 1);
    EXPECT_EQ(BRELUtils_isHandleInSequence(&seq_, &handles_[2]), 0);
    EXPECT_EQ(BRELUtils_isHandleInSequence(&seq_, &DDS_HANDLE_NIL), 0);
}

TEST_F(HandleInSequence, isNotFoundInAnEmptyOne)
{
    const DDS_InstanceHandleSeq empty = DDS_SEQUENCE_INITIALIZER;
    EXPECT_EQ(BRELUtils_isHandleInSequence(&empty, &handles_[0]), 0);
}

TEST(BuiltinTopicKey, hasTheWordsThatTheOctetsSpell)
{
    const DDS_GUID_t guid = {
        {0x01, 0x02, 0x03, 0x04, 0x80, 0, 0, 0, 0, 0, 0, 0xff, 0, 0, 0x01, 0xc1}};
    ZUV_Service_BuiltinTopicKey key;
    BRELUtils_guidToBuiltinTopicKey(&key, &guid);
    EXPECT_EQ(key.value[0], 0x01020304U);
    EXPECT_EQ(key.value[1], 0x80000000U);
    EXPECT_EQ(key.value[2], 0x000000ffU);
    EXPECT_EQ(key.value[3], 0x000001c1U);
}

TEST(GrowthOfAPool, isAsTheSettingsSay)
{
    ZUVOsapiPoolGrowthProperty growth = {};
    const DDS_AllocationSettings_t limited = {1, 2, 3};
    BRELUtils_allocationSettingsToGrowthProperty(&growth, &limited);
    EXPECT_EQ(growth.initial, 1);
    EXPECT_EQ(growth.maximal, 2);
    EXPECT_EQ(growth.increment, 3);
    const DDS_AllocationSettings_t unlimited = {0, DDS_LENGTH_UNLIMITED, DDS_LENGTH_UNLIMITED};
    BRELUtils_allocationSettingsToGrowthProperty(&growth, &unlimited);
    EXPECT_EQ(growth.initial, 0);
    EXPECT_EQ(growth.maximal, -1);
    EXPECT_EQ(growth.increment, -1);
}

TEST(DdsUtils, reportEachNullThatIsNotAllowed)
{
    BRELLog_setUp();
    const zuv_test::LogCapture log;
    const Texts texts{};
    const DDS_InstanceHandleSeq handles = DDS_SEQUENCE_INITIALIZER;
    const DDS_GUID_t guid = {};
    const DDS_AllocationSettings_t settings = {};
    ZUV_Service_BuiltinTopicKey key;
    ZUVOsapiPoolGrowthProperty growth;
    EXPECT_EQ(BRELUtils_StringSeq_equals(nullptr, &texts), 0);
    EXPECT_EQ(BRELUtils_StringSeq_equals(&texts, nullptr), 0);
    EXPECT_EQ(BRELUtils_isHandleInSequence(nullptr, &DDS_HANDLE_NIL), 0);
    EXPECT_EQ(BRELUtils_isHandleInSequence(&handles, nullptr), 0);
    BRELUtils_guidToBuiltinTopicKey(nullptr, &guid);
    BRELUtils_guidToBuiltinTopicKey(&key, nullptr);
    BRELUtils_allocationSettingsToGrowthProperty(nullptr, &settings);
    BRELUtils_allocationSettingsToGrowthProperty(&growth, nullptr);
    std::vector<std::string> expected;
    for (const char *const name :
         {"a", "b", "handleSeq", "handle", "out", "in", "growth", "settings"}) {
        expected.push_back(std::string("!meet precondition: ") + name + " == ((void *)0)");
    }
    EXPECT_EQ(log.texts(), expected);
}

} // namespace
