#include "platform/talvane/Entity.h"

#include <string>

#include "Doorbell.hpp"
#include "EntityImpl.hpp"
#include "Inbox.hpp"
#include "ListenerGate.hpp"
#include "platform/dds/DomainParticipant.h"
#include "platform/dds/Publisher.h"
#include "platform/dds/Subscriber.h"
#include "platform/dds/Topic.h"
#include "platform/osapi/Fault.h"
#include "platform/talvane/Requester.h"

ZUV_Talvane_EntityUntypedImpl::ZUV_Talvane_EntityUntypedImpl() = default;
ZUV_Talvane_EntityUntypedImpl::~ZUV_Talvane_EntityUntypedImpl() = default;

namespace zuv::talvane
{

bool reportNull(const char *function, const char *argument)
{
    if (ZUV_LOG_ENABLED(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TALVANE)) {
        ZUVLogMessage_printWithParams(ZUV_LOG_BIT_EXCEPTION, DDS_LOG_MODULE_ID,
                                      DDS_SUBMODULE_TALVANE, __FILE__, __LINE__, function,
                                      &DDS_LOG_BAD_PARAMETER_s, argument);
    }
    return true;
}

Deadline deadlineAfter(const DDS_Duration_t &wait)
{
    if (DDS_Duration_is_infinite(&wait)) {
        return std::nullopt;
    }
    return std::chrono::steady_clock::now() +
           std::chrono::nanoseconds(DDS_Duration_to_nanoseconds(&wait));
}

namespace
{

// The participant's topic of that name, or a new one.
DDS_TopicDescription *assertTopic(DDS_DomainParticipant &participant, const std::string &name,
                                  const char *typeName)
{
    DDS_TopicDescription *topic =
        DDS_DomainParticipant_lookup_topicdescription(&participant, name.c_str());
    if (topic == nullptr) {
        topic = DDS_Topic_as_topicdescription(DDS_DomainParticipant_create_topic(
            &participant, name.c_str(), typeName, &DDS_TOPIC_QOS_DEFAULT, nullptr,
            DDS_STATUS_MASK_NONE));
    }
    if (topic == nullptr) {
        ZUV_TALVANE_REPORT_TEMPLATE(&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "topic %s", name.c_str());
        return nullptr;
    }
    if (std::string_view(DDS_TopicDescription_get_type_name(topic)) != typeName) {
        ZUV_TALVANE_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "use topic %s of type %s for %s",
                                    name.c_str(), DDS_TopicDescription_get_type_name(topic),
                                    typeName);
        return nullptr;
    }
    return topic;
}

std::string topicName(const char *name, const char *serviceName, const char *suffix)
{
    if (name != nullptr) {
        return name;
    }
    return serviceName == nullptr ? std::string() : std::string(serviceName) + suffix;
}

// QoS of an endpoint for which nobody gave one: what request and reply need.
template <typename Qos>
struct DefaultQos {
    Qos value = {};
    DDS_ReturnCode_t (*finalize)(Qos *);

    DefaultQos(DDS_ReturnCode_t (*initialize)(Qos *), DDS_ReturnCode_t (*finalizeQos)(Qos *))
        : finalize(finalizeQos), isValid(initialize(&value) == DDS_RETCODE_OK)
    {
        value.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
        value.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    }
    ~DefaultQos() { finalize(&value); }
    DefaultQos(const DefaultQos &) = delete;
    DefaultQos &operator=(const DefaultQos &) = delete;

