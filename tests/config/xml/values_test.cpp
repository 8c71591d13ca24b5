// The texts of elements as values.
#include "ConfigTest.h"
#include "config/EntityMonitoring.h"

namespace zuv_test
{
namespace
{

class XmlValues : public ConfigTest
{
protected:
    // The first child of a document with this content.
    ZUVXMLUTILSObject *element(const std::string &text)
    {
        tree_ = parse("<a>\n" + text + "</a>");
        return ZUVXMLUTILSObject_getFirstChild(tree_.get());
    }

    void TearDown() override
    {
        tree_.reset();
        ConfigTest::TearDown();
    }

private:
    Tree tree_;
};

struct Integer {
    const char *text;
    std::int32_t value;
};

TEST_F(XmlValues, integersAreNamesOrNumbers)
{
    constexpr std::int32_t kPriority = -9999999;
    const Integer cases[] = {
        {"0", 0},
        {"12", 12},
        {"-12", -12},
        {"0x10", 16},
        {"0X10", 16},
        {"010", 10},
        {"12abc", 12},
        {" 7", 7},
        {"4294967297", 1},
        {"DDS_LENGTH_UNLIMITED", -1},
        {"LENGTH_unlimited", -1},
        {"DDS_LENGTH_AUTO", -2},
        {"LENGTH_AUTO", -2},
        {"DDS_AUTO_MAX_TOTAL_INSTANCES", 0},
        {"AUTO_MAX_TOTAL_INSTANCES", 0},
        {"DDS_DURATION_INFINITE_SEC", DDS_DURATION_INFINITE_SEC},
        {"DURATION_INFINITE_SEC", DDS_DURATION_INFINITE_SEC},
        {"DDS_DURATION_INFINITE_NSEC", static_cast<std::int32_t>(DDS_DURATION_INFINITE_NSEC)},
        {"DURATION_INFINITE_NSEC", static_cast<std::int32_t>(DDS_DURATION_INFINITE_NSEC)},
        {"DDS_DURATION_ZERO_SEC", 0},
        {"DURATION_ZERO_SEC", 0},
        {"DDS_THREAD_PRIORITY_DEFAULT", kPriority},
        {"THREAD_PRIORITY_DEFAULT", kPriority},
        {"DDS_THREAD_PRIORITY_HIGH", kPriority},
        {"THREAD_PRIORITY_HIGH", kPriority},
        {"MAX_PRIORITY", kPriority},
        {"DDS_THREAD_PRIORITY_ABOVE_NORMAL", kPriority},
        {"THREAD_PRIORITY_ABOVE_NORMAL", kPriority},
        {"DDS_THREAD_PRIORITY_NORMAL", kPriority},
        {"THREAD_PRIORITY_NORMAL", kPriority},
        {"NORM_PRIORITY", kPriority},
        {"DDS_THREAD_PRIORITY_BELOW_NORMAL", kPriority},
        {"THREAD_PRIORITY_BELOW_NORMAL", kPriority},
        {"DDS_THREAD_PRIORITY_LOW", kPriority},
        {"THREAD_PRIORITY_LOW", kPriority},
        {"MIN_PRIORITY", kPriority},
        {"DDS_THREAD_STACK_SIZE_DEFAULT", -1},
        {"THREAD_STACK_SIZE_DEFAULT", -1},
        {"THREAD_SETTINGS_CPU_NO_ROTATION", 0},
        {"THREAD_SETTINGS_CPU_RR_ROTATION", 1},
    };
    for (const auto &[text, expected] : cases) {
        int value = 99;
        EXPECT_EQ(BRELXmlInt_getValue(element("<n>" + std::string(text) + "</n>"), &value), 1);
        EXPECT_EQ(value, expected) << text;
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlValues, aTextWithoutDigitIsNoInteger)
{
    int value = 99;
    EXPECT_EQ(BRELXmlInt_getValue(element("<n>many</n>"), &value), 0);
    EXPECT_EQ(value, 0);
    EXPECT_TRUE(
        log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!integer expected"},
                       {&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, "!parse line 2: element <n>"}}));
}

TEST_F(XmlValues, booleans)
{
    DDS_Boolean value = 0;
    EXPECT_EQ(BRELXmlBoolean_getValue(element("<b>true</b>"), &value), 1);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(BRELXmlBoolean_getValue(element("<b> 0 </b>"), &value), 1);
    EXPECT_EQ(value, 0);
    EXPECT_TRUE(log.isEmpty());
    value = 7;
    EXPECT_EQ(BRELXmlBoolean_getValue(element("<b>perhaps</b>"), &value), 0);
    EXPECT_EQ(value, 7);
    EXPECT_TRUE(
        log.isExactly({{&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, "!parse line 2: element <b>"}}));
}

TEST_F(XmlValues, durations)
{
    struct Case {
        const char *text;
        DDS_Duration_t value;
    };
    const Case cases[] = {
        {"<sec>3</sec><nanosec>5</nanosec>", {3, 5}},
        {"<nanosec>5</nanosec><sec>3</sec>", {3, 5}},
        {"<sec>3</sec>", {3, 0}},
        {"<nanosec>5</nanosec>", {0, 5}},
        {"<sec/><nanosec>5</nanosec>", {0, 5}},
        {"", {0, 0}},
        {"<sec>DURATION_INFINITE_SEC</sec><nanosec>DDS_DURATION_INFINITE_NSEC</nanosec>",
         DDS_DURATION_INFINITE},
        {"<sec> duration_zero_sec </sec><nanosec>0x10</nanosec>", {0, 16}},
        {"<sec>-1</sec><nanosec>4294967295</nanosec>", {-1, 4294967295U}},
    };
    for (const auto &[text, expected] : cases) {
        DDS_Duration_t value = {9, 9};
        EXPECT_EQ(BRELXmlDuration_getValue(element("<d>" + std::string(text) + "</d>"), &value), 1);
        EXPECT_EQ(value.sec, expected.sec) << text;
        EXPECT_EQ(value.nanosec, expected.nanosec) << text;
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlValues, aWrongPartOfADurationStopsThere)
{
    DDS_Duration_t value = {9, 9};
    EXPECT_EQ(BRELXmlDuration_getValue(element("<d><sec>3</sec><nanosec>-5</nanosec></d>"), &value),
              0);
    EXPECT_EQ(value.sec, 3);
    EXPECT_EQ(value.nanosec, 9U);
    EXPECT_TRUE(
        log.isExactly({{&ZUV_LOG_BAD_STRING_FORMAT_ss, "!read nanosec: bad format of '-5'"}}));
    log.clear();
    for (const char *text : {"3s", "0x", "2147483648", "DURATION_INFINITE_NSEC"}) {
        value = {9, 9};
        EXPECT_EQ(
            BRELXmlDuration_getValue(
                element("<d><sec>" + std::string(text) + "</sec><nanosec>1</nanosec></d>"), &value),
            0);
        EXPECT_EQ(value.sec, 9);
        EXPECT_TRUE(log.isExactly({{&ZUV_LOG_BAD_STRING_FORMAT_ss,
                                    std::string("!read sec: bad format of '") + text + "'"}}));
        log.clear();
    }
}

TEST_F(XmlValues, theAttributeEnabledIsOptional)
{
    DDS_Boolean enabled = 7;
    EXPECT_EQ(BRELXmlObject_getEnabledAttribute(element("<e/>"), &enabled), 1);
    EXPECT_EQ(enabled, 7);
    EXPECT_EQ(BRELXmlObject_getEnabledAttribute(element("<e enabled='false'/>"), &enabled), 1);
    EXPECT_EQ(enabled, 0);
    EXPECT_EQ(BRELXmlObject_getEnabledAttribute(element("<e enabled='1'/>"), &enabled), 1);
    EXPECT_EQ(enabled, 1);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(BRELXmlObject_getEnabledAttribute(element("<e enabled='on'/>"), &enabled), 0);
    EXPECT_EQ(enabled, 1);
    EXPECT_TRUE(log.isExactly({{&ZUVXML_LOG_PARSER_UNEXPECTED_ATTRIBUTE_VALUE_FAILURE_ds,
                                "!parse line 2: unexpected attribute value 'on'"}}));
}

TEST_F(XmlValues, childrenThatManyElementsHave)
{
    ZUVXMLUTILSObject *const some = element("<e><x/><domain_id>3</domain_id><enabled>1</enabled>"
                                            "</e>");
    EXPECT_STREQ(ZUVXMLUTILSObject_getText(BRELXmlObject_getDomainId(some)), "3");
    EXPECT_STREQ(ZUVXMLUTILSObject_getText(BRELXmlObject_getEnabled(some)), "1");
    ZUVXMLUTILSObject *const none = element("<e/>");
    EXPECT_EQ(BRELXmlObject_getDomainId(none), nullptr);
    EXPECT_EQ(BRELXmlObject_getEnabled(none), nullptr);
}

TEST_F(XmlValues, entityMonitoringKnowsWhatIsNamed)
{
    BRELCfgFileEntityMonitoring record;
    ASSERT_EQ(BRELCfgFileEntityMonitoring_initialize(&record), 1);
    EXPECT_EQ(record.enabled, 1);
    EXPECT_EQ(record.ignoreInitializationFailure, 0);
    EXPECT_EQ(record.publishStatusPeriod.sec, DDS_DURATION_INFINITE_SEC);
    EXPECT_EQ(record.statsSamplingPeriod.sec, 1);
    EXPECT_EQ(record.statistics.present, 0);

    ASSERT_EQ(BRELCfgFileEntityMonitoring_parse(&record, element("<entity_monitoring/>")), 1);
    EXPECT_EQ(record.enabledPresent + record.pubPeriodPresent + record.statsSamplingPeriodPresent +
                  record.statistics.present,
              0);

    const char *const text =
        "<entity_monitoring><enabled>false</enabled>"
        "<status_publication_period><sec>4</sec></status_publication_period>"
        "<statistics_sampling_period><nanosec>5</nanosec></statistics_sampling_period>"
        "<historical_statistics><one_minute>true</one_minute><up_time>false</up_time>"
        "</historical_statistics></entity_monitoring>";
    ASSERT_EQ(BRELCfgFileEntityMonitoring_parse(&record, element(text)), 1);
    EXPECT_EQ(record.enabled, 0);
    EXPECT_EQ(record.enabledPresent, 1);
    EXPECT_EQ(record.pubPeriodPresent, 1);
    EXPECT_EQ(record.publishStatusPeriod.sec, 4);
    EXPECT_EQ(record.statsSamplingPeriodPresent, 1);
    EXPECT_EQ(record.statsSamplingPeriod.sec, 0);
    EXPECT_EQ(record.statsSamplingPeriod.nanosec, 5U);
    EXPECT_EQ(record.statistics.present, 1);
    EXPECT_EQ(record.statistics.oneMinute.present, 1);
    EXPECT_EQ(record.statistics.oneMinute.enabled, 1);
    EXPECT_EQ(record.statistics.uptime.present, 1);
    EXPECT_EQ(record.statistics.uptime.enabled, 0);
    EXPECT_EQ(record.statistics.fiveSecond.present, 0);

    BRELCfgFileEntityMonitoring copy;
    ASSERT_EQ(BRELCfgFileEntityMonitoring_copy(&copy, &record), 1);
    EXPECT_EQ(copy.statistics.oneMinute.present, 1);
    EXPECT_EQ(copy.publishStatusPeriod.sec, 4);
    BRELCfgFileEntityMonitoring_finalize(&copy);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlValues, aWrongSettingOfEntityMonitoringIsNamedWithItsPlace)
{
    struct Case {
        const char *tag;
        const char *content;
        const ZUVLogMessage *cause;
        const char *causeText;
    };
    const Case cases[] = {
        {"enabled", "x", &ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds,
         "!parse line 4: element <enabled>"},
        {"status_publication_period", "<sec>x</sec>", &ZUV_LOG_BAD_STRING_FORMAT_ss,
         "!read sec: bad format of 'x'"},
        {"statistics_sampling_period", "<nanosec>x</nanosec>", &ZUV_LOG_BAD_STRING_FORMAT_ss,
         "!read nanosec: bad format of 'x'"},
    };
    for (const Case &one : cases) {
        log.clear();
        const std::string tag = one.tag;
        BRELCfgFileEntityMonitoring record;
        BRELCfgFileEntityMonitoring_initialize(&record);
        EXPECT_EQ(BRELCfgFileEntityMonitoring_parse(
                      &record, element("<entity_monitoring>\n\n<" + tag + ">" + one.content + "</" +
                                       tag + "></entity_monitoring>")),
                  0);
        EXPECT_TRUE(log.isExactly(
            {{one.cause, one.causeText},
             {&ZUVXML_LOG_PARSER_PARSE_FAILURE_ds, "!parse line 4: element <" + tag + ">"}}));
    }
    log.clear();
    BRELCfgFileEntityMonitoring record;
    BRELCfgFileEntityMonitoring_initialize(&record);
    EXPECT_EQ(BRELCfgFileEntityMonitoring_parse(
                  &record, element("<entity_monitoring><historical_statistics>"
                                   "<five_second>true</five_second><one_hour>x</one_hour>"
                                   "<up_time>true</up_time></historical_statistics>"
                                   "</entity_monitoring>")),
              0);
    EXPECT_EQ(record.statistics.present, 1);
    EXPECT_EQ(record.statistics.fiveSecond.enabled, 1);
    EXPECT_EQ(record.statistics.oneHour.present, 1);
    EXPECT_EQ(record.statistics.uptime.present, 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, "!parse line 2: element <one_hour>"},
         {&ZUVXML_LOG_PARSER_PARSE_FAILURE_ds, "!parse line 2: element <one_hour>"}}));
}

TEST_F(XmlValues, statisticsDifferInWhatTheRightOnesName)
{
    BRELCfgFileMonitoringStatistics left = {};
    BRELCfgFileMonitoringStatistics right = {};
    left.present = 1;
    left.oneHour = {1, 1};
    EXPECT_EQ(BRELCfgFileMonitoringStatistics_differ(&left, &right), 0);
    right.oneHour = {0, 1};
    EXPECT_EQ(BRELCfgFileMonitoringStatistics_differ(&left, &right), 0);
    right.present = 1;
    EXPECT_EQ(BRELCfgFileMonitoringStatistics_differ(&left, &right), 1);
    right.oneHour.present = 0;
    EXPECT_EQ(BRELCfgFileMonitoringStatistics_differ(&left, &right), 0);
    right.uptime = {1, 1};
    EXPECT_EQ(BRELCfgFileMonitoringStatistics_differ(&left, &right), 1);
    left.uptime.enabled = 1;
    EXPECT_EQ(BRELCfgFileMonitoringStatistics_differ(&left, &right), 0);
}

} // namespace
} // namespace zuv_test
