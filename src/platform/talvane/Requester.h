/* Requesters without their types: send requests, get the replies that are related to them.
 *
 * A reply belongs to a request through the sample identity of the request, which travels beside the reply
 * (DDSI-RTPS 2.5, 8.7.9), and through nothing in the data. Replies to the requests of others are dropped on
 * arrival. Replies that nobody takes are kept up to a bound, then the oldest give way, so that a reply that
 * came too late never keeps a later one from arriving. */
#ifndef ZUV_PLATFORM_TALVANE_REQUESTER_H
#define ZUV_PLATFORM_TALVANE_REQUESTER_H

#include "platform/talvane/Entity.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef ZUV_Talvane_EntityUntypedImpl ZUV_Talvane_RequesterUntypedImpl;

/* The base of every typed requester, and its first member. */
typedef struct ZUV_Talvane_Requester {
    ZUV_Talvane_RequesterUntypedImpl *_impl; /* owned */
} ZUV_Talvane_Requester;

/* Register both types, make or find both topics, make the writer and the reader. `replySize` is the size of a
 * reply sample in memory. NULL, after log lines, on failure; then nothing is left behind but topics and
 * registrations, which the participant keeps. */
ZUV_Talvane_RequesterUntypedImpl *ZUV_Talvane_RequesterUntypedImpl_create(
    const ZUV_Talvane_RequesterParams *params, ZUV_Talvane_RegisterTypeFunction registerRequest,
    const char *requestTypeName, ZUV_Talvane_RegisterTypeFunction registerReply,
    const char *replyTypeName, DDS_UnsignedLong replySize);

/* As ZUV_Talvane_EntityUntypedImpl_get_sample_loaned, restricted to the replies to one request if
 * `relatedRequest` is not NULL. */
DDS_ReturnCode_t ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned(
    ZUV_Talvane_RequesterUntypedImpl *self, void ***dataPtrArray, DDS_Long *dataCount,
    DDS_Boolean *isLoan, void *dataBuffer, DDS_SampleInfoSeq *infoSeq, DDS_Long dataSeqLength,
    DDS_Long dataSeqMaximum, DDS_Boolean dataSeqHasOwnership, DDS_Long maxCount,
    const DDS_SampleIdentity_t *relatedRequest, DDS_Boolean take);

/* Wait until `minCount` replies that were not read before are there (0 or less: return at once), at most
 * `maxWait`. A signal does not end the wait. DDS_RETCODE_TIMEOUT, not logged, when the time is over;
 * DDS_RETCODE_BAD_PARAMETER for NULL; DDS_RETCODE_PRECONDITION_NOT_MET for more replies than are ever kept. */
DDS_ReturnCode_t ZUV_Talvane_Requester_wait_for_replies(ZUV_Talvane_Requester *self,
                                                        DDS_Long minCount,
                                                        const DDS_Duration_t *maxWait);

/* The same, counting only replies to one request. */
DDS_ReturnCode_t ZUV_Talvane_Requester_wait_for_replies_for_related_request(
    ZUV_Talvane_Requester *self, DDS_Long minCount, const DDS_Duration_t *maxWait,
    const DDS_SampleIdentity_t *relatedRequest);

/* Delete the requester with its writer and reader, and free the record, which came from ZUVOsapiHeap. Topics stay.
 * DDS_RETCODE_PRECONDITION_NOT_MET, and nothing done, while replies are on loan; DDS_RETCODE_BAD_PARAMETER for
 * NULL. */
DDS_ReturnCode_t ZUV_Talvane_Requester_delete(ZUV_Talvane_Requester *self);

#ifdef __cplusplus
}
#endif

#endif