    bool isValid;
};

DDS_DataReader *makeReader(const ZUV_Talvane_EntityParams &params, DDS_TopicDescription &topic,
                           const DDS_DataReaderListener *listener)
{
    DDS_Subscriber *const subscriber =
        params.subscriber != nullptr
            ? params.subscriber
            : DDS_DomainParticipant_get_implicit_subscriber(params.participant);
    const DDS_StatusMask mask =
        listener == nullptr ? DDS_STATUS_MASK_NONE : DDS_DATA_AVAILABLE_STATUS;
    if (subscriber == nullptr) {
        return nullptr;
    }
    if (params.datareader_qos != nullptr) {
        return DDS_Subscriber_create_datareader(subscriber, &topic, params.datareader_qos, listener,
                                                mask);
    }
    const DefaultQos<DDS_DataReaderQos> qos(DDS_DataReaderQos_initialize,
                                            DDS_DataReaderQos_finalize);
    return qos.isValid
               ? DDS_Subscriber_create_datareader(subscriber, &topic, &qos.value, listener, mask)
               : nullptr;
}

DDS_DataWriter *makeWriter(const ZUV_Talvane_EntityParams &params, DDS_Topic &topic)
{
    DDS_Publisher *const publisher =
        params.publisher != nullptr
            ? params.publisher
            : DDS_DomainParticipant_get_implicit_publisher(params.participant);
    if (publisher == nullptr) {
        return nullptr;
    }
    if (params.datawriter_qos != nullptr) {
        return DDS_Publisher_create_datawriter(publisher, &topic, params.datawriter_qos, nullptr,
                                               DDS_STATUS_MASK_NONE);
    }
    const DefaultQos<DDS_DataWriterQos> qos(DDS_DataWriterQos_initialize,
                                            DDS_DataWriterQos_finalize);
    return qos.isValid ? DDS_Publisher_create_datawriter(publisher, &topic, &qos.value, nullptr,
                                                         DDS_STATUS_MASK_NONE)
                       : nullptr;
}

DDS_ReturnCode_t checkParams(const ZUV_Talvane_EntityParams &params)
{
    if (ZUV_TALVANE_IS_NULL(params.participant)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (params.service_name == nullptr &&
        (params.request_topic_name == nullptr || params.reply_topic_name == nullptr)) {
        ZUV_TALVANE_REPORT(&DDS_LOG_BAD_PARAMETER_s, "service_name");
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (params.qos_library_name != nullptr || params.qos_profile_name != nullptr) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "read QoS from a profile");
        return DDS_RETCODE_UNSUPPORTED;
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t makeEndpoints(ZUV_Talvane_EntityUntypedImpl &entity, Role role,
                               const ZUV_Talvane_EntityParams &params, const EntityTypes &types,
                               const DDS_DataReaderListener *readerListener)
{
    if (types.registerRequest(params.participant, types.requestTypeName) != DDS_RETCODE_OK ||
        types.registerReply(params.participant, types.replyTypeName) != DDS_RETCODE_OK) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "register types");
        return DDS_RETCODE_ERROR;
    }
    DDS_TopicDescription *const requestTopic = assertTopic(
        *params.participant, topicName(params.request_topic_name, params.service_name, "Request"),
        types.requestTypeName);
    DDS_TopicDescription *const replyTopic = assertTopic(
        *params.participant, topicName(params.reply_topic_name, params.service_name, "Reply"),
        types.replyTypeName);
    if (requestTopic == nullptr || replyTopic == nullptr) {
        return DDS_RETCODE_ERROR;
    }
    const bool isRequester = role == Role::kRequester;
    DDS_Topic *const written = DDS_Topic_narrow(isRequester ? requestTopic : replyTopic);
    if (written == nullptr) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "write to a filtered topic");
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_DataReaderListener gateListener = {};
    if (readerListener != nullptr && readerListener->on_data_available != nullptr) {
        entity.gate = std::make_unique<ListenerGate>(*readerListener);
        gateListener = entity.gate->readerListener();
    }
    // The reader first: when others see the writer, an answer has somewhere to go.
    entity.reader = makeReader(params, isRequester ? *replyTopic : *requestTopic,
                               entity.gate == nullptr ? nullptr : &gateListener);
    if (entity.reader == nullptr) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_CREATION_FAILURE_s,
                           isRequester ? "reply DataReader" : "request DataReader");
        return DDS_RETCODE_ERROR;
    }
    entity.writer = makeWriter(params, *written);
    if (entity.writer == nullptr) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_CREATION_FAILURE_s,
                           isRequester ? "request DataWriter" : "reply DataWriter");
        return DDS_RETCODE_ERROR;
    }
    if (isRequester) {
        entity.inbox = std::make_unique<Inbox>(*entity.reader, *entity.writer);
    } else {
        entity.doorbell = std::make_unique<Doorbell>(*entity.reader);
    }
    return DDS_RETCODE_OK;
}

} // namespace

DDS_ReturnCode_t openEntity(ZUV_Talvane_EntityUntypedImpl &entity, Role role,
                            const ZUV_Talvane_EntityParams &params, const EntityTypes &types,
                            const DDS_DataReaderListener *readerListener)
{
    DDS_ReturnCode_t code = checkParams(params);
    if (code != DDS_RETCODE_OK) {
        return code;
    }
    code = DDS_RETCODE_OUT_OF_RESOURCES;
    try {
        code = makeEndpoints(entity, role, params, types, readerListener);
    } catch (const std::exception &exception) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, exception.what());
    }
    if (code != DDS_RETCODE_OK) {
        closeEntity(entity);
    }
    return code;
}

DDS_ReturnCode_t closeEntity(ZUV_Talvane_EntityUntypedImpl &entity)
{
    if (entity.reader != nullptr && zuv::dds::storeOf(*entity.reader).hasLoansOut()) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "reader whose samples are on loan");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    entity.inbox.reset();
    entity.doorbell.reset();
    if (entity.writer != nullptr) {
        const DDS_ReturnCode_t code = DDS_Publisher_delete_datawriter(
            DDS_DataWriter_get_publisher(entity.writer), entity.writer);
        if (code != DDS_RETCODE_OK) {
            ZUV_TALVANE_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "DataWriter");
            return code;
        }
        entity.writer = nullptr;
    }
    if (entity.reader != nullptr) {
        const DDS_ReturnCode_t code = DDS_Subscriber_delete_datareader(
            DDS_DataReader_get_subscriber(entity.reader), entity.reader);
        if (code != DDS_RETCODE_OK) {
            ZUV_TALVANE_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "DataReader");
            return code;
        }
        entity.reader = nullptr;
    }
    entity.gate.reset();
    return DDS_RETCODE_OK;
}

} // namespace zuv::talvane

