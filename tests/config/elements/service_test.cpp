// The record of a service and of its sections: defaults, what a document says, updates, copies, lookups, failures.
#include <cinttypes>
#include <thread>

#include <sched.h>
#include <unistd.h>

#include "config/CfgFileService.h"
#include "config/xml/ConfigTest.h"
#include "platform/osapi/Host.h"
#include "platform/osapi/Process.h"
#include "platform/osapi/Utility.h"
#include "platform/typesys/String.h"
#include "support/FaultSweep.h"

namespace zuv_test
{
namespace
{

std::string defaultGroupName()
{
    char host[256] = "";
    const std::string process = std::to_string(ZUVOsapiProcess_getId());
    if (ZUVOsapiHost_getHostName(host, sizeof(host)) && std::string(host) != "localhost") {
        return "ZUV_BrelService_" + std::string(host) + "_" + process;
    }
    return "ZUV_BrelService__" + std::to_string(ZUVOsapiHost_getId()) + "_" + process;
}

std::string textOf(const DDS_Property_t *property)
{
    return property != nullptr ? property->value : "(none)";
}

class ServiceElement : public ConfigTest
{
protected:
    // The service "S" with this content.
    BRELCfgFileService *loadService(const std::string &content, const std::string &attributes = "")
    {
        makeParser(unchecked);
        EXPECT_EQ(load(parser, "<dds>\n<brel_service name='S' " + attributes + ">\n" + content +
                                   "</brel_service></dds>"),
                  1)
            << testing::PrintToString(log.texts());
        return BRELCfgFileParser_loadService(parser.get(), "S");
    }
    // Whether the content is refused, and told so by this chain's beginning.
    bool isRefused(const std::string &content) { return loadService(content) == nullptr; }

    // Change the service as an engine does; -1 when it is not applied, else what `updated` is set to.
    int update(BRELCfgFileService *service, const std::string &content, int updated = 7)
    {
        ZUVXMLUTILSObject *const object = BRELCfgFileParser_parseUpdate(
            parser.get(), service->xmlObject,
            ("<brel_service name='S'>" + content + "</brel_service>").c_str());
        if (object == nullptr) {
            return -1;
        }
        const int isApplied = BRELCfgFileService_update(
            &updated, service,
            static_cast<BRELCfgFileService *>(ZUVXMLUTILSObject_getUserData(object)));
        BRELCfgFileParser_deleteEntity(parser.get(), object);
        return isApplied ? updated : -1;
    }
};

// -- The service itself ----------------------------------------------------------------------------------------

TEST_F(ServiceElement, hasDefaults)
{
    const BRELCfgFileService *const service = loadService("");
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(service->enabled, 1);
    EXPECT_EQ(service->groupName, defaultGroupName());
    EXPECT_EQ(service->internalClock, nullptr);
    EXPECT_EQ(service->sourceFile, nullptr);
    EXPECT_EQ(service->is_save_enabled, 0);
    EXPECT_EQ(service->libraryProperty, &unchecked);
    EXPECT_EQ(service->administration.enabled, 0);
    EXPECT_EQ(service->monitoring.enabled, 0);
    EXPECT_EQ(service->jvm.dll, nullptr);
    EXPECT_EQ(DDS_StringSeq_get_length(&service->jvm.classPath), 0);
    EXPECT_EQ(DDS_StringSeq_get_length(&service->jvm.options), 0);
    EXPECT_EQ(BRELCfgFileService_narrow(service->xmlObject), service);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(ServiceElement, readsItsAttributesAndItsClock)
{
    const BRELCfgFileService *const service =
        loadService("<internal_clock>monotonic</internal_clock>", "group_name='G' enabled='false'");
    ASSERT_NE(service, nullptr);
    EXPECT_STREQ(service->groupName, "G");
    EXPECT_EQ(service->enabled, 0);
    EXPECT_STREQ(service->internalClock, "monotonic");
}

TEST_F(ServiceElement, refusesWhatItCannotRead)
{
    EXPECT_TRUE(isRefused("\n<internal_clock/>"));
    EXPECT_TRUE(log.holds(
        {{&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE, "!parse: Error at line=4 for tag=internal_clock"},
         {&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE, "!parse: Error at line=2 for tag=brel_service"},
         {&ZUV_LOG_INIT_FAILURE_s, "!initialize BRELCfgFileSession object"}}))
        << testing::PrintToString(log.texts());
    for (const char *content :
         {"<administration><enabled>perhaps</enabled></administration>",
          "<administration><domain_id>x</domain_id></administration>",
          "<administration><memory_management><sample_buffer_min_size>x</sample_buffer_min_size>"
          "</memory_management></administration>",
          "<administration><datareader_qos><reliability><kind>x</kind></reliability>"
          "</datareader_qos></administration>",
          "<administration><distributed_logger><queue_size>x</queue_size></distributed_logger>"
          "</administration>",
          "<monitoring><status_publication_period><sec>x</sec></status_publication_period>"
          "</monitoring>",
          "<monitoring><historical_statistics><up_time>x</up_time></historical_statistics>"
          "</monitoring>",
          "<entity_monitoring><enabled>x</enabled></entity_monitoring>"}) {
        SCOPED_TRACE(content);
        log.clear();
        EXPECT_TRUE(isRefused(content));
        EXPECT_TRUE(log.holds(
            {{&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE, "!parse: Error at line=2 for tag=brel_service"}}))
            << testing::PrintToString(log.texts());
    }
    log.clear();
    EXPECT_EQ(loadService("", "group_name='" + std::string(256, 'g') + "'"), nullptr);
    EXPECT_NE(loadService("", "group_name='" + std::string(255, 'g') + "'"), nullptr);
}

TEST_F(ServiceElement, standsInADocumentAlone)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, "<other><brel_service name='S'/></other>"), 0);
    EXPECT_TRUE(log.holds({{&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE,
                            "!parse: Error at line=1 for tag=brel_service: invalid parent"},
                           {&ZUV_LOG_INIT_FAILURE_s, "!initialize BRELCfgFileSession object"}}))
        << testing::PrintToString(log.texts());
}

