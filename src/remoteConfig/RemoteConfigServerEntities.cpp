#include "remoteConfig/RemoteConfigServerEntities.hpp"

#include "platform/dds/DomainParticipant.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Publisher.h"
#include "platform/dds/Subscriber.h"
#include "platform/osapi/Utility.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"
#include "remoteConfig/ServerReport.hpp"
#include "remoteConfig/ServiceAdminSupport.h"

namespace
{

using Server = BRELRemoteConfigServer;

constexpr const char *kPoolBufferMaxSizeProperty =
    "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size";

// The QoS records that a start needs for its own time.
struct LocalQos {
    DDS_DomainParticipantQos participant = {};
    DDS_PublisherQos publisher = {};
    DDS_SubscriberQos subscriber = {};

    LocalQos() = default;
    ~LocalQos()
    {
        DDS_DomainParticipantQos_finalize(&participant);
        DDS_PublisherQos_finalize(&publisher);
        DDS_SubscriberQos_finalize(&subscriber);
    }
    LocalQos(const LocalQos &) = delete;
    LocalQos &operator=(const LocalQos &) = delete;
};

bool made(const void *entity, const char *what)
{
    if (entity == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, what);
    }
    return entity != nullptr;
}

bool createParticipant(Server &self, DDS_DomainParticipantQos &qos)
{
    const BRELCfgFileAdministration &cfg = *self._cfg;
    DDS_DomainParticipant *&participant = self._ddsContext._participant;
    if (cfg.sharedParticipantRef == nullptr) {
        participant = BRELRemoteConfigServer_createRemoteAdminParticipant(
            cfg.domainId, &cfg.participantQos, self.brelName, self._serviceKind);
        return made(participant, "participant");
    }
    if (BRELRemoteConfigServer_configureRemoteAdminParticipantQos(
            &qos, &cfg.participantQos, self.brelName, self._serviceKind)) {
        participant = BRELServiceParticipantFactory_assertParticipant(
            self._serviceParticipantFactory, cfg.sharedParticipantRef, cfg.domainId, &qos);
    }
    if (participant == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "configure admin participant QoS");
    }
    return participant != nullptr;
}

bool setTopicQos(BRELRemoteConfigDdsContext &context)
{
    DDS_TopicQos_get_defaultI(&context._topicQos);
    if (DDS_DomainParticipant_set_default_topic_qos(context._participant, &context._topicQos) !=
        DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set default Topic QoS");
        return false;
    }
    return true;
}

// The writer is enabled by hand, once it has its listener; the reader as the configuration says.
bool createGroups(Server &self, LocalQos &qos)
{
    const BRELCfgFileAdministration &cfg = *self._cfg;
    BRELRemoteConfigDdsContext &context = self._ddsContext;
    if (!BREL_SERVER_IS_OK(DDS_PublisherQos_copy(&qos.publisher, &cfg.publisherQos),
                           "copy publisher qos")) {
        return false;
    }
    qos.publisher.entity_factory.autoenable_created_entities = DDS_BOOLEAN_FALSE;
    context._publisher = DDS_DomainParticipant_create_publisher(
        context._participant, &qos.publisher, nullptr, DDS_STATUS_MASK_NONE);
    if (!made(context._publisher, "publisher") ||
        !BREL_SERVER_IS_OK(DDS_SubscriberQos_copy(&qos.subscriber, &cfg.subscriberQos),
                           "copy subscriber qos")) {
        return false;
    }
    context._subscriber = DDS_DomainParticipant_create_subscriber(
        context._participant, &qos.subscriber, nullptr, DDS_STATUS_MASK_NONE);
    return made(context._subscriber, "subscriber");
}

bool copyEndpointQos(Server &self)
{
    BRELRemoteConfigDdsContext &context = self._ddsContext;
    if (!BREL_SERVER_IS_OK(DDS_DataWriterQos_copy(&context._writerQos, &self._cfg->dataWriterQos),
                           "copy dataWriter qos")) {
        return false;
    }
    context._writerQos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    context._writerQos.service.kind = self._serviceKind;
    if (!BREL_SERVER_IS_OK(DDS_DataReaderQos_copy(&context._readerQos, &self._cfg->dataReaderQos),
                           "copy dataReader qos")) {
        return false;
    }
    context._readerQos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    return true;
}

