#include "remoteConfig/CommandHandler.h"

#include "platform/dds/DomainParticipant.h"
#include "platform/dds/Topic.h"
#include "platform/osapi/Object.hpp"
#include "platform/osapi/Utility.h"
#include "remoteConfig/RemoteConfigServer.h"
#include "remoteConfig/ServerReport.hpp"

namespace
{

using Handler = BRELCommandHandler;

// Without a blank before "OR": other implementations of the service send it so, and it is kept.
constexpr const char *kFilterTemplate = "application_name = NULLOR application_name MATCH '%s'";
constexpr std::size_t kFilterSize = 255;

void BRELCommandHandler_onOfferedIncompatibleQos(void *, DDS_DataWriter *writer,
                                                 const DDS_OfferedIncompatibleQosStatus *status)
{
    ZUV_LOG_PLAIN(BREL, ZUV_LOG_BIT_INFORMATION, BREL_SUBMODULE_REMOTE,
                  "%s: AdministrationDataWriter (Topic: %s) received onOfferedIncompatibleQos -> "
                  "lastPolicyId=%d lastPolicy=%s\n",
                  __func__,
                  DDS_TopicDescription_get_name(
                      DDS_Topic_as_topicdescription(DDS_DataWriter_get_topic(writer))),
                  static_cast<int>(status->last_policy_id),
                  DDS_QosPolicyId_to_string(status->last_policy_id));
}

void BRELCommandHandler_onRequestedIncompatibleQos(void *, DDS_DataReader *reader,
                                                   const DDS_RequestedIncompatibleQosStatus *status)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, reader == nullptr || status == nullptr,
                         "reader == ((void *)0) || status == ((void *)0)")) {
        return;
    }
    ZUV_LOG_PLAIN(BREL, ZUV_LOG_BIT_INFORMATION, BREL_SUBMODULE_REMOTE,
                  "%s: AdministrationDataReader (Topic: %s) received onRequestedIncompatibleQos -> "
                  "lastPolicyId=%d lastPolicy=%s\n",
                  __func__,
                  DDS_TopicDescription_get_name(DDS_DataReader_get_topicdescription(reader)),
                  static_cast<int>(status->last_policy_id),
                  DDS_QosPolicyId_to_string(status->last_policy_id));
}

void BRELCommandHandler_executeAction(Handler *self,
                                      const ZUV_Service_Admin_CommandRequest *request,
                                      const DDS_SampleInfo *sampleInfo)
{
    if (BREL_SERVER_IS_NULL(request) || BREL_SERVER_IS_NULL(sampleInfo)) {
        return;
    }
    BRELRemoteConfigServer_processRequest(self->_server, request, sampleInfo, self->_replier);
}

// Handle all requests that are there. A failure is reported, and the next arrival triggers again.
void BRELCommandHandler_onConditionTrigger(void *handlerData, DDS_Condition *condition)
{
    if (BREL_SERVER_IS_NULL(handlerData) || BREL_SERVER_IS_NULL(condition)) {
        return;
    }
    auto *const self = static_cast<Handler *>(handlerData);
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    const DDS_ReturnCode_t code = ZUV_BrelServiceAdminReplier_take_requests(
        self->_replier, &requests, &infos, DDS_LENGTH_UNLIMITED);
    if (code == DDS_RETCODE_NO_DATA) {
        return;
    }
    if (code != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "take");
        return;
    }
    const DDS_Long count = ZUV_Service_Admin_CommandRequestSeq_get_length(&requests);
    for (DDS_Long i = 0; i < count; ++i) {
        const DDS_SampleInfo *const info = DDS_SampleInfoSeq_get_reference(&infos, i);
        if (info->valid_data) {
            BRELCommandHandler_executeAction(
                self, ZUV_Service_Admin_CommandRequestSeq_get_reference(&requests, i), info);
        }
    }
    if (ZUV_BrelServiceAdminReplier_return_loan(self->_replier, &requests, &infos) !=
        DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "return loan");
    }
}