TEST_F(ServiceElement, aGroupWithoutANameIsNamedAfterHostAndProcess)
{
    char name[256] = "";
    ASSERT_EQ(BRELCfgFileService_getDefaultServiceName(name, 255), 1);
    EXPECT_EQ(name, defaultGroupName());
    // No room for the host's name: its number.
    const std::string process = std::to_string(ZUVOsapiProcess_getId());
    const std::string numbered =
        "ZUV_BrelService__" + std::to_string(ZUVOsapiHost_getId()) + "_" + process;
    if (numbered.size() < defaultGroupName().size()) {
        ASSERT_EQ(BRELCfgFileService_getDefaultServiceName(name, static_cast<int>(numbered.size())),
                  1);
        EXPECT_EQ(name, numbered);
    }
    const int least = static_cast<int>(16 + process.size());
    EXPECT_EQ(BRELCfgFileService_getDefaultServiceName(name, least), 0);
    EXPECT_EQ(BRELCfgFileService_getDefaultServiceName(name, least - 1), 0);
    EXPECT_EQ(BRELCfgFileService_getDefaultServiceName(nullptr, 255), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILED_TO_GET_TEMPLATE, "!get default service name"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s,
          "!meet precondition: \"outputMaxLength < (sizeof(\\\"ZUV_BrelService_\\\") - 1) + "
          "strlen(appId)\""},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: \"output == ((void *)0)\""}}))
        << testing::PrintToString(log.texts());
}

// The system's name of this machine for the calling thread alone; false where that is not permitted.
bool callThisMachine(const std::string &name)
{
    return unshare(CLONE_NEWUTS) == 0 && sethostname(name.c_str(), name.size()) == 0;
}

TEST_F(ServiceElement, aGroupIsNamedAfterAHostThatHasANameOfItsOwn)
{
    const std::string process = std::to_string(ZUVOsapiProcess_getId());
    const std::string numbered =
        "ZUV_BrelService__" + std::to_string(ZUVOsapiHost_getId()) + "_" + process;
    const auto nameOn = [](const std::string &host) {
        char name[256] = "";
        std::thread([&] {
            if (callThisMachine(host)) {
                EXPECT_EQ(BRELCfgFileService_getDefaultServiceName(name, 255), 1);
            }
        }).join();
        return std::string(name);
    };
    const std::string onAlpha = nameOn("alpha");
    if (!onAlpha.empty()) {
        EXPECT_EQ(onAlpha, "ZUV_BrelService_alpha_" + process);
        EXPECT_EQ(nameOn("localhost"), numbered);
        EXPECT_EQ(nameOn("127.0.0.1"), numbered);
        EXPECT_EQ(nameOn("localhosts"), "ZUV_BrelService_localhosts_" + process);
    }
    char name[256] = "";
    ZUVOsapiFault_arm("host.name", 1, 0);
    EXPECT_EQ(BRELCfgFileService_getDefaultServiceName(name, 255), 1);
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(name, numbered);
}

