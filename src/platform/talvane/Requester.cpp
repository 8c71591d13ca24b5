#include "platform/talvane/Requester.h"

#include <new>

#include "EntityImpl.hpp"
#include "Inbox.hpp"
#include "platform/dds/Report.hpp"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"

using zuv::talvane::Inbox;

namespace
{

constexpr char kTag[] = "Talvane RequesterUntypedImpl";

DDS_ReturnCode_t waitForReplies(ZUV_Talvane_Requester *self, DDS_Long minCount,
                                const DDS_Duration_t *maxWait, const DDS_SampleIdentity_t *related)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(maxWait)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->_impl == nullptr || self->_impl->inbox == nullptr ||
        ZUV_OSAPI_FAULT("talvane.wait_for_replies")) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "wait for replies");
        return DDS_RETCODE_ERROR;
    }
    if (minCount > static_cast<DDS_Long>(Inbox::kMaxReplies)) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "wait for more replies than are kept");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    return self->_impl->inbox->wait(minCount, zuv::talvane::deadlineAfter(*maxWait), related)
               ? DDS_RETCODE_OK
               : DDS_RETCODE_TIMEOUT;
}

} // namespace

ZUV_Talvane_RequesterUntypedImpl *ZUV_Talvane_RequesterUntypedImpl_create(
    const ZUV_Talvane_RequesterParams *params, ZUV_Talvane_RegisterTypeFunction registerRequest,
    const char *requestTypeName, ZUV_Talvane_RegisterTypeFunction registerReply,
    const char *replyTypeName, DDS_UnsignedLong replySize)
{
    if (ZUV_TALVANE_IS_NULL(params) || ZUV_TALVANE_IS_NULL(registerRequest) ||
        ZUV_TALVANE_IS_NULL(requestTypeName) || ZUV_TALVANE_IS_NULL(registerReply) ||
        ZUV_TALVANE_IS_NULL(replyTypeName)) {
        return nullptr;
    }
    auto *const made = ZUV_OSAPI_FAULT("talvane.create_requester")
                           ? nullptr
                           : zuv::dds::heapNew<ZUV_Talvane_RequesterUntypedImpl>(kTag);
    if (made == nullptr) {
        ZUV_TALVANE_REPORT_TEMPLATE(&ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE, "%s", kTag);
        return nullptr;
    }
    made->receivedSize = replySize;
    const zuv::talvane::EntityTypes types = {registerRequest, requestTypeName, registerReply,
                                             replyTypeName};
    if (zuv::talvane::openEntity(*made, zuv::talvane::Role::kRequester, *params, types, nullptr) !=
        DDS_RETCODE_OK) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "requester");
        zuv::dds::heapDelete(made);
        return nullptr;
    }
    return made;
}

DDS_ReturnCode_t ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned(
    ZUV_Talvane_RequesterUntypedImpl *self, void ***dataPtrArray, DDS_Long *dataCount,
    DDS_Boolean *isLoan, void *dataBuffer, DDS_SampleInfoSeq *infoSeq, DDS_Long /* dataSeqLength */,
    DDS_Long dataSeqMaximum, DDS_Boolean dataSeqHasOwnership, DDS_Long maxCount,
    const DDS_SampleIdentity_t *relatedRequest, DDS_Boolean take)
{
    if (ZUV_TALVANE_IS_NULL(self) || ZUV_TALVANE_IS_NULL(dataPtrArray) ||
        ZUV_TALVANE_IS_NULL(dataCount) || ZUV_TALVANE_IS_NULL(isLoan) ||
        ZUV_TALVANE_IS_NULL(infoSeq)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    *dataPtrArray = nullptr;
    *dataCount = 0;
    if (self->inbox == nullptr) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "get replies");
        return DDS_RETCODE_ERROR;
    }
    bool isLent = true;
    DDS_ReturnCode_t code = zuv::dds::checkReceiver(
        *infoSeq, dataSeqMaximum, dataSeqHasOwnership != 0, dataBuffer, maxCount, &isLent);
    *isLoan = isLent ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    if (code == DDS_RETCODE_OK) {
        const DDS_Long room = isLent || maxCount >= 0 ? maxCount : dataSeqMaximum;
        code = self->inbox->deliver({dataPtrArray, dataCount, infoSeq, isLent, dataBuffer,
                                     self->receivedSize, room, relatedRequest, take != 0});
    }
    if (code != DDS_RETCODE_OK && code != DDS_RETCODE_NO_DATA) {
        ZUV_TALVANE_REPORT(&ZUV_LOG_ANY_FAILURE_s, "get replies");
    }
    return code;
}

DDS_ReturnCode_t ZUV_Talvane_Requester_wait_for_replies(ZUV_Talvane_Requester *self,
                                                        DDS_Long minCount,
                                                        const DDS_Duration_t *maxWait)
{
    return waitForReplies(self, minCount, maxWait, nullptr);
}

DDS_ReturnCode_t ZUV_Talvane_Requester_wait_for_replies_for_related_request(
    ZUV_Talvane_Requester *self, DDS_Long minCount, const DDS_Duration_t *maxWait,
    const DDS_SampleIdentity_t *relatedRequest)
{
    if (ZUV_TALVANE_IS_NULL(relatedRequest)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return waitForReplies(self, minCount, maxWait, relatedRequest);
}

DDS_ReturnCode_t ZUV_Talvane_Requester_delete(ZUV_Talvane_Requester *self)
{
    if (ZUV_TALVANE_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->_impl != nullptr) {
        const DDS_ReturnCode_t code = ZUV_OSAPI_FAULT("talvane.delete_requester")
                                          ? DDS_RETCODE_ERROR
                                          : zuv::talvane::closeEntity(*self->_impl);
        if (code != DDS_RETCODE_OK) {
            ZUV_TALVANE_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "requester");
            return code;
        }
        zuv::dds::heapDelete(self->_impl);
    }
    ZUVOsapiHeap_free(self);
    return DDS_RETCODE_OK;
}
