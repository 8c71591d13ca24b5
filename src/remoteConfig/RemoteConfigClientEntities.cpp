// The DDS entities of a remote configuration client: made in one go, deleted in one go.

#include "config/Utils.h"
#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/dds/DomainParticipant.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Publisher.h"
#include "platform/osapi/Utility.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"

namespace
{

// Serialized samples above this size get memory of their own when they come, so that a reply of any length
// can be received while little memory is held.
constexpr int kPoolBufferMaxSize = 32768;
constexpr const char *kPoolBufferMaxSizeProperty =
    "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size";

// Commands on their way, and replies not yet taken.
constexpr DDS_Long kMaxSamples = 32;

void report(const ZUVLogMessage &message, const char *text,
            const brel::Place &place = brel::Place::current())
{
    brel::report(BREL_SUBMODULE_REMOTE, message, text, place);
}

// False after a report if `code` is a failure.
bool isOk(DDS_ReturnCode_t code, const char *what,
          const brel::Place &place = brel::Place::current())
{
    if (code != DDS_RETCODE_OK &&
        ZUV_LOG_ENABLED(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE)) {
        ZUVLogMessage_printTemplate(ZUV_LOG_BIT_EXCEPTION, BREL_LOG_MODULE_ID,
                                    BREL_SUBMODULE_REMOTE, place.file, place.line, place.function,
                                    &ZUV_LOG_FAILURE_TEMPLATE, "%s - Return code = %d\n", what,
                                    code);
    }
    return code == DDS_RETCODE_OK;
}

bool fillParticipantQos(DDS_DomainParticipantFactory *factory, DDS_DomainParticipantQos &qos)
{
    if (!isOk(DDS_DomainParticipantFactory_get_default_participant_qos(factory, &qos),
              "get default participant qos")) {
        return false;
    }
    if (!BRELUtils_setParticipantName(&qos, "Shell", "", "")) {
        report(ZUV_LOG_ANY_FAILURE_s, "set participant name");
        return false;
    }
    if (!BRELUtils_setServiceVersion(&qos)) {
        report(ZUV_LOG_ANY_FAILURE_s, "set service version");
        return false;
    }
    return true;
}

DDS_DomainParticipant *createParticipant(int domainId)
{
    DDS_DomainParticipantFactory *const factory = DDS_DomainParticipantFactory_get_instance();
    DDS_DomainParticipantQos qos = {};
    DDS_DomainParticipant *participant = nullptr;
    if (fillParticipantQos(factory, qos)) {
        participant = DDS_DomainParticipantFactory_create_participant(
            factory, domainId, &qos, nullptr, DDS_STATUS_MASK_NONE);
        if (participant == nullptr) {
            report(ZUV_LOG_CREATION_FAILURE_s, "participant");
        }
    }
    DDS_DomainParticipantQos_finalize(&qos);
    return participant;
}

bool fillReaderQos(DDS_DomainParticipant *participant, const char *poolBufferMaxSize,
                   DDS_DataReaderQos &qos)
{
    if (!isOk(DDS_DomainParticipant_get_default_datareader_qos(participant, &qos),
              "get default dataReader qos")) {
        return false;
    }
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    qos.resource_limits.max_samples = kMaxSamples;
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.protocol.rtps_reliable_reader.max_heartbeat_response_delay = DDS_DURATION_ZERO;
    qos.protocol.rtps_reliable_reader.min_heartbeat_response_delay = DDS_DURATION_ZERO;
    if (DDS_PropertyQosPolicyHelper_assert_property(&qos.property, kPoolBufferMaxSizeProperty,
                                                    poolBufferMaxSize,
                                                    DDS_BOOLEAN_FALSE) != DDS_RETCODE_OK) {
        report(ZUV_LOG_ASSERT_FAILURE_s, "Memory manager fast pool property");
        return false;
    }
    qos.reader_resource_limits.dynamically_allocate_fragmented_samples = DDS_BOOLEAN_TRUE;
    return true;
}

bool fillWriterQos(DDS_DomainParticipant *participant, const DDS_Duration_t &replyWaitTimeout,
                   DDS_Long maxInstances, DDS_DataWriterQos &qos)
{
    if (!isOk(DDS_DomainParticipant_get_default_datawriter_qos(participant, &qos),
              "get default dataWriter qos")) {
        return false;
    }
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    qos.resource_limits.max_samples = kMaxSamples;
    // With one instance the history is full with the last sample that the window admits, and the middleware asks
    // for acknowledgement along with it. With more it asks by the clock alone, and a stream of commands would
    // stand still from one window to the next.
    qos.resource_limits.max_instances = maxInstances;
    qos.protocol.rtps_reliable_writer.max_send_window_size = kMaxSamples;
    qos.protocol.rtps_reliable_writer.min_send_window_size = kMaxSamples;
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.reliability.max_blocking_time = replyWaitTimeout;
    return true;
}

ZUV_BrelServiceAdminRequester *createRequester(const BRELRemoteConfigDdsContext &context)
{
    ZUV_Talvane_RequesterParams params = {};
    params.participant = context._participant;
    params.request_topic_name = ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME;
    params.reply_topic_name = ZUV_SERVICE_ADMIN_COMMAND_REPLY_TOPIC_NAME;
    params.datawriter_qos = &context._writerQos;
    params.datareader_qos = &context._readerQos;
    params.publisher = context._publisher;
    params.subscriber = context._subscriber;
    ZUV_BrelServiceAdminRequester *const requester =
        ZUV_BrelServiceAdminRequester_create_w_params(&params);
    if (requester == nullptr) {
        report(ZUV_LOG_CREATION_FAILURE_s, "ZUV_BrelServiceAdminRequester");
    }
    return requester;
}

bool createGroups(BRELRemoteConfigDdsContext &context)
{
    context._publisher = DDS_DomainParticipant_create_publisher(
        context._participant, &DDS_PUBLISHER_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (context._publisher == nullptr) {
        report(ZUV_LOG_CREATION_FAILURE_s, "publisher");
        return false;
    }
    context._subscriber = DDS_DomainParticipant_create_subscriber(
        context._participant, &DDS_SUBSCRIBER_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (context._subscriber == nullptr) {
        report(ZUV_LOG_CREATION_FAILURE_s, "subscriber");
        return false;
    }
    return true;
}

// What stands at a failure stays in `context` and `requester`.
bool createEntities(BRELRemoteConfigDdsContext &context, int domainId,
                    const DDS_Duration_t &replyWaitTimeout, DDS_Long maxInstances,
                    ZUV_BrelServiceAdminRequester *&requester)
{
    char poolBufferMaxSize[16];
    ZUVOsapiUtility_snprintf(poolBufferMaxSize, sizeof(poolBufferMaxSize), "%d",
                             kPoolBufferMaxSize);

    context._participant = createParticipant(domainId);
    if (context._participant == nullptr ||
        !fillReaderQos(context._participant, poolBufferMaxSize, context._readerQos) ||
        !fillWriterQos(context._participant, replyWaitTimeout, maxInstances, context._writerQos) ||
        !createGroups(context)) {
        return false;
    }
    requester = createRequester(context);
    if (requester == nullptr) {
        return false;
    }
    if (DDS_Entity_enable(DDS_DomainParticipant_as_entity(context._participant)) !=
        DDS_RETCODE_OK) {
        report(ZUV_LOG_ANY_FAILURE_s, "enable participant");
        return false;
    }
    return true;
}

bool deleteParticipant(BRELRemoteConfigDdsContext &context)
{
    if (DDS_DomainParticipant_delete_contained_entities(context._participant) != DDS_RETCODE_OK) {
        report(ZUV_LOG_DESTRUCTION_FAILURE_s, "participant contained entities");
        return false;
    }
    if (DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                        context._participant) != DDS_RETCODE_OK) {
        report(ZUV_LOG_DESTRUCTION_FAILURE_s, "participant");
        return false;
    }
    context._publisher = nullptr;
    context._subscriber = nullptr;
    context._participant = nullptr;
    return true;
}

} // namespace

int BRELRemoteConfigClient_createRequesterI(BRELRemoteConfigDdsContext *context, int domainId,
                                            const DDS_Duration_t *replyWaitTimeout,
                                            DDS_Long maxInstances,
                                            ZUV_BrelServiceAdminRequester **requester)
{
    if (!createEntities(*context, domainId, *replyWaitTimeout, maxInstances, *requester)) {
        BRELRemoteConfigClient_deleteRequesterI(context, requester);
        return 0;
    }
    return 1;
}

int BRELRemoteConfigClient_deleteRequesterI(BRELRemoteConfigDdsContext *context,
                                            ZUV_BrelServiceAdminRequester **requester)
{
    if (*requester != nullptr) {
        if (ZUV_Talvane_Requester_delete(&(*requester)->parent) != DDS_RETCODE_OK) {
            report(ZUV_LOG_DESTRUCTION_FAILURE_s, "ZUV_BrelServiceAdminRequester");
            return 0;
        }
        *requester = nullptr;
    }
    if (context->_participant != nullptr && !deleteParticipant(*context)) {
        return 0;
    }
    DDS_DataReaderQos_finalize(&context->_readerQos);
    DDS_DataWriterQos_finalize(&context->_writerQos);
    return 1;
}

ZUV_BrelServiceAdminRequester *BRELRemoteConfigClient_createRequester(int domainId,
                                                                      int response_timeout_sec)
{
    BRELRemoteConfigDdsContext context = {};
    const DDS_Duration_t replyWaitTimeout = {response_timeout_sec, 0};
    ZUV_BrelServiceAdminRequester *requester = nullptr;
    const bool isMade =
        BRELRemoteConfigClient_createRequesterI(&context, domainId, &replyWaitTimeout,
                                                DDS_LENGTH_UNLIMITED, &requester) != 0;
    DDS_DataReaderQos_finalize(&context._readerQos);
    DDS_DataWriterQos_finalize(&context._writerQos);
    DDS_TopicQos_finalize(&context._topicQos);
    return isMade ? requester : nullptr;
}

void BRELRemoteConfigClient_deleteRequester(ZUV_BrelServiceAdminRequester *requester)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, requester == nullptr,
                         "\"requester == ((void *)0)\"")) {
        return;
    }
    ZUV_Service_Admin_CommandRequestDataWriter *const writer =
        ZUV_BrelServiceAdminRequester_get_request_datawriter(requester);
    if (writer == nullptr) {
        report(ZUV_LOG_ANY_FAILURE_s, "delete connection");
        return;
    }
    BRELRemoteConfigDdsContext context = {};
    context._publisher = DDS_DataWriter_get_publisher(
        ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(writer));
    context._participant = DDS_Publisher_get_participant(context._publisher);
    if (!BRELRemoteConfigClient_deleteRequesterI(&context, &requester)) {
        report(ZUV_LOG_ANY_FAILURE_s, "delete connection");
    }
}

int BRELRemoteConfigClient_hasMatchingServer(BRELRemoteConfigClient *self)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, self == nullptr, "\"self == ((void *)0)\"")) {
        return 0;
    }
    ZUV_Service_Admin_CommandReplyDataReader *const reader =
        ZUV_BrelServiceAdminRequester_get_reply_datareader(self->_requester);
    ZUV_Service_Admin_CommandRequestDataWriter *const writer =
        ZUV_BrelServiceAdminRequester_get_request_datawriter(self->_requester);
    if (reader == nullptr || writer == nullptr) {
        return 0;
    }
    DDS_SubscriptionMatchedStatus subscription = {};
    DDS_PublicationMatchedStatus publication = {};
    DDS_DataReader_get_subscription_matched_status(
        ZUV_Service_Admin_CommandReplyDataReader_as_datareader(reader), &subscription);
    DDS_DataWriter_get_publication_matched_status(
        ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(writer), &publication);
    return subscription.current_count >= 1 && publication.current_count >= 1 ? 1 : 0;
}