TEST_F(ServiceElement, itsParticipantsTellTheirGroupUnlessTheyTellAnother)
{
    const BRELCfgFileService *const service =
        loadService("<monitoring><participant_qos><property><value><element>"
                    "<name>zuv.brel_service.group_name</name><value>mine</value>"
                    "</element></value></property></participant_qos></monitoring>",
                    "group_name='G'");
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    const DDS_Property_t *const property = DDS_PropertyQosPolicyHelper_lookup_property(
        &service->administration.participantQos.property, BREL_SERVICE_GROUP_NAME_PROPERTY_NAME);
    EXPECT_EQ(textOf(property), "G");
    EXPECT_EQ(property->propagate, 1);
    EXPECT_EQ(
        textOf(DDS_PropertyQosPolicyHelper_lookup_property(
            &service->monitoring.participantQos.property, BREL_SERVICE_GROUP_NAME_PROPERTY_NAME)),
        "mine");
}

// -- When monitoring is on -------------------------------------------------------------------------------------

TEST_F(ServiceElement, monitoringComesWithAdministration)
{
    const BRELCfgFileService *const service =
        loadService("<administration><domain_id>3</domain_id></administration>");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->administration.enabled, 1);
    EXPECT_EQ(service->monitoring.enabled, 1);
    EXPECT_EQ(service->monitoring.domainId, 3);
    EXPECT_EQ(service->entityMonitoring.enabled, 1);
}

TEST_F(ServiceElement, monitoringStaysOffWhenItSaysSo)
{
    const std::string content = "<administration><domain_id>3</domain_id></administration>"
                                "<monitoring><enabled>false</enabled></monitoring>";
    const BRELCfgFileService *service = loadService(content);
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->monitoring.enabled, 0);
    EXPECT_EQ(service->entityMonitoring.enabled, 0) << "it inherits";

    unchecked.enable_monitoring = DDS_BOOLEAN_TRUE;
    unchecked.monitoring_domain_id = 5;
    service = loadService(content);
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->monitoring.enabled, 1);
    EXPECT_EQ(service->monitoring.domainId, 5);
}

TEST_F(ServiceElement, monitoringComesWithAdministrationThatTheStartAskedFor)
{
    unchecked.enable_administration = DDS_BOOLEAN_TRUE;
    unchecked.administration_domain_id = 9;
    const BRELCfgFileService *const service = loadService("");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->monitoring.enabled, 1);
    EXPECT_EQ(service->monitoring.domainId, 9);
}

TEST_F(ServiceElement, administrationMayBeTurnedOffInItsSection)
{
    const BRELCfgFileService *const service =
        loadService("<administration><enabled>false</enabled></administration>");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->administration.enabled, 0);
    EXPECT_EQ(service->monitoring.enabled, 0);
}

// -- Administration --------------------------------------------------------------------------------------------

