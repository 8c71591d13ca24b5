/* Repliers without their types: get requests, send the replies to them. */
#ifndef ZUV_PLATFORM_TALVANE_REPLIER_H
#define ZUV_PLATFORM_TALVANE_REPLIER_H

#include "platform/talvane/Entity.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef ZUV_Talvane_EntityUntypedImpl ZUV_Talvane_ReplierUntypedImpl;

/* The base of every typed replier, and its first member. */
typedef struct ZUV_Talvane_Replier {
    ZUV_Talvane_ReplierUntypedImpl *_impl; /* owned; NULL in a half-made replier */
    ZUV_Talvane_ReplierListener listener;
    ZUV_Talvane_SimpleReplierListener simpleListener;
} ZUV_Talvane_Replier;

/* An empty replier, to be initialized. NULL, after a log line, without memory. */
ZUV_Talvane_ReplierUntypedImpl *ZUV_Talvane_ReplierUntypedImpl_create(void);

/* Register both types, make or find both topics, make the reader and the writer. `requestSize` is the size of a
 * request sample in memory; `readerListener`, if not NULL, is installed for arriving data. After a failure
 * `self` is empty again but for topics and registrations, which the participant keeps. */
DDS_ReturnCode_t ZUV_Talvane_ReplierUntypedImpl_initialize(
    ZUV_Talvane_ReplierUntypedImpl *self, const ZUV_Talvane_EntityParams *params,
    ZUV_Talvane_RegisterTypeFunction registerRequest, const char *requestTypeName,
    ZUV_Talvane_RegisterTypeFunction registerReply, const char *replyTypeName,
    DDS_UnsignedLong requestSize, const DDS_DataReaderListener *readerListener);

/* Send a reply to the request named `relatedRequest`, an identity out of the request's info. The match of the
 * requester's reader may lag behind the arrival of its request: the call waits for it, at most the writer's
 * reliability.max_blocking_time and at most one second, and then writes in any case. A requester that did not
 * match in that time is not waited for again. Codes as those of
 * DDS_DataWriter_write_untyped. */
DDS_ReturnCode_t
ZUV_Talvane_ReplierUntypedImpl_send_sample(ZUV_Talvane_ReplierUntypedImpl *self, const void *data,
                                           const DDS_SampleIdentity_t *relatedRequest,
                                           DDS_WriteParams_t *params);

/* The reader's on_data_available of a replier with a listener; `listenerData` is the replier. */
void ZUV_Talvane_Replier_on_data_available(void *listenerData, DDS_DataReader *reader);

/* Wait until `minCount` requests that were not read before are there, at most `maxWait`. Codes as those of
 * ZUV_Talvane_Requester_wait_for_replies. */
DDS_ReturnCode_t ZUV_Talvane_Replier_wait_for_requests(ZUV_Talvane_Replier *self, DDS_Long minCount,
                                                       const DDS_Duration_t *maxWait);

/* Delete the replier with its writer and reader, and free the record, which came from ZUVOsapiHeap; a half-made
 * one too. Topics stay. DDS_RETCODE_PRECONDITION_NOT_MET, and nothing done, while requests are on loan;
 * DDS_RETCODE_BAD_PARAMETER for NULL. */
DDS_ReturnCode_t ZUV_Talvane_Replier_delete(ZUV_Talvane_Replier *self);

#ifdef __cplusplus
}
#endif

#endif