DDS_ReturnCode_t ZUV_Talvane_EntityUntypedImpl_send_sample(ZUV_Talvane_EntityUntypedImpl *self,
                                                           const void *data,
                                                           DDS_WriteParams_t *params)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(data) || ZUV_TALVANE_IS_NULL(params)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
    if (self->writer != nullptr && !ZUV_OSAPI_FAULT("talvane.send")) {
        code = DDS_DataWriter_write_w_params_untyped(self->writer, data, params);
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "send sample");
    }
    return code;
}

DDS_ReturnCode_t ZUV_Talvane_EntityUntypedImpl_get_sample_loaned(
    ZUV_Talvane_EntityUntypedImpl *self, void ***dataPtrArray, DDS_Long *dataCount,
    DDS_Boolean *isLoan, void *dataBuffer, DDS_SampleInfoSeq *infoSeq, DDS_Long dataSeqLength,
    DDS_Long dataSeqMaximum, DDS_Boolean dataSeqHasOwnership, DDS_Long maxCount,
    DDS_ReadCondition *condition, DDS_Boolean take)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(dataPtrArray) ||
        ZUV_TALVANE_IS_NULL(dataCount) || ZUV_TALVANE_IS_NULL(isLoan) ||
        ZUV_TALVANE_IS_NULL(infoSeq)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (condition != nullptr) {
        ZUV_TALVANE_REPORT(&DDS_LOG_BAD_PARAMETER_s, "condition");
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->inbox != nullptr) { // a requester's samples wait there
        return ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned(
            self, dataPtrArray, dataCount, isLoan, dataBuffer, infoSeq, dataSeqLength,
            dataSeqMaximum, dataSeqHasOwnership, maxCount, nullptr, take);
    }
    DDS_ReadRequestI request = {};
    request.max_samples = maxCount;
    request.sample_states = DDS_ANY_SAMPLE_STATE;
    request.view_states = DDS_ANY_VIEW_STATE;
    request.instance_states = DDS_ANY_INSTANCE_STATE;
    request.take = take;
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
    if (self->reader != nullptr) {
        code = DDS_DataReader_read_or_take_untypedI(
            self->reader, isLoan, dataPtrArray, dataCount, infoSeq, dataSeqLength, dataSeqMaximum,
            dataSeqHasOwnership, dataBuffer, self->receivedSize, &request);
    }
    if (code != DDS_RETCODE_OK && code != DDS_RETCODE_NO_DATA) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "get samples");
    }
    return code;
}

DDS_ReturnCode_t ZUV_Talvane_EntityUntypedImpl_return_loan(ZUV_Talvane_EntityUntypedImpl *self,
                                                           void **dataPtrArray, DDS_Long dataCount,
                                                           DDS_SampleInfoSeq *infoSeq)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(infoSeq)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
    if (self->reader != nullptr) {
        code = DDS_DataReader_return_loan_untypedI(self->reader, dataPtrArray, dataCount, infoSeq);
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "return loan");
    }
    return code;
}

DDS_Boolean ZUV_Talvane_EntityUntypedImpl_is_sole_holderI(ZUV_Talvane_EntityUntypedImpl *self,
                                                          const DDS_SampleInfoSeq *infoSeq)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(infoSeq) || self->reader == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    void *loan = nullptr;
    void *reader = nullptr;
    DDS_SampleInfoSeq_get_read_tokenI(infoSeq, &loan, &reader);
    const bool isSole =
        loan != nullptr && reader == self->reader &&
        zuv::dds::storeOf(*self->reader).isSoleHolder(*static_cast<zuv::dds::Loan *>(loan));
    return isSole ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_DataWriter *ZUV_Talvane_EntityUntypedImpl_get_datawriter(ZUV_Talvane_EntityUntypedImpl *self)
{
    return ZUV_TALVANE_IS_NULL(self) ? nullptr : self->writer;
}

DDS_DataReader *ZUV_Talvane_EntityUntypedImpl_get_datareader(ZUV_Talvane_EntityUntypedImpl *self)
{
    return ZUV_TALVANE_IS_NULL(self) ? nullptr : self->reader;
}

DDS_Boolean ZUV_Talvane_EntityUntypedImpl_validate_receive_params(
    ZUV_Talvane_EntityUntypedImpl *self, const char *methodName, DDS_Long minCount,
    DDS_Long maxCount, const DDS_Duration_t *maxWait)
{
    const bool isMaxUnlimited = maxCount == DDS_LENGTH_UNLIMITED;
    const char *const wrong = self == nullptr                          ? "self"
                              : minCount < 0                           ? "min_count"
                              : maxCount < 0 && !isMaxUnlimited        ? "max_count"
                              : !isMaxUnlimited && minCount > maxCount ? "min_count"
                              : maxWait == nullptr                     ? "max_wait"
                                                                       : nullptr;
    if (wrong == nullptr) {
        return DDS_BOOLEAN_TRUE;
    }
    ZUV_TALVANE_REPORT_TEMPLATE(&ZUV_LOG_BAD_PARAMETER_FAILURE_TEMPLATE, "%s: %s",
                                methodName == nullptr ? "receive" : methodName, wrong);
    return DDS_BOOLEAN_FALSE;
}