TEST_F(ServiceElement, administrationHasDefaults)
{
    BRELCfgFileAdministration admin;
    ASSERT_EQ(BRELCfgFileAdministration_initialize(&admin), 1);
    EXPECT_EQ(admin.enabled, 0);
    EXPECT_EQ(admin.domainId, 0);
    EXPECT_EQ(admin.savePath, nullptr);
    EXPECT_EQ(admin.sampleBufferMinSize, 32768);
    EXPECT_EQ(admin.sharedParticipantRef, nullptr);
    EXPECT_EQ(admin.requestTopicName, nullptr);
    EXPECT_EQ(admin.distLogOptions, nullptr);
    EXPECT_EQ(admin.dataReaderQos.history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(admin.dataReaderQos.resource_limits.max_samples, 32);
    const DDS_DataWriterQos &writer = admin.dataWriterQos;
    EXPECT_EQ(writer.history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(writer.resource_limits.max_samples, 32);
    EXPECT_EQ(writer.reliability.max_blocking_time.sec, 60);
    EXPECT_EQ(writer.reliability.max_blocking_time.nanosec, 0U);
    const DDS_RtpsReliableWriterProtocol_t &protocol = writer.protocol.rtps_reliable_writer;
    EXPECT_EQ(protocol.max_heartbeat_retries, DDS_LENGTH_UNLIMITED);
    for (const DDS_Duration_t &period : {protocol.heartbeat_period, protocol.fast_heartbeat_period,
                                         protocol.late_joiner_heartbeat_period}) {
        EXPECT_EQ(period.sec, 0);
        EXPECT_EQ(period.nanosec, 100000000U);
    }
    EXPECT_EQ(protocol.heartbeats_per_max_samples, 4);
    EXPECT_TRUE(DDS_Duration_is_zero(&protocol.min_nack_response_delay));
    EXPECT_TRUE(DDS_Duration_is_zero(&protocol.max_nack_response_delay));
    EXPECT_EQ(protocol.min_send_window_size, 32);
    EXPECT_EQ(protocol.max_send_window_size, 32);
    BRELCfgFileAdministration_finalize(&admin);
    BRELCfgFileAdministration_finalize(&admin);
}

TEST_F(ServiceElement, administrationReadsAllItsSettings)
{
    const BRELCfgFileService *const service = loadService(
        "<administration shared_participant_ref='shared'><domain_id>4</domain_id>"
        "<save_path>/a/b.xml</save_path><save_on_update>true</save_on_update>"
        "<memory_management><sample_buffer_min_size>5000</sample_buffer_min_size>"
        "<sample_buffer_trim_to_size>true</sample_buffer_trim_to_size></memory_management>"
        "<reuse_monitoring_participant>true</reuse_monitoring_participant>"
        "<request_topic>a</request_topic><reply_topic>b</reply_topic>"
        "<request_type_name>c</request_type_name><reply_type_name>d</reply_type_name>"
        "<participant_qos><participant_name><name>P</name></participant_name></participant_qos>"
        "<publisher_qos><partition><name><element>x</element></name></partition></publisher_qos>"
        "<subscriber_qos><partition><name><element>y</element></name></partition>"
        "</subscriber_qos>"
        "<distributed_logger><queue_size>7</queue_size></distributed_logger>"
        "</administration>");
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    const BRELCfgFileAdministration &admin = service->administration;
    EXPECT_EQ(admin.domainId, 4);
    EXPECT_STREQ(admin.savePath, "/a/b.xml");
    EXPECT_EQ(admin.autosaveOnUpdate, 1);
    EXPECT_EQ(admin.sampleBufferMinSize, 5000);
    EXPECT_EQ(admin.sampleBufferTrimToSize, 1);
    EXPECT_EQ(admin.reuseMonitoringParticipant, 1);
    EXPECT_STREQ(admin.sharedParticipantRef, "shared") << "what the attribute says stays";
    EXPECT_STREQ(admin.requestTopicName, "a");
    EXPECT_STREQ(admin.replyTopicName, "b");
    EXPECT_STREQ(admin.requestTypeName, "c");
    EXPECT_STREQ(admin.replyTypeName, "d");
    EXPECT_STREQ(admin.participantQos.participant_name.name, "P");
    EXPECT_EQ(DDS_StringSeq_get_length(&admin.publisherQos.partition.name), 1);
    EXPECT_EQ(DDS_StringSeq_get_length(&admin.subscriberQos.partition.name), 1);
    ASSERT_NE(admin.distLogOptions, nullptr);
    EXPECT_EQ(admin.distLogOptions->queueSize, 7);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(ServiceElement, theParticipantOfMonitoringIsSharedOnRequest)
{
    const BRELCfgFileService *const service =
        loadService("<administration><reuse_monitoring_participant>true"
                    "</reuse_monitoring_participant></administration>");
    ASSERT_NE(service, nullptr);
    EXPECT_STREQ(service->administration.sharedParticipantRef,
                 "zuv.brelservice.monitoring.participant");
    EXPECT_STREQ(service->monitoring.sharedParticipantRef,
                 "zuv.brelservice.monitoring.participant");
}

TEST_F(ServiceElement, aSmallBufferIsEnlargedWithAWarning)
{
    masks.set(kWarnings);
    const auto sizeOf = [this](const char *text) {
        log.clear();
        const BRELCfgFileService *const service = loadService(
            "<administration><memory_management>\n<sample_buffer_min_size>" + std::string(text) +
            "</sample_buffer_min_size></memory_management></administration>");
        return service != nullptr ? service->administration.sampleBufferMinSize : 0;
    };
    const auto isWarned = [this] {
        return log.holds({{&BREL_LOG_XML_MIN_ALLOWED_INT_WARNING_sd,
                           "parse warning at line 4: value is too small; minimum allowed "
                           "value=4096"}});
    };
    EXPECT_EQ(sizeOf("LENGTH_UNLIMITED"), 0x7fffffff);
    EXPECT_FALSE(isWarned());
    EXPECT_EQ(sizeOf("4096"), 4096);
    EXPECT_FALSE(isWarned());
    EXPECT_EQ(sizeOf("4095"), 4096);
    EXPECT_TRUE(isWarned());
    EXPECT_EQ(sizeOf("0"), 4096);
    EXPECT_TRUE(isWarned());
}

TEST_F(ServiceElement, endpointsKeepTheirDefaultsWhereTheirQosSaysNothing)
{
    const BRELCfgFileService *const service = loadService(
        "<administration><datareader_qos><resource_limits><max_samples>5</max_samples>"
        "</resource_limits></datareader_qos><datawriter_qos><reliability><max_blocking_time>"
        "<sec>1</sec><nanosec>0</nanosec></max_blocking_time></reliability></datawriter_qos>"
        "</administration>");
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    const BRELCfgFileAdministration &admin = service->administration;
    EXPECT_EQ(admin.dataReaderQos.resource_limits.max_samples, 5);
    EXPECT_EQ(admin.dataReaderQos.history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(admin.dataWriterQos.reliability.max_blocking_time.sec, 1);
    EXPECT_EQ(admin.dataWriterQos.history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(admin.dataWriterQos.protocol.rtps_reliable_writer.max_send_window_size, 32);
    // Nothing of how that was done is left.
    const ZUVXMLUTILSObject *const section =
        ZUVXMLUTILSObject_getFirstChildWithTag(service->xmlObject, "administration");
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(
                  ZUVXMLUTILSObject_getFirstChildWithTag(section, "datareader_qos")),
              nullptr);
    EXPECT_EQ(saved(parser).find("base_name"), std::string::npos);
}

TEST_F(ServiceElement, endpointsThatNameABaseHaveAllFromThere)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser,
                   "<dds><qos_library name='L'><qos_profile name='P'><datareader_qos>"
                   "<resource_limits><max_samples>77</max_samples></resource_limits>"
                   "</datareader_qos></qos_profile></qos_library>"
                   "<brel_service name='S'><administration>"
                   "<datareader_qos base_name='L::P'/></administration></brel_service></dds>"),
              1);
    const BRELCfgFileService *const service = BRELCfgFileParser_loadService(parser.get(), "S");
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(service->administration.dataReaderQos.resource_limits.max_samples, 77);
    EXPECT_EQ(service->administration.dataReaderQos.history.kind, DDS_KEEP_LAST_HISTORY_QOS);
}

// -- Monitoring ------------------------------------------------------------------------------------------------

TEST_F(ServiceElement, monitoringHasDefaultsAndReadsItsSettings)
{
    const BRELCfgFileService *service = loadService("");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->monitoring.publishStatusPeriod.sec, 5);
    EXPECT_EQ(service->monitoring.statsSamplingPeriod.sec, 1);
    EXPECT_EQ(service->monitoring.ignoreInitializationFailure, 1);
    EXPECT_EQ(service->monitoring.statistics.present, 0);
    EXPECT_EQ(service->monitoring.participantQos.resource_limits.type_code_max_serialized_length,
              4096);
    EXPECT_EQ(service->monitoring.xmlMonitoring, nullptr);

    service = loadService("<monitoring><domain_id>6</domain_id>"
                          "<ignore_initialization_failure>false</ignore_initialization_failure>"
                          "<status_publication_period><sec>2</sec></status_publication_period>"
                          "<statistics_sampling_period><sec>3</sec></statistics_sampling_period>"
                          "<historical_statistics><one_hour>true</one_hour></historical_statistics>"
                          "</monitoring>");
    ASSERT_NE(service, nullptr);
    const BRELCfgFileMonitoring &monitoring = service->monitoring;
    EXPECT_EQ(monitoring.enabled, 1);
    EXPECT_EQ(monitoring._enabledPresent, 0);
    EXPECT_EQ(monitoring.domainId, 6);
    EXPECT_EQ(monitoring.ignoreInitializationFailure, 0);
    EXPECT_EQ(monitoring.publishStatusPeriod.sec, 2);
    EXPECT_EQ(monitoring.statsSamplingPeriod.sec, 3);
    EXPECT_EQ(monitoring.statistics.present, 1);
    EXPECT_EQ(monitoring.statistics.oneHour.present, 0);
    EXPECT_EQ(monitoring.statistics.oneHour.enabled, 1);
    EXPECT_EQ(monitoring.statistics.oneMinute.present, 1);
    EXPECT_EQ(monitoring.statistics.oneMinute.enabled, 0);
    // The service as an entity has them too, but does not state them.
    EXPECT_EQ(service->entityMonitoring.publishStatusPeriod.sec, 2);
    EXPECT_EQ(service->entityMonitoring.statsSamplingPeriod.sec, 3);
    EXPECT_EQ(service->entityMonitoring.statistics.oneHour.enabled, 1);
    EXPECT_EQ(service->entityMonitoring.statistics.present, 0);
    EXPECT_EQ(service->entityMonitoring.ignoreInitializationFailure, 0);
}