bool createFilteredTopic(const BRELRemoteConfigDdsContext &context, const char *brelName)
{
    const char *const typeName = ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name();
    if (ZUV_Service_Admin_CommandRequestTypeSupport_register_type(context._participant, typeName) !=
        DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "register request type");
        return false;
    }
    DDS_Topic *const topic =
        DDS_DomainParticipant_create_topic(context._participant, context.requesTopicName, typeName,
                                           &DDS_TOPIC_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (topic == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "request topic");
        return false;
    }
    // A name that does not fit leaves an expression without an end, which is refused below.
    char filter[kFilterSize];
    ZUVOsapiUtility_snprintf(filter, sizeof(filter), kFilterTemplate, brelName);
    const DDS_StringSeq noParameters = DDS_SEQUENCE_INITIALIZER;
    if (DDS_DomainParticipant_create_contentfilteredtopic(
            context._participant, BREL_COMMAND_HANDLER_FILTERED_TOPIC_NAME, topic, filter,
            &noParameters) == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "CFT on request topic");
        return false;
    }
    return true;
}

bool createEndpoints(Handler &self)
{
    const BRELRemoteConfigDdsContext &context = *self._ddsContext;
    ZUV_Talvane_ReplierParams params = {};
    params.participant = context._participant;
    params.request_topic_name = BREL_COMMAND_HANDLER_FILTERED_TOPIC_NAME;
    params.reply_topic_name = context.replyTopicName;
    params.datawriter_qos = &context._writerQos;
    params.datareader_qos = &context._readerQos;
    params.publisher = context._publisher;
    params.subscriber = context._subscriber;
    self._replier = ZUV_BrelServiceAdminReplier_create_w_params(&params);
    if (self._replier == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "ZUV_BrelServiceAdminReplier");
    }
    return self._replier != nullptr;
}

// The listener stands before the writer is enabled, so that it misses nothing.
bool setUpWriter(Handler &self)
{
    DDS_DataWriter *const writer = ZUV_Service_Admin_CommandReplyDataWriter_as_datawriter(
        ZUV_BrelServiceAdminReplier_get_reply_datawriter(self._replier));
    DDS_DataWriterListener listener = {};
    listener.listener_data = &self;
    listener.on_offered_incompatible_qos = BRELCommandHandler_onOfferedIncompatibleQos;
    if (DDS_DataWriter_set_listener(writer, &listener, DDS_OFFERED_INCOMPATIBLE_QOS_STATUS) !=
        DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set reply writer listener");
        return false;
    }
    if (DDS_Entity_enable(DDS_DataWriter_as_entity(writer)) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ENABLE_FAILURE_s, "reply DataWriter");
        return false;
    }
    return true;
}

bool setUpReader(Handler &self)
{
    DDS_DataReader *const reader = ZUV_Service_Admin_CommandRequestDataReader_as_datareader(
        ZUV_BrelServiceAdminReplier_get_request_datareader(self._replier));
    DDS_DataReaderListener listener = {};
    listener.listener_data = &self;
    listener.on_requested_incompatible_qos = BRELCommandHandler_onRequestedIncompatibleQos;
    if (!BREL_SERVER_IS_OK(
            DDS_DataReader_set_listener(reader, &listener, DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS),
            "set request reader listener")) {
        return false;
    }
    // A reader that is not enabled is no failure here: by then its subscriber has mostly done it.
    DDS_Entity_enable(DDS_DataReader_as_entity(reader));
    self._requestCondition = DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader));
    return BREL_SERVER_IS_OK(
        DDS_StatusCondition_set_enabled_statuses(self._requestCondition, DDS_DATA_AVAILABLE_STATUS),
        "set enabled statuses");
}

