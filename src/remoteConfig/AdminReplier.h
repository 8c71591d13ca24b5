/* The replier of the administration protocol: it gets command requests and sends the replies.
 *
 * A reply is related to its request by the sample identity in the request's info. The replier has no lock
 * of its own; the untyped one that it stands on may be used from several threads.
 *
 * Results are DDS_RETCODE_OK; DDS_RETCODE_BAD_PARAMETER, after a report, for a NULL argument that is not
 * allowed; and what the middleware gives, reported unless it is DDS_RETCODE_NO_DATA (nothing to get) or
 * DDS_RETCODE_TIMEOUT (nothing came in time). */
#ifndef ZUV_REMOTE_CONFIG_ADMIN_REPLIER_H
#define ZUV_REMOTE_CONFIG_ADMIN_REPLIER_H

#include "platform/talvane/Replier.h"
#include "remoteConfig/ServiceAdminSupport.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUV_BrelServiceAdminReplier {
    ZUV_Talvane_Replier parent;
} ZUV_BrelServiceAdminReplier;

/* A replier on the topics that are named after `service_name`, or as `params` say. A listener in the
 * parameters is copied and called on a thread of the middleware when requests have arrived; without one the
 * requests wait to be asked for. NULL, after a report, on failure. Release with ZUV_Talvane_Replier_delete of
 * `parent`, which frees the record too. */
ZUV_BrelServiceAdminReplier *ZUV_BrelServiceAdminReplier_create(DDS_DomainParticipant *participant,
                                                                const char *service_name);
ZUV_BrelServiceAdminReplier *
ZUV_BrelServiceAdminReplier_create_w_params(const ZUV_Talvane_ReplierParams *params);

/* Copy one request into `request`, an initialized sample, and its info into `sample_info`. `take` removes it
 * from the replier, `read` leaves it there. Without DDS_RETCODE_OK, `sample_info->valid_data` is false. */
DDS_ReturnCode_t ZUV_BrelServiceAdminReplier_take_request(ZUV_BrelServiceAdminReplier *self,
                                                          ZUV_Service_Admin_CommandRequest *request,
                                                          DDS_SampleInfo *sample_info);
DDS_ReturnCode_t ZUV_BrelServiceAdminReplier_read_request(ZUV_BrelServiceAdminReplier *self,
                                                          ZUV_Service_Admin_CommandRequest *request,
                                                          DDS_SampleInfo *sample_info);

/* Get up to `max_request_count` requests (or DDS_LENGTH_UNLIMITED): as copies if `requests` owns elements, else
 * as a loan, to be given back with ZUV_BrelServiceAdminReplier_return_loan. With DDS_RETCODE_NO_DATA the
 * sequence has length 0 and there is no loan; DDS_RETCODE_ERROR when the sequence cannot hold the requests. */
DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_take_requests(ZUV_BrelServiceAdminReplier *self,
                                          ZUV_Service_Admin_CommandRequestSeq *requests,
                                          DDS_SampleInfoSeq *info_seq, DDS_Long max_request_count);
DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_read_requests(ZUV_BrelServiceAdminReplier *self,
                                          ZUV_Service_Admin_CommandRequestSeq *requests,
                                          DDS_SampleInfoSeq *info_seq, DDS_Long max_request_count);

/* Wait at most `max_wait` for a request, then take it. */
DDS_ReturnCode_t ZUV_BrelServiceAdminReplier_receive_request(
    ZUV_BrelServiceAdminReplier *self, ZUV_Service_Admin_CommandRequest *request,
    DDS_SampleInfo *sample_info, const DDS_Duration_t *max_wait);

/* Wait for `min_count` requests, then take up to `max_count`. DDS_RETCODE_BAD_PARAMETER as well when the counts
 * or the wait make no sense. */
DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_receive_requests(ZUV_BrelServiceAdminReplier *self,
                                             ZUV_Service_Admin_CommandRequestSeq *requests,
                                             DDS_SampleInfoSeq *info_seq, DDS_Long min_count,
                                             DDS_Long max_count, const DDS_Duration_t *max_wait);

/* Send the reply to the request of the identity `related_request_id`, taken from the request's info. */
DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_send_reply(ZUV_BrelServiceAdminReplier *self,
                                       const ZUV_Service_Admin_CommandReply *reply,
                                       const DDS_SampleIdentity_t *related_request_id);

/* The endpoints, owned by the replier. NULL, after a report, when there is none. */
ZUV_Service_Admin_CommandReplyDataWriter *
ZUV_BrelServiceAdminReplier_get_reply_datawriter(ZUV_BrelServiceAdminReplier *self);
ZUV_Service_Admin_CommandRequestDataReader *
ZUV_BrelServiceAdminReplier_get_request_datareader(ZUV_BrelServiceAdminReplier *self);

/* Give back a loan of requests. DDS_RETCODE_ERROR when the replier has no reader. */
DDS_ReturnCode_t
ZUV_BrelServiceAdminReplier_return_loan(ZUV_BrelServiceAdminReplier *self,
                                        ZUV_Service_Admin_CommandRequestSeq *replies,
                                        DDS_SampleInfoSeq *info_seq);

#ifdef __cplusplus
}
#endif

#endif