TEST_F(ServiceElement, theWritersOfMonitoringHaveTheirQosByTopic)
{
    const BRELCfgFileService *service = loadService("");
    DDS_DataWriterQos qos;
    ASSERT_EQ(DDS_DataWriterQos_initialize(&qos), DDS_RETCODE_OK);
    qos.resource_limits.max_samples = 3;
    EXPECT_EQ(BRELCfgFileMonitoring_getDataWriterQos(&service->monitoring, &qos, "t"), 1);
    EXPECT_EQ(qos.resource_limits.max_samples, 3) << "there is no section";

    service = loadService("<monitoring><datawriter_qos><resource_limits><max_samples>8"
                          "</max_samples></resource_limits></datawriter_qos></monitoring>");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(BRELCfgFileMonitoring_getDataWriterQos(&service->monitoring, &qos, "t"), 1);
    EXPECT_EQ(qos.resource_limits.max_samples, 8);
    DDS_DataWriterQos_finalize(&qos);
}

TEST_F(ServiceElement, entitiesInheritMonitoringWhereTheyStateNothing)
{
    BRELCfgFileMonitoring monitoring;
    ASSERT_EQ(BRELCfgFileMonitoring_initialize(&monitoring), 1);
    monitoring.enabled = 0;
    monitoring.publishStatusPeriod = {8, 0};
    monitoring.statsSamplingPeriod = {9, 0};
    monitoring.statistics.present = monitoring.statistics.uptime.enabled = 1;
    BRELCfgFileEntityMonitoring entity;
    BRELCfgFileEntityMonitoring_initialize(&entity);
    BRELCfgFileMonitoring_configureEntityMonitoring(&monitoring, &entity);
    EXPECT_EQ(entity.enabled, 0);
    EXPECT_EQ(entity.publishStatusPeriod.sec, 8);
    EXPECT_EQ(entity.statsSamplingPeriod.sec, 9);
    EXPECT_EQ(entity.statistics.present, 1);
    EXPECT_EQ(entity.statistics.uptime.enabled, 1);
    EXPECT_EQ(entity.ignoreInitializationFailure, 1);

    BRELCfgFileEntityMonitoring_initialize(&entity);
    entity.pubPeriodPresent = entity.statistics.present = entity.enabledPresent = 1;
    BRELCfgFileMonitoring_configureEntityMonitoring(&monitoring, &entity);
    EXPECT_EQ(entity.enabled, 1);
    EXPECT_TRUE(DDS_Duration_is_infinite(&entity.publishStatusPeriod));
    EXPECT_EQ(entity.statsSamplingPeriod.sec, 1) << "its own default";
    EXPECT_EQ(entity.statistics.uptime.enabled, 0);
    BRELCfgFileMonitoring_finalize(&monitoring);
}

