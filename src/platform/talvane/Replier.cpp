#include "platform/talvane/Replier.h"

#include <algorithm>

#include "Doorbell.hpp"
#include "EntityImpl.hpp"
#include "ListenerGate.hpp"
#include "platform/dds/Report.hpp"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"

namespace
{

constexpr char kTag[] = "Talvane ReplierUntypedImpl";

// The longest that a reply waits for its requester's reader to match.
constexpr DDS_Duration_t kMaxMatchWait = {1, 0};

DDS_Duration_t matchWaitOf(DDS_DataWriter *writer)
{
    DDS_DataWriterQos qos = {};
    DDS_Duration_t wait = kMaxMatchWait;
    if (DDS_DataWriter_get_qos(writer, &qos) == DDS_RETCODE_OK &&
        DDS_Duration_to_nanoseconds(&qos.reliability.max_blocking_time) <
            DDS_Duration_to_nanoseconds(&kMaxMatchWait)) {
        wait = qos.reliability.max_blocking_time;
    }
    DDS_DataWriterQos_finalize(&qos);
    return wait;
}

} // namespace

void ZUV_Talvane_ReplierParams_toEntityParams(const ZUV_Talvane_ReplierParams *self,
                                              ZUV_Talvane_EntityParams *entityParams)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(entityParams)) {
        return;
    }
    *entityParams = {self->participant,      self->service_name,     self->request_topic_name,
                     self->reply_topic_name, self->qos_library_name, self->qos_profile_name,
                     self->datawriter_qos,   self->datareader_qos,   self->publisher,
                     self->subscriber};
}

ZUV_Talvane_ReplierUntypedImpl *ZUV_Talvane_ReplierUntypedImpl_create(void)
{
    auto *const made = ZUV_OSAPI_FAULT("talvane.create_replier")
                           ? nullptr
                           : zuv::dds::heapNew<ZUV_Talvane_ReplierUntypedImpl>(kTag);
    if (made == nullptr) {
        ZUV_TALVANE_REPORT_TEMPLATE(&ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE, "%s", kTag);
    }
    return made;
}

DDS_ReturnCode_t ZUV_Talvane_ReplierUntypedImpl_initialize(
    ZUV_Talvane_ReplierUntypedImpl *self, const ZUV_Talvane_EntityParams *params,
    ZUV_Talvane_RegisterTypeFunction registerRequest, const char *requestTypeName,
    ZUV_Talvane_RegisterTypeFunction registerReply, const char *replyTypeName,
    DDS_UnsignedLong requestSize, const DDS_DataReaderListener *readerListener)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(params) ||
        ZUV_TALVANE_IS_NULL(registerRequest) || ZUV_TALVANE_IS_NULL(requestTypeName) ||
        ZUV_TALVANE_IS_NULL(registerReply) || ZUV_TALVANE_IS_NULL(replyTypeName)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->reader != nullptr) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "initialize a replier twice");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    self->receivedSize = requestSize;
    const zuv::talvane::EntityTypes types = {registerRequest, requestTypeName, registerReply,
                                             replyTypeName};
    const DDS_ReturnCode_t code = zuv::talvane::openEntity(*self, zuv::talvane::Role::kReplier,
                                                           *params, types, readerListener);
    if (code != DDS_RETCODE_OK) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "replier");
        return code;
    }
    self->matchWait = matchWaitOf(self->writer);
    if (self->gate != nullptr) {
        self->gate->open(self->reader);
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t
ZUV_Talvane_ReplierUntypedImpl_send_sample(ZUV_Talvane_ReplierUntypedImpl *self, const void *data,
                                           const DDS_SampleIdentity_t *relatedRequest,
                                           DDS_WriteParams_t *params)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(data) ||
        ZUV_TALVANE_IS_NULL(relatedRequest) || ZUV_TALVANE_IS_NULL(params)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->doorbell != nullptr) {
        self->doorbell->awaitRequester(*self->writer, relatedRequest->writer_guid, self->matchWait);
    }
    params->related_sample_identity = *relatedRequest;
    return ZUV_Talvane_EntityUntypedImpl_send_sample(self, data, params);
}

void ZUV_Talvane_Replier_on_data_available(void *listenerData, DDS_DataReader * /* reader */)
{
    auto *const replier = static_cast<ZUV_Talvane_Replier *>(listenerData);
    if (ZUV_TALVANE_IS_NULL(replier)) {
        return;
    }
    if (replier->listener.on_request_available != nullptr) {
        replier->listener.on_request_available(replier, replier->listener.user_data);
    }
}

DDS_ReturnCode_t ZUV_Talvane_Replier_wait_for_requests(ZUV_Talvane_Replier *self, DDS_Long minCount,
                                                       const DDS_Duration_t *maxWait)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(maxWait)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->_impl == nullptr || self->_impl->doorbell == nullptr ||
        ZUV_OSAPI_FAULT("talvane.wait_for_requests")) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "wait for requests");
        return DDS_RETCODE_ERROR;
    }
    return self->_impl->doorbell->wait(minCount, zuv::talvane::deadlineAfter(*maxWait))
               ? DDS_RETCODE_OK
               : DDS_RETCODE_TIMEOUT;
}

DDS_ReturnCode_t ZUV_Talvane_Replier_delete(ZUV_Talvane_Replier *self)
{
    if (ZUV_TALVANE_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->_impl != nullptr) {
        const DDS_ReturnCode_t code = ZUV_OSAPI_FAULT("talvane.delete_replier")
                                          ? DDS_RETCODE_ERROR
                                          : zuv::talvane::closeEntity(*self->_impl);
        if (code != DDS_RETCODE_OK) {
            ZUV_TALVANE_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "replier");
            return code;
        }
        zuv::dds::heapDelete(self->_impl);
    }
    ZUVOsapiHeap_free(self);
    return DDS_RETCODE_OK;
}
