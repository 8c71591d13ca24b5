#include "remoteConfig/AdminRequester.h"

#include "platform/osapi/Heap.h"
#include "remoteConfig/AdminEndpoint.hpp"

namespace
{

using namespace admin_endpoint;

using Requester = ZUV_BrelServiceAdminRequester;
using Reply = ZUV_Service_Admin_CommandReply;
using ReplySeq = ZUV_Service_Admin_CommandReplySeq;

// Gets replies, of any request if `related` is NULL.
auto makeGetter(Requester *self, const DDS_SampleIdentity_t *related, DDS_Boolean take)
{
    return [=](Samples &samples, const Destination &destination, DDS_SampleInfoSeq *infos,
               DDS_Long maxCount) {
        return ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned(
            self->parent._impl, &samples.data, &samples.count, &samples.isLoan, destination.buffer,
            infos, destination.length, destination.maximum, destination.hasOwnership, maxCount,
            related, take);
    };
}

DDS_ReturnCode_t getReply(Requester *self, Reply *reply, DDS_SampleInfo *info,
                          const DDS_SampleIdentity_t *related, DDS_Boolean take,
                          const char *function = ZUV_CALLING_FUNCTION)
{
    if (isAnyMissing({{self, "self"}, {reply, "reply"}, {info, "sample_info"}}, function)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return getSample<ReplyType>(self->parent._impl, makeGetter(self, related, take), reply, info,
                                take, function);
}

DDS_ReturnCode_t getReplies(Requester *self, ReplySeq *replies, DDS_SampleInfoSeq *infos,
                            DDS_Long maxCount, const DDS_SampleIdentity_t *related,
                            DDS_Boolean take, const char *function = ZUV_CALLING_FUNCTION)
{
    if (isAnyMissing({{self, "self"}, {replies, "replies"}, {infos, "info_seq"}}, function)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    Samples samples;
    const DDS_ReturnCode_t code =
        getSamples<ReplyType>(makeGetter(self, related, take), samples, replies, infos, maxCount);
    return reported(ZUV_BrelServiceAdminRequester_loan_or_copy_samplesI(
                        self, code, replies, samples.isLoan, samples.data, samples.count, infos),
                    DDS_RETCODE_NO_DATA, "copy data", function);
}

auto makeWait(Requester *self, DDS_Long minCount, const DDS_Duration_t *maxWait)
{
    return [=] { return ZUV_Talvane_Requester_wait_for_replies(&self->parent, minCount, maxWait); };
}

} // namespace

ZUV_BrelServiceAdminRequester *
ZUV_BrelServiceAdminRequester_create(DDS_DomainParticipant *participant, const char *service_name)
{
    ZUV_Talvane_RequesterParams params = {};
    params.participant = participant;
    params.service_name = service_name;
    return ZUV_BrelServiceAdminRequester_create_w_params(&params);
}

ZUV_BrelServiceAdminRequester *
ZUV_BrelServiceAdminRequester_create_w_params(const ZUV_Talvane_RequesterParams *params)
{
    if (params == nullptr) {
        ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_API,
                         &ZUV_LOG_BAD_PARAMETER_FAILURE_TEMPLATE, "params");
        return nullptr;
    }
    auto *const self = static_cast<Requester *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(Requester), "TReqTRepRequester"));
    if (self == nullptr) {
        ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_API,
                         &ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE, "TReqTRepRequester");
        return nullptr;
    }
    self->parent._impl = ZUV_Talvane_RequesterUntypedImpl_create(
        params, ZUV_Service_Admin_CommandRequestTypeSupport_register_type,
        ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name(),
        ZUV_Service_Admin_CommandReplyTypeSupport_register_type,
        ZUV_Service_Admin_CommandReplyTypeSupport_get_type_name(), sizeof(Reply));
    if (self->parent._impl != nullptr) {
        return self;
    }
    ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_API,
                     &ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "RequesterUntypedImpl");
    if (ZUV_Talvane_Requester_delete(&self->parent) != DDS_RETCODE_OK) {
        ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_API,
                         &ZUV_LOG_FAILED_TO_DELETE_TEMPLATE, "Requester");
    }
    return nullptr;
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_send_request_w_params(ZUV_BrelServiceAdminRequester *self,
                                                    const ZUV_Service_Admin_CommandRequest *request,
                                                    DDS_WriteParams_t *request_info)
{
    if (isAnyMissing({{self, "self"}, {request, "request"}, {request_info, "request_info"}})) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    request_info->replace_auto = DDS_BOOLEAN_TRUE;
    return reported(
        ZUV_Talvane_EntityUntypedImpl_send_sample(self->parent._impl, request, request_info),
        DDS_RETCODE_OK, "send_request");
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_send_request(ZUV_BrelServiceAdminRequester *self,
                                           const ZUV_Service_Admin_CommandRequest *request)
{
    DDS_WriteParams_t requestInfo = DDS_WRITEPARAMS_DEFAULT;
    return reported(
        ZUV_BrelServiceAdminRequester_send_request_w_params(self, request, &requestInfo),
        DDS_RETCODE_OK, "send request");
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_take_reply_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReply *reply,
    DDS_SampleInfo *sample_info, const DDS_SampleIdentity_t *related_request_info)
{
    return getReply(self, reply, sample_info, related_request_info, DDS_BOOLEAN_TRUE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_take_reply(ZUV_BrelServiceAdminRequester *self,
                                                          ZUV_Service_Admin_CommandReply *reply,
                                                          DDS_SampleInfo *sample_info)
{
    return getReply(self, reply, sample_info, nullptr, DDS_BOOLEAN_TRUE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_read_reply_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReply *reply,
    DDS_SampleInfo *sample_info, const DDS_SampleIdentity_t *related_request_info)
{
    return getReply(self, reply, sample_info, related_request_info, DDS_BOOLEAN_FALSE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_read_reply(ZUV_BrelServiceAdminRequester *self,
                                                          ZUV_Service_Admin_CommandReply *reply,
                                                          DDS_SampleInfo *sample_info)
{
    return getReply(self, reply, sample_info, nullptr, DDS_BOOLEAN_FALSE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_loan_or_copy_samplesI(
    ZUV_BrelServiceAdminRequester *self, DDS_ReturnCode_t code,
    ZUV_Service_Admin_CommandReplySeq *replies, DDS_Boolean is_loan, void **data, DDS_Long count,
    DDS_SampleInfoSeq *info_seq)
{
    return loanOrCopySamples<ReplyType>(self->parent._impl, code, replies, {data, count, is_loan},
                                        info_seq);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_take_replies_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReplySeq *replies,
    DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count,
    const DDS_SampleIdentity_t *related_request_info)
{
    return getReplies(self, replies, info_seq, max_reply_count, related_request_info,
                      DDS_BOOLEAN_TRUE);
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_take_replies(ZUV_BrelServiceAdminRequester *self,
                                           ZUV_Service_Admin_CommandReplySeq *replies,
                                           DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count)
{
    return getReplies(self, replies, info_seq, max_reply_count, nullptr, DDS_BOOLEAN_TRUE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_read_replies_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReplySeq *replies,
    DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count,
    const DDS_SampleIdentity_t *related_request_info)
{
    return getReplies(self, replies, info_seq, max_reply_count, related_request_info,
                      DDS_BOOLEAN_FALSE);
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_read_replies(ZUV_BrelServiceAdminRequester *self,
                                           ZUV_Service_Admin_CommandReplySeq *replies,
                                           DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count)
{
    return getReplies(self, replies, info_seq, max_reply_count, nullptr, DDS_BOOLEAN_FALSE);
}

DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_receive_reply(ZUV_BrelServiceAdminRequester *self,
                                                             ZUV_Service_Admin_CommandReply *reply,
                                                             DDS_SampleInfo *sample_info,
                                                             const DDS_Duration_t *max_wait)
{
    if (isAnyMissing({{self, "self"},
                      {reply, "reply"},
                      {sample_info, "sample_info"},
                      {max_wait, "max_wait"}})) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    sample_info->valid_data = DDS_BOOLEAN_FALSE;
    return receive(
        makeWait(self, 1, max_wait), "wait for replies",
        [=] { return ZUV_BrelServiceAdminRequester_take_reply(self, reply, sample_info); },
        "get reply");
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_receive_replies(ZUV_BrelServiceAdminRequester *self,
                                              ZUV_Service_Admin_CommandReplySeq *replies,
                                              DDS_SampleInfoSeq *info_seq, DDS_Long min_count,
                                              DDS_Long max_count, const DDS_Duration_t *max_wait)
{
    if (isAnyMissing({{self, "self"},
                      {replies, "replies"},
                      {info_seq, "info_seq"},
                      {max_wait, "max_wait"}}) ||
        !ZUV_Talvane_EntityUntypedImpl_validate_receive_params(
            self->parent._impl, "ZUV_BrelServiceAdminRequester_receive_replies", min_count,
            max_count, max_wait)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return receive(
        makeWait(self, min_count, max_wait), "wait for replies",
        [=] {
            return ZUV_BrelServiceAdminRequester_take_replies(self, replies, info_seq, max_count);
        },
        "get replies");
}

ZUV_Service_Admin_CommandRequestDataWriter *
ZUV_BrelServiceAdminRequester_get_request_datawriter(ZUV_BrelServiceAdminRequester *self)
{
    if (isAnyMissing({{self, "self"}})) {
        return nullptr;
    }
    return narrowEntity(ZUV_Talvane_EntityUntypedImpl_get_datawriter(self->parent._impl),
                        ZUV_Service_Admin_CommandRequestDataWriter_narrow, "request DataWriter");
}

ZUV_Service_Admin_CommandReplyDataReader *
ZUV_BrelServiceAdminRequester_get_reply_datareader(ZUV_BrelServiceAdminRequester *self)
{
    if (isAnyMissing({{self, "self"}})) {
        return nullptr;
    }
    return narrowEntity(ZUV_Talvane_EntityUntypedImpl_get_datareader(self->parent._impl),
                        ReplyType::narrow, "reply DataReader");
}

DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_return_loan(ZUV_BrelServiceAdminRequester *self,
                                          ZUV_Service_Admin_CommandReplySeq *replies,
                                          DDS_SampleInfoSeq *info_seq)
{
    if (isAnyMissing({{self, "self"}, {replies, "replies"}, {info_seq, "info_seq"}})) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return returnLoan<ReplyType>(self->parent._impl, replies, info_seq);
}