// -- The Java virtual machine ----------------------------------------------------------------------------------

TEST_F(ServiceElement, theListsOfTheJvmHaveTheTextsOfTheirElements)
{
    const BRELCfgFileService *const service = loadService(
        "<jvm><dll>jvm.so</dll><class_path><element>a</element><other/>"
        "<element>b</element></class_path><options><element>-x</element></options></jvm>");
    ASSERT_NE(service, nullptr);
    EXPECT_STREQ(service->jvm.dll, "jvm.so");
    ASSERT_EQ(DDS_StringSeq_get_length(&service->jvm.classPath), 2);
    EXPECT_STREQ(DDS_StringSeq_get(&service->jvm.classPath, 1), "b");
    ASSERT_EQ(DDS_StringSeq_get_length(&service->jvm.options), 1);
    EXPECT_STREQ(DDS_StringSeq_get(&service->jvm.options, 0), "-x");
}

// -- Updates and copies ----------------------------------------------------------------------------------------

TEST_F(ServiceElement, anUpdateChangesWhereAndWhetherItIsSaved)
{
    BRELCfgFileService *const service =
        loadService("<administration><save_path>a</save_path></administration>"
                    "<domain_route name='dr'/>");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(update(service, "<administration><save_path>a</save_path></administration>"), 0)
        << "the same";
    EXPECT_EQ(update(service, "<administration><save_path>A</save_path></administration>", 0), 1);
    EXPECT_STREQ(service->administration.savePath, "A");
    EXPECT_EQ(
        update(service, "<administration><save_on_update>true</save_on_update></administration>"),
        1);
    EXPECT_EQ(service->administration.autosaveOnUpdate, 1);
    EXPECT_STREQ(service->administration.savePath, "A");
    EXPECT_EQ(update(service, "<monitoring><domain_id>3</domain_id></monitoring>"), 0);
    const std::string text = saved(parser);
    EXPECT_NE(text.find("<save_path>A</save_path>"), std::string::npos) << text;
    EXPECT_NE(text.find("<save_on_update>true</save_on_update>"), std::string::npos) << text;
    EXPECT_LT(text.find("<monitoring>"), text.find("<domain_route")) << text;
    EXPECT_TRUE(log.isEmpty()) << testing::PrintToString(log.texts());
}

