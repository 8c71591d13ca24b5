#include <string>

#include <gtest/gtest.h>

#include "config/ProductInfo.h"
#include "config/Utils.h"
#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

class ParticipantQos : public testing::Test
{
protected:
    ParticipantQos()
    {
        BRELLog_setUp();
        EXPECT_EQ(DDS_DomainParticipantQos_initialize(&qos_), DDS_RETCODE_OK);
    }
    ~ParticipantQos() override
    {
        ZUVOsapiFault_disarm();
        DDS_DomainParticipantQos_finalize(&qos_);
        EXPECT_TRUE(heap_.isBalanced());
    }

    std::string name() const
    {
        return qos_.participant_name.name != nullptr ? qos_.participant_name.name : "(null)";
    }

    const zuv_test::HeapCheck heap_;
    DDS_DomainParticipantQos qos_;
};

using ParticipantName = ParticipantQos;

TEST_F(ParticipantName, hasProductServiceAndBothSuffixes)
{
    EXPECT_EQ(BRELUtils_setParticipantNameWithSeparator(&qos_, "app", "route", "participant", "#"),
              1);
    EXPECT_EQ(name(), "ZUV Brel Service: app.route#participant");
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, "app", "route", "participant"), 1);
    EXPECT_EQ(name(), "ZUV Brel Service: app.routeparticipant");
}

TEST_F(ParticipantName, leavesOutTheSuffixesIfOneIsEmpty)
{
    for (const auto &[first, second] :
         {std::pair{"", ""}, {"Administration", ""}, {"", "x"}, {nullptr, nullptr}}) {
        EXPECT_EQ(BRELUtils_setParticipantName(&qos_, "Shell", first, second), 1);
        EXPECT_EQ(name(), "ZUV Brel Service: Shell");
    }
}

TEST_F(ParticipantName, beyondItsLimitIsTheProductAlone)
{
    const std::string product = BRELProductInfo_get()->productName;
    const std::string longest(254 - 3 - product.size(), 's');
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, longest.c_str(), "", ""), 1);
    EXPECT_EQ(name(), product + ": " + longest);
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, (longest + "s").c_str(), "", ""), 1);
    EXPECT_EQ(name(), product);
}

TEST_F(ParticipantName, countsEvenTheSuffixesThatItLeavesOut)
{
    const std::string product = BRELProductInfo_get()->productName;
    const std::string nearlyLongest(254 - 4 - product.size(), 's');
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, nearlyLongest.c_str(), "x", ""), 1);
    EXPECT_EQ(name(), product + ": " + nearlyLongest);
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, nearlyLongest.c_str(), "xy", ""), 1);
    EXPECT_EQ(name(), product);
    EXPECT_EQ(BRELUtils_setParticipantNameWithSeparator(&qos_, nearlyLongest.c_str(), "x", "", "#"),
              1);
    EXPECT_EQ(name(), product);
}

TEST_F(ParticipantName, staysAsItWasWithoutMemory)
{
    BRELUtils_setParticipantName(&qos_, "app", "", "");
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, "b", "", ""), 0);
    EXPECT_EQ(name(), "ZUV Brel Service: app");
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                                "!allocate string of 19 characters: out of memory"}}));
    ZUVOsapiFault_disarm();
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, "b", "", ""), 1);
    EXPECT_EQ(name(), "ZUV Brel Service: b");
}

TEST_F(ParticipantName, needsTheQosAndTheServicesName)
{
    const zuv_test::LogCapture log;
    EXPECT_EQ(BRELUtils_setParticipantName(nullptr, "app", "", ""), 0);
    EXPECT_EQ(BRELUtils_setParticipantName(&qos_, nullptr, "", ""), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: qos == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: brelServiceName == ((void *)0)"}}));
    EXPECT_EQ(name(), "(null)");
}

using ServiceVersion = ParticipantQos;

TEST_F(ServiceVersion, isAPropagatedProperty)
{
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(BRELUtils_setServiceVersion(&qos_), 1);
        const DDS_Property_t *property =
            DDS_PropertyQosPolicyHelper_lookup_property(&qos_.property, "zuv.service.version");
        ASSERT_NE(property, nullptr);
        EXPECT_STREQ(property->value, "7.7.0.0");
        EXPECT_EQ(property->propagate, DDS_BOOLEAN_TRUE);
    }
}

TEST_F(ServiceVersion, isReportedWhenItCannotBeSet)
{
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 1);
    EXPECT_EQ(BRELUtils_setServiceVersion(&qos_), 0);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log.lines().back().message, &ZUV_LOG_ASSERT_FAILURE_s);
    EXPECT_EQ(log.lines().back().text, "!set property zuv.service.version");
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_lookup_property(&qos_.property, "zuv.service.version"),
              nullptr);
}

TEST_F(ServiceVersion, needsTheQos)
{
    const zuv_test::LogCapture log;
    EXPECT_EQ(BRELUtils_setServiceVersion(nullptr), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: qos == ((void *)0)"}}));
}

TEST(IsSpace, hasFiveCharactersAndNoVerticalTab)
{
    std::string found;
    for (int code = 0; code < 256; ++code) {
        if (BRELUtils_isSpace(static_cast<char>(code)) != 0) {
            found += static_cast<char>(code);
        }
    }
    EXPECT_EQ(found, "\t\n\f\r ");
}

TEST(RemoveScopeChars, removesOneLeadingPair)
{
    EXPECT_STREQ(BRELUtils_removeScopeChars("::a::b"), "a::b");
    EXPECT_STREQ(BRELUtils_removeScopeChars("a::b"), "a::b");
    EXPECT_STREQ(BRELUtils_removeScopeChars("::::a"), "::a");
    EXPECT_STREQ(BRELUtils_removeScopeChars(":a"), ":a");
    EXPECT_STREQ(BRELUtils_removeScopeChars("::"), "");
    EXPECT_STREQ(BRELUtils_removeScopeChars(""), "");
    EXPECT_EQ(BRELUtils_removeScopeChars(nullptr), nullptr);
}

TEST(VerbosityToString, namesTheMostTalkativeLevel)
{
    EXPECT_STREQ(BRELUtils_verbosityToString(0), "NONE");
    EXPECT_STREQ(BRELUtils_verbosityToString(1), "CUSTOM");
    EXPECT_STREQ(BRELUtils_verbosityToString(3), "EXCEPTION");
    EXPECT_STREQ(BRELUtils_verbosityToString(7), "WARN");
    EXPECT_STREQ(BRELUtils_verbosityToString(15), "INFO");
    EXPECT_STREQ(BRELUtils_verbosityToString(511), "DEBUG");
    EXPECT_STREQ(BRELUtils_verbosityToString(128), "DEBUG");
    EXPECT_STREQ(BRELUtils_verbosityToString(64 | 16), "CUSTOM");
}

} // namespace