bool BRELCommandHandler_deleteReplier(Handler *self)
{
    if (self->_replier != nullptr) {
        if (ZUV_Talvane_Replier_delete(&self->_replier->parent) != DDS_RETCODE_OK) {
            BREL_SERVER_FAILURE(&ZUV_LOG_DESTRUCTION_FAILURE_s, "ZUV_BrelServiceAdminReplier");
            return false;
        }
        self->_replier = nullptr;
        self->_requestCondition = nullptr;
    }
    return true;
}

bool BRELCommandHandler_createReplier(Handler *self)
{
    if (createFilteredTopic(*self->_ddsContext, self->_server->brelName) &&
        createEndpoints(*self) && setUpWriter(*self) && setUpReader(*self)) {
        return true;
    }
    BRELCommandHandler_deleteReplier(self);
    return false;
}

void BRELCommandHandler_finalize(Handler *self)
{
    if (!BRELCommandHandler_deleteReplier(self)) {
        BREL_SERVER_FAILURE(&ZUV_LOG_DESTRUCTION_FAILURE_s, "DDS entities");
    }
}

bool BRELCommandHandler_initialize(Handler *self, BRELRemoteConfigDdsContext *ddsContext,
                                   BRELRemoteConfigServer *server)
{
    if (BREL_SERVER_IS_NULL(self) || BREL_SERVER_IS_NULL(ddsContext) ||
        BREL_SERVER_IS_NULL(server)) {
        return false;
    }
    *self = {};
    self->_server = server;
    self->_ddsContext = ddsContext;
    if (!BRELCommandHandler_createReplier(self)) {
        BREL_SERVER_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "DDS entities");
        BRELCommandHandler_finalize(self);
        return false;
    }
    self->_conditionHandler.on_condition_triggered = BRELCommandHandler_onConditionTrigger;
    self->_conditionHandler.handler_data = self;
    if (DDS_Condition_set_handler(DDS_StatusCondition_as_condition(self->_requestCondition),
                                  &self->_conditionHandler) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set condition handler");
        BRELCommandHandler_finalize(self);
        return false;
    }
    return true;
}

} // namespace

extern "C" {

BRELCommandHandler *BRELCommandHandler_new(BRELRemoteConfigDdsContext *ddsContext,
                                           BRELRemoteConfigServer *server)
{
    zuv::ObjectPointer<Handler> self(zuv::newObject<Handler>("BRELCommandHandler"));
    if (self == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                            static_cast<int>(sizeof(Handler)));
        return nullptr;
    }
    if (!BRELCommandHandler_initialize(self.get(), ddsContext, server)) {
        self.reset();
        BREL_SERVER_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "BRELCommandHandler");
    }
    return self.release();
}

void BRELCommandHandler_delete(BRELCommandHandler *self)
{
    if (BREL_SERVER_IS_NULL(self)) {
        return;
    }
    BRELCommandHandler_finalize(self);
    zuv::deleteObject(self);
}

int BRELCommandHandler_hasMatchingClient(const BRELCommandHandler *self)
{
    return BREL_SERVER_IS_NULL(self) ? 0 : BRELCommandHandler_hasMatchingClientI(self->_replier);
}

int BRELCommandHandler_hasMatchingClientI(ZUV_BrelServiceAdminReplier *replier)
{
    if (replier == nullptr) {
        return 0;
    }
    // What cannot be told reads as no match.
    DDS_SubscriptionMatchedStatus requests = {};
    DDS_PublicationMatchedStatus replies = {};
    DDS_DataReader_get_subscription_matched_status(
        ZUV_Service_Admin_CommandRequestDataReader_as_datareader(
            ZUV_BrelServiceAdminReplier_get_request_datareader(replier)),
        &requests);
    DDS_DataWriter_get_publication_matched_status(
        ZUV_Service_Admin_CommandReplyDataWriter_as_datawriter(
            ZUV_BrelServiceAdminReplier_get_reply_datawriter(replier)),
        &replies);
    return requests.current_count > 0 && replies.current_count > 0;
}
}