TEST_F(ServiceElement, anUpdateLeavesTheDefaultOfMonitoringAlone)
{
    BRELCfgFileService *const service =
        loadService("<monitoring><enabled>false</enabled></monitoring>");
    ASSERT_NE(service, nullptr);
    ZUVXMLUTILSObject *const object = BRELCfgFileParser_parseUpdate(
        parser.get(), service->xmlObject,
        "<brel_service name='S'><administration><domain_id>3</domain_id></administration>"
        "</brel_service>");
    ASSERT_NE(object, nullptr);
    const auto *const changed =
        static_cast<const BRELCfgFileService *>(ZUVXMLUTILSObject_getUserData(object));
    EXPECT_EQ(changed->administration.enabled, 1);
    EXPECT_EQ(changed->monitoring.enabled, 0);
    BRELCfgFileParser_deleteEntity(parser.get(), object);
}

TEST_F(ServiceElement, anUpdateIsACopyOfItsTargetWithWhatItSaysOverIt)
{
    BRELCfgFileService *const service = loadService(
        "<administration><domain_id>3</domain_id><reply_topic>r</reply_topic></administration>"
        "<monitoring><publisher_qos><partition><name><element>x</element></name></partition>"
        "</publisher_qos></monitoring><jvm><options><element>o</element></options></jvm>",
        "group_name='G' enabled='false'");
    ASSERT_NE(service, nullptr);
    DDS_String_replace(&service->sourceFile, "file");
    ZUVXMLUTILSObject *const object = BRELCfgFileParser_parseUpdate(
        parser.get(), service->xmlObject,
        "<brel_service name='S'><monitoring><domain_id>4</domain_id><publisher_qos/></monitoring>"
        "</brel_service>");
    ASSERT_NE(object, nullptr) << testing::PrintToString(log.texts());
    const auto *const changed =
        static_cast<const BRELCfgFileService *>(ZUVXMLUTILSObject_getUserData(object));
    EXPECT_EQ(changed->enabled, 0);
    EXPECT_STREQ(changed->groupName, "G");
    EXPECT_STREQ(changed->sourceFile, "file");
    EXPECT_STREQ(changed->administration.replyTopicName, "r");
    EXPECT_EQ(changed->monitoring.domainId, 4);
    EXPECT_EQ(DDS_StringSeq_get_length(&changed->monitoring.publisherQos.partition.name), 1)
        << "it inherits from what runs";
    EXPECT_EQ(DDS_StringSeq_get_length(&changed->jvm.options), 1);
    BRELCfgFileParser_deleteEntity(parser.get(), object);
}

// -- Lookups ---------------------------------------------------------------------------------------------------

TEST_F(ServiceElement, findsItsEntitiesByKindAndName)
{
    BRELCfgFileService *const service = loadService(
        "<entity_monitoring/><domain_route name='a'><participant name='p'/><connection name='c'/>"
        "<session name='s'><topic_route name='t'/><auto_topic_route name='u'/></session>"
        "</domain_route><domain_route name='b'/>");
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    const auto at = [&](const char *name) -> const void * {
        return ZUVXMLUTILSObject_getUserData(ZUVXMLUTILSObject_lookUp(service->xmlObject, name));
    };
    EXPECT_EQ(BRELCfgFileService_findDomainRoute(service, "a"), at("a"));
    EXPECT_EQ(BRELCfgFileService_findAbstractConnection(service, "a::p"), at("a::p"));
    EXPECT_EQ(BRELCfgFileService_findAbstractConnection(service, "a::c"), at("a::c"));
    EXPECT_EQ(BRELCfgFileService_findSession(service, "a::s"), at("a::s"));
    EXPECT_EQ(BRELCfgFileService_findTopicRoute(service, "a::s::t"), at("a::s::t"));
    EXPECT_EQ(BRELCfgFileService_findAutoTopicRoute(service, "a::s::u"), at("a::s::u"));
    EXPECT_EQ(BRELCfgFileService_findSession(service, "a::s::t"), nullptr);
    EXPECT_EQ(BRELCfgFileService_findTopicRoute(service, "a::s::u"), nullptr);
    EXPECT_EQ(BRELCfgFileService_findDomainRoute(service, "none"), nullptr);

    const BRELCfgFileDomainRoute *const first = BRELCfgFileService_getFirstDomainRoute(service);
    EXPECT_EQ(first, at("a"));
    const BRELCfgFileDomainRoute *const second =
        BRELCfgFileService_getNextDomainRoute(service, first);
    EXPECT_EQ(second, at("b"));
    EXPECT_EQ(BRELCfgFileService_getNextDomainRoute(service, second), nullptr);
    EXPECT_EQ(BRELCfgFileService_narrow(ZUVXMLUTILSObject_lookUp(service->xmlObject, "a")),
              nullptr);
    EXPECT_TRUE(log.isEmpty());
}