// How much memory the reader keeps for samples.
bool setFastPool(Server &self)
{
    DDS_DataReaderQos &qos = self._ddsContext._readerQos;
    const DDS_Long size = self._cfg->sampleBufferMinSize;
    char text[64];
    if (size == DDS_LENGTH_UNLIMITED) {
        ZUVOsapiUtility_snprintf(text, sizeof(text), "DDS_LENGTH_UNLIMITED");
    } else {
        ZUVOsapiUtility_snprintf(text, sizeof(text), "%d", size);
    }
    if (DDS_PropertyQosPolicyHelper_assert_property(&qos.property, kPoolBufferMaxSizeProperty, text,
                                                    DDS_BOOLEAN_FALSE) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ASSERT_FAILURE_s, "Memory manager fast pool property");
        return false;
    }
    if (size != DDS_LENGTH_UNLIMITED) {
        qos.reader_resource_limits.dynamically_allocate_fragmented_samples = DDS_BOOLEAN_TRUE;
    }
    qos.service.kind = self._serviceKind;
    return true;
}

void chooseNames(Server &self)
{
    const auto orElse = [](const char *name, const char *otherwise) {
        return name != nullptr ? name : otherwise;
    };
    const BRELCfgFileAdministration &cfg = *self._cfg;
    BRELRemoteConfigDdsContext &context = self._ddsContext;
    context.requesTopicName =
        orElse(cfg.requestTopicName, ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME);
    context.replyTopicName = orElse(cfg.replyTopicName, ZUV_SERVICE_ADMIN_COMMAND_REPLY_TOPIC_NAME);
    context.requesTypeName =
        orElse(cfg.requestTypeName, ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name());
    context.replyTypeName =
        orElse(cfg.replyTypeName, ZUV_Service_Admin_CommandReplyTypeSupport_get_type_name());
}

bool succeeded(DDS_ReturnCode_t code, const char *what)
{
    if (code != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_DESTRUCTION_FAILURE_s, what);
    }
    return code == DDS_RETCODE_OK;
}

bool deletePublisher(BRELRemoteConfigDdsContext &context)
{
    if (context._publisher != nullptr) {
        if (!succeeded(DDS_Publisher_delete_contained_entities(context._publisher),
                       "publisher's contained entities") ||
            !succeeded(
                DDS_DomainParticipant_delete_publisher(context._participant, context._publisher),
                "CommandResponse publisher")) {
            return false;
        }
        context._publisher = nullptr;
    }
    return true;
}

bool deleteSubscriber(BRELRemoteConfigDdsContext &context)
{
    if (context._subscriber != nullptr) {
        // The text is the publisher's, and is looked for as it is.
        if (!succeeded(DDS_Subscriber_delete_contained_entities(context._subscriber),
                       "publisher's contained entities") ||
            !succeeded(
                DDS_DomainParticipant_delete_subscriber(context._participant, context._subscriber),
                "CommandRequest subscriber")) {
            return false;
        }
        context._subscriber = nullptr;
    }
    return true;
}

// A shared participant goes back to those who share it.
bool deleteParticipant(Server &self)
{
    DDS_DomainParticipant *&participant = self._ddsContext._participant;
    if (participant == nullptr) {
        return true;
    }
    if (self._cfg->sharedParticipantRef != nullptr) {
        if (!BRELServiceParticipantFactory_deleteParticipant(self._serviceParticipantFactory,
                                                             self._cfg->sharedParticipantRef)) {
            BREL_SERVER_FAILURE(&ZUV_LOG_DESTRUCTION_FAILURE_s, "participant");
            return false;
        }
    } else if (!succeeded(DDS_DomainParticipant_delete_contained_entities(participant),
                          "participant contained entities") ||
               !succeeded(DDS_DomainParticipantFactory_delete_participant(
                              DDS_DomainParticipantFactory_get_instance(), participant),
                          "participant")) {
        return false;
    }
    participant = nullptr;
    return true;
}

} // namespace

namespace brel
{

Outcome createServerEntities(BRELRemoteConfigServer &server)
{
    LocalQos qos;
    if (DDS_DomainParticipantQos_initialize(&qos.participant) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_INITIALIZE_TEMPLATE, "Participant QoS");
        return Outcome::kFailed;
    }
    if (!createParticipant(server, qos.participant) || !setTopicQos(server._ddsContext) ||
        !createGroups(server, qos) || !copyEndpointQos(server)) {
        return Outcome::kFailed;
    }
    if (!setFastPool(server)) {
        return Outcome::kFailedForGood;
    }
    chooseNames(server);
    return Outcome::kDone;
}

bool deleteServerEntities(BRELRemoteConfigServer &server)
{
    BRELRemoteConfigDdsContext &context = server._ddsContext;
    if (!deletePublisher(context) || !deleteSubscriber(context) || !deleteParticipant(server)) {
        return false;
    }
    DDS_DataReaderQos_finalize(&context._readerQos);
    DDS_DataWriterQos_finalize(&context._writerQos);
    DDS_TopicQos_finalize(&context._topicQos);
    return true;
}

} // namespace brel
