#include "remoteConfig/AdminReplier.h"

#include "platform/osapi/Heap.h"
#include "remoteConfig/AdminEndpoint.hpp"

namespace
{

using namespace admin_endpoint;

using Replier = ZUV_BrelServiceAdminReplier;
using Request = ZUV_Service_Admin_CommandRequest;
using RequestSeq = ZUV_Service_Admin_CommandRequestSeq;

auto makeGetter(Replier *self, DDS_Boolean take)
{
    return [=](Samples &samples, const Destination &destination, DDS_SampleInfoSeq *infos,
               DDS_Long maxCount) {
        return ZUV_Talvane_EntityUntypedImpl_get_sample_loaned(
            self->parent._impl, &samples.data, &samples.count, &samples.isLoan, destination.buffer,
            infos, destination.length, destination.maximum, destination.hasOwnership, maxCount,
            nullptr, take);
    };
}

DDS_ReturnCode_t getRequest(Replier *self, Request *request, DDS_SampleInfo *info, DDS_Boolean take,
                            const char *function = ZUV_CALLING_FUNCTION)
{
    if (isAnyMissing({{self, "self"}, {request, "request"}, {info, "sample_info"}}, function)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return getSample<RequestType>(self->parent._impl, makeGetter(self, take), request, info, take,
                                  function);
}

DDS_ReturnCode_t getRequests(Replier *self, RequestSeq *requests, DDS_SampleInfoSeq *infos,
                             DDS_Long maxCount, DDS_Boolean take,
                             const char *function = ZUV_CALLING_FUNCTION)
{
    if (isAnyMissing({{self, "self"}, {requests, "requests is NULL"}}, function)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    Samples samples;
    DDS_ReturnCode_t code =
        getSamples<RequestType>(makeGetter(self, take), samples, requests, infos, maxCount);
    code = loanOrCopySamples<RequestType>(self->parent._impl, code, requests, samples, infos);
    if (code != DDS_RETCODE_OK && code != DDS_RETCODE_NO_DATA) {
        report(DDS_LOG_BAD_PARAMETER_s, "error loan or copying data", function);
    }
    return code;
}

auto makeWait(Replier *self, DDS_Long minCount, const DDS_Duration_t *maxWait)
{
    return [=] { return ZUV_Talvane_Replier_wait_for_requests(&self->parent, minCount, maxWait); };
}

// Make the untyped replier of a record whose listener stands.
bool createImpl(Replier *self, const ZUV_Talvane_ReplierParams *params)
{
    self->parent._impl = ZUV_Talvane_ReplierUntypedImpl_create();
    if (self->parent._impl == nullptr) {
        report(ZUV_LOG_CREATION_FAILURE_s, "ReplierUntypedImpl");
        return false;
    }
    ZUV_Talvane_EntityParams entityParams = {};
    ZUV_Talvane_ReplierParams_toEntityParams(params, &entityParams);

    DDS_DataReaderListener readerListener = {};
    readerListener.listener_data = self;
    readerListener.on_data_available = ZUV_Talvane_Replier_on_data_available;

    if (ZUV_Talvane_ReplierUntypedImpl_initialize(
            self->parent._impl, &entityParams,
            ZUV_Service_Admin_CommandRequestTypeSupport_register_type,
            ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name(),
            ZUV_Service_Admin_CommandReplyTypeSupport_register_type,
            ZUV_Service_Admin_CommandReplyTypeSupport_get_type_name(), sizeof(Request),
            params->listener == nullptr ? nullptr : &readerListener) != DDS_RETCODE_OK) {
        report(ZUV_LOG_ANY_FAILURE_s, "initialize ReplierUntypedImpl");
        return false;
    }
    return true;
}

} // namespace

ZUV_BrelServiceAdminReplier *ZUV_BrelServiceAdminReplier_create(DDS_DomainParticipant *participant,
                                                                const char *service_name)
{
    ZUV_Talvane_ReplierParams params = {};
    params.participant = participant;
    params.service_name = service_name;
    Replier *const self = ZUV_BrelServiceAdminReplier_create_w_params(&params);
    if (self == nullptr) {
        report(ZUV_LOG_CREATION_FAILURE_s, "replier with params");
    }
    return self;
}

ZUV_BrelServiceAdminReplier *
ZUV_BrelServiceAdminReplier_create_w_params(const ZUV_Talvane_ReplierParams *params)
{
    if (isAnyMissing({{params, "params"}})) {
        return nullptr;
    }
    auto *const self =
        static_cast<Replier *>(ZUVOsapiHeap_allocateZeroed(sizeof(Replier), "TReqTRepReplier"));
    if (self == nullptr) {
        report(ZUV_LOG_ANY_FAILURE_s, "error creating a TReqTRepReplier");
        return nullptr;
    }
    if (params->listener != nullptr) {
        self->parent.listener = *params->listener;
    } else {
        self->parent.listener.on_request_available = nullptr;
    }
    if (!createImpl(self, params)) {
        ZUV_Talvane_Replier_delete(&self->parent);
        return nullptr;
    }
    return self;
}

DDS_ReturnCode_t ZUV_BrelServiceAdminReplier_take_request(ZUV_BrelServiceAdminReplier *self,
                                                          ZUV_Service_Admin_CommandRequest *request,
                                                          DDS_SampleInfo *sample_info)
{
    return getRequest(self, request, sample_info, DDS_BOOLEAN_TRUE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminReplier_read_request(ZUV_BrelServiceAdminReplier *self,
                                                          ZUV_Service_Admin_CommandRequest *request,
                                                          DDS_SampleInfo *sample_info)
{
    return getRequest(self, request, sample_info, DDS_BOOLEAN_FALSE);
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_take_requests(ZUV_BrelServiceAdminReplier *self,
                                          ZUV_Service_Admin_CommandRequestSeq *requests,
                                          DDS_SampleInfoSeq *info_seq, DDS_Long max_request_count)
{
    return getRequests(self, requests, info_seq, max_request_count, DDS_BOOLEAN_TRUE);
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_read_requests(ZUV_BrelServiceAdminReplier *self,
                                          ZUV_Service_Admin_CommandRequestSeq *requests,
                                          DDS_SampleInfoSeq *info_seq, DDS_Long max_request_count)
{
    return getRequests(self, requests, info_seq, max_request_count, DDS_BOOLEAN_FALSE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminReplier_receive_request(
    ZUV_BrelServiceAdminReplier *self, ZUV_Service_Admin_CommandRequest *request,
    DDS_SampleInfo *sample_info, const DDS_Duration_t *max_wait)
{
    if (isAnyMissing({{self, "self"},
                      {request, "request"},
                      {sample_info, "sample_info"},
                      {max_wait, "max_wait"}})) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    sample_info->valid_data = DDS_BOOLEAN_FALSE;
    return receive(
        makeWait(self, 1, max_wait), "wait for requests",
        [=] { return ZUV_BrelServiceAdminReplier_take_request(self, request, sample_info); },
        "get request");
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_receive_requests(ZUV_BrelServiceAdminReplier *self,
                                             ZUV_Service_Admin_CommandRequestSeq *requests,
                                             DDS_SampleInfoSeq *info_seq, DDS_Long min_count,
                                             DDS_Long max_count, const DDS_Duration_t *max_wait)
{
    if (isAnyMissing({{self, "self"},
                      {requests, "requests"},
                      {info_seq, "info_seq"},
                      {max_wait, "max_wait"}}) ||
        !ZUV_Talvane_EntityUntypedImpl_validate_receive_params(
            self->parent._impl, "ZUV_BrelServiceAdminReplier_receive_requests", min_count,
            max_count, max_wait)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return receive(
        makeWait(self, min_count, max_wait), "wait for requests",
        [=] {
            return ZUV_BrelServiceAdminReplier_take_requests(self, requests, info_seq, max_count);
        },
        "get requests");
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_send_reply(ZUV_BrelServiceAdminReplier *self,
                                       const ZUV_Service_Admin_CommandReply *reply,
                                       const DDS_SampleIdentity_t *related_request_id)
{
    if (isAnyMissing(
            {{self, "self"}, {reply, "reply"}, {related_request_id, "related_request_id"}})) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    return reported(ZUV_Talvane_ReplierUntypedImpl_send_sample(self->parent._impl, reply,
                                                               related_request_id, &params),
                    DDS_RETCODE_OK, "send reply");
}

ZUV_Service_Admin_CommandReplyDataWriter *
ZUV_BrelServiceAdminReplier_get_reply_datawriter(ZUV_BrelServiceAdminReplier *self)
{
    if (isAnyMissing({{self, "self"}})) {
        return nullptr;
    }
    return narrowEntity(ZUV_Talvane_EntityUntypedImpl_get_datawriter(self->parent._impl),
                        ZUV_Service_Admin_CommandReplyDataWriter_narrow, "reply DataWriter");
}

ZUV_Service_Admin_CommandRequestDataReader *
ZUV_BrelServiceAdminReplier_get_request_datareader(ZUV_BrelServiceAdminReplier *self)
{
    if (isAnyMissing({{self, "self"}})) {
        return nullptr;
    }
    return narrowEntity(ZUV_Talvane_EntityUntypedImpl_get_datareader(self->parent._impl),
                        RequestType::narrow, "request DataReader");
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_return_loan(ZUV_BrelServiceAdminReplier *self,
                                        ZUV_Service_Admin_CommandRequestSeq *replies,
                                        DDS_SampleInfoSeq *info_seq)
{
    if (isAnyMissing({{self, "self"}, {replies, "replies"}, {info_seq, "info_seq"}})) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return returnLoan<RequestType>(self->parent._impl, replies, info_seq);
}