// -- Failures --------------------------------------------------------------------------------------------------

TEST_F(ServiceElement, nullIsAFailedPrecondition)
{
    BRELCfgFileService service = {};
    int updated = 0;
    EXPECT_EQ(BRELCfgFileService_new(nullptr, nullptr), nullptr);
    EXPECT_EQ(BRELCfgFileService_initialize(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(BRELCfgFileService_parse(&service, nullptr), 0);
    EXPECT_EQ(BRELCfgFileService_update(&updated, &service, nullptr), 0);
    EXPECT_EQ(BRELCfgFileService_copy(&service, nullptr), nullptr);
    BRELCfgFileService_delete(nullptr);
    EXPECT_EQ(BRELCfgFileService_getNextDomainRoute(&service, nullptr), nullptr);
    EXPECT_EQ(BRELCfgFileAdministration_parse(&service.administration, nullptr), 0);
    EXPECT_EQ(BRELCfgFileMonitoring_parse(&service.monitoring, nullptr), 0);
    EXPECT_EQ(BRELCfgFileJvm_parse(&service.jvm, nullptr), 0);
    BRELCfgFileMonitoring_configureEntityMonitoring(&service.monitoring, nullptr);
    EXPECT_EQ(BRELCfgFileMonitoring_getDataWriterQos(&service.monitoring, nullptr, "t"), 0);
    std::vector<std::string> conditions;
    for (const std::string &text : log.texts()) {
        conditions.push_back(text.substr(text.find('"')));
    }
    const auto isNull = [](const char *name) {
        return "\"" + std::string(name) + " == ((void *)0)\"";
    };
    EXPECT_EQ(conditions, (std::vector{isNull("xmlSupport"), isNull("self"), isNull("xmlService"),
                                       isNull("newCfg"), isNull("src"), isNull("object"),
                                       isNull("xmlAutoRoute"), isNull("xmlAdministration"),
                                       isNull("xmlMonitoring"), isNull("xmlJvm"),
                                       isNull("entityMonitoring"), isNull("qos")}));
}

TEST_F(ServiceElement, bearsTheFailureOfAnyAllocation)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, "<dds><brel_service name='S' group_name='G'>"
                           "<administration shared_participant_ref='x'><save_path>a</save_path>"
                           "<distributed_logger/><request_topic>t</request_topic></administration>"
                           "<jvm><dll>d</dll><options><element>o</element></options></jvm>"
                           "</brel_service></dds>"),
              1);
    BRELCfgFileService *const service = BRELCfgFileParser_loadService(parser.get(), "S");
    ASSERT_NE(service, nullptr);
    for (std::uint32_t count = 1;; ++count) {
        const HeapCheck heap;
        log.clear();
        BRELCfgFileService copy = {};
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const bool isMade =
            BRELCfgFileService_initialize(&copy, parser.get(), service->xmlObject) != 0;
        const bool isCopied = isMade && BRELCfgFileService_copy(&copy, service) != nullptr;
        const bool isInjected = ZUVOsapiFault_getInjectedCount() != 0;
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(isCopied || isInjected);
        EXPECT_TRUE(isCopied || !log.texts().empty()) << count;
        if (isMade) {
            BRELCfgFileService_finalize(&copy);
        }
        EXPECT_TRUE(heap.isBalanced()) << count;
        if (!isInjected) {
            EXPECT_GT(count, 20U);
            break;
        }
    }
}

} // namespace
} // namespace zuv_test
