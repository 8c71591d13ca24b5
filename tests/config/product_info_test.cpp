#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "config/ProductInfo.h"
#include "config/Version.h"
#include "log/Log.h"
#include "support/LogCapture.h"

namespace
{

class ProductInfo : public testing::Test
{
protected:
    ~ProductInfo() override { BRELProductInfo_reset(); }
};

// The record as the list of texts that it is.
std::vector<std::string> textsOf(const BRELProductInfo &info)
{
    const char *texts[sizeof(BRELProductInfo) / sizeof(const char *)];
    static_assert(sizeof(texts) == sizeof(info));
    std::memcpy(texts, &info, sizeof(texts));
    return {std::begin(texts), std::end(texts)};
}

std::vector<std::string> defaults()
{
    std::vector<std::string> texts = {
        "zuvbrelservice",
        "zuvbsh",
        "ZUV Brel Service",
        "brel service",
        "ZUV_Brel_Service",
        "brel_service",
        "../../../xml/ZUV_BREL_SERVICE.xml",
        "../../resource/xml/ZUV_BREL_SERVICE.xml",
        "USER_BREL_SERVICE.xml",
        "ZUV::BrelService::Administration::CommandRequest",
        "zuv/brel_service/administration/command_request",
        "ZUV::BrelService::Administration::CommandResponse",
        "zuv/brel_service/administration/command_response",
    };
    constexpr const char *kMonitoring[][2] = {
        {"RouteStatusSet", "route_status_set"},
        {"DomainRouteStatusSet", "domain_route_status_set"},
        {"AutoRouteStatusSet", "auto_route_status_set"},
        {"BrelServiceStatusSet", "brel_service_status_set"},
        {"SessionStatusSet", "session_status_set"},
        {"RouteData", "route_data"},
        {"DomainRouteData", "domain_route_data"},
        {"AutoRouteData", "auto_route_data"},
        {"BrelServiceData", "brel_service_data"},
        {"SessionData", "session_data"},
    };
    for (const auto &[type, topic] : kMonitoring) {
        texts.push_back(std::string("ZUV::BrelService::Monitoring::") + type);
        texts.push_back(std::string("zuv/brel_service/monitoring/") + topic);
    }
    return texts;
}

TEST_F(ProductInfo, startsWithItsDefaultsInOrder)
{
    EXPECT_EQ(textsOf(BREL_PRODUCT_INFO_DEFAULT), defaults());
    EXPECT_EQ(textsOf(*BRELProductInfo_get()), defaults());
}

TEST_F(ProductInfo, membersCarryTheNamesOfTheirPlaces)
{
    const BRELProductInfo &info = *BRELProductInfo_get();
    EXPECT_STREQ(info.topLevelTag, "brel_service");
    EXPECT_STREQ(info.responseTopicName, "zuv/brel_service/administration/command_response");
    EXPECT_STREQ(info.serviceStatusTypeName, "ZUV::BrelService::Monitoring::BrelServiceStatusSet");
    EXPECT_STREQ(info.sessionStatusTopicName, "zuv/brel_service/monitoring/session_status_set");
    EXPECT_STREQ(info.serviceDataTopicName, "zuv/brel_service/monitoring/brel_service_data");
    EXPECT_STREQ(info.sessionDataTopicName, "zuv/brel_service/monitoring/session_data");
}

TEST_F(ProductInfo, anEmbeddingProgramReplacesFiveNames)
{
    const ZUV_BrelServiceProductInfo names = {"bridge", "bridgesh", "Bridge", "log bridge",
                                              "Bridge_App"};
    BRELProductInfo_set(&names);
    std::vector<std::string> expected = defaults();
    expected[0] = "bridge";
    expected[1] = "bridgesh";
    expected[2] = "Bridge";
    expected[3] = "log bridge";
    expected[4] = "Bridge_App";
    EXPECT_EQ(textsOf(*BRELProductInfo_get()), expected);
    EXPECT_STREQ(BRELProductInfo_get()->productName, "Bridge");
    BRELProductInfo_reset();
    EXPECT_EQ(textsOf(*BRELProductInfo_get()), defaults());
}

TEST_F(ProductInfo, aNameThatIsNotGivenIsTheDefault)
{
    const ZUV_BrelServiceProductInfo first = {"one", "two", "three", "four", "five"};
    BRELProductInfo_set(&first);
    const ZUV_BrelServiceProductInfo second = {nullptr, nullptr, "Bridge", nullptr, nullptr};
    BRELProductInfo_set(&second);
    EXPECT_STREQ(BRELProductInfo_get()->executableName, "zuvbrelservice");
    EXPECT_STREQ(BRELProductInfo_get()->productName, "Bridge");
}

TEST_F(ProductInfo, staysAsItIsWithoutNewNames)
{
    BRELLog_setUp();
    const zuv_test::LogCapture log;
    BRELProductInfo_set(nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: info == ((void *)0)"}}));
    EXPECT_EQ(textsOf(*BRELProductInfo_get()), defaults());
}

TEST_F(ProductInfo, itsVersionIsBuiltOnce)
{
    EXPECT_STREQ(BRELProductInfo_getVersion(), "7.7.0.0");
    EXPECT_EQ(BRELProductInfo_getVersion(), BRELProductInfo_getVersion());
}

TEST(Version, asTextNarrowsItsNumbersToBytes)
{
    char text[DDS_PRODUCT_VERSION_MAX_STRING_SIZE];
    const ZUV_BrelServiceVersion plain = {7, 7, 1, 2};
    BREL_versionToString(&plain, text);
    EXPECT_STREQ(text, "7.7.1.2");
    const ZUV_BrelServiceVersion wide = {256, 257, -1, 511};
    BREL_versionToString(&wide, text);
    EXPECT_STREQ(text, "0.1.255.255");
}

TEST(Version, asTextNeedsAVersionAndRoom)
{
    BRELLog_setUp();
    const zuv_test::LogCapture log;
    char text[DDS_PRODUCT_VERSION_MAX_STRING_SIZE] = "untouched";
    const ZUV_BrelServiceVersion version = {7, 7, 1, 2};
    BREL_versionToString(nullptr, text);
    BREL_versionToString(&version, nullptr);
    EXPECT_STREQ(text, "untouched");
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: version == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: versionAsString == ((void *)0)"}}));
}

} // namespace
