/* The requester of the administration protocol: it sends command requests and gets the replies.
 *
 * A reply belongs to a request through the sample identity of the request, and through no member of the
 * types. The requester has no lock of its own; the untyped one that it stands on may be used from several
 * threads.
 *
 * Results are DDS_RETCODE_OK; DDS_RETCODE_BAD_PARAMETER, after a report, for a NULL argument that is not
 * allowed; and what the middleware gives, reported unless it is DDS_RETCODE_NO_DATA (nothing to get) or
 * DDS_RETCODE_TIMEOUT (nothing came in time). */
#ifndef ZUV_REMOTE_CONFIG_ADMIN_REQUESTER_H
#define ZUV_REMOTE_CONFIG_ADMIN_REQUESTER_H

#include "platform/talvane/Requester.h"
#include "remoteConfig/ServiceAdminSupport.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUV_BrelServiceAdminRequester {
    ZUV_Talvane_Requester parent;
} ZUV_BrelServiceAdminRequester;

/* A requester on the topics that are named after `service_name`, or as `params` say. NULL, after a report,
 * on failure. Release with ZUV_Talvane_Requester_delete of `parent`, which frees the record too. */
ZUV_BrelServiceAdminRequester *
ZUV_BrelServiceAdminRequester_create(DDS_DomainParticipant *participant, const char *service_name);
ZUV_BrelServiceAdminRequester *
ZUV_BrelServiceAdminRequester_create_w_params(const ZUV_Talvane_RequesterParams *params);

/* Send a request. `request_info->identity` is then the identity that its replies are related to. */
DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_send_request_w_params(ZUV_BrelServiceAdminRequester *self,
                                                    const ZUV_Service_Admin_CommandRequest *request,
                                                    DDS_WriteParams_t *request_info);
DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_send_request(ZUV_BrelServiceAdminRequester *self,
                                           const ZUV_Service_Admin_CommandRequest *request);

/* Copy one reply into `reply`, an initialized sample, and its info into `sample_info`. `take` removes it
 * from the requester, `read` leaves it there. The related forms get only a reply to the request of that
 * identity; a NULL identity means any request. Without DDS_RETCODE_OK, `sample_info->valid_data` is false. */
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_take_reply_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReply *reply,
    DDS_SampleInfo *sample_info, const DDS_SampleIdentity_t *related_request_info);
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_take_reply(ZUV_BrelServiceAdminRequester *self,
                                                          ZUV_Service_Admin_CommandReply *reply,
                                                          DDS_SampleInfo *sample_info);
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_read_reply_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReply *reply,
    DDS_SampleInfo *sample_info, const DDS_SampleIdentity_t *related_request_info);
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_read_reply(ZUV_BrelServiceAdminRequester *self,
                                                          ZUV_Service_Admin_CommandReply *reply,
                                                          DDS_SampleInfo *sample_info);

/* Get up to `max_reply_count` replies (or DDS_LENGTH_UNLIMITED): as copies if `replies` owns elements, else as
 * a loan, to be given back with ZUV_BrelServiceAdminRequester_return_loan. With DDS_RETCODE_NO_DATA the
 * sequence has length 0 and there is no loan; DDS_RETCODE_ERROR when the sequence cannot hold the replies. */
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_take_replies_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReplySeq *replies,
    DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count,
    const DDS_SampleIdentity_t *related_request_info);
DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_take_replies(ZUV_BrelServiceAdminRequester *self,
                                           ZUV_Service_Admin_CommandReplySeq *replies,
                                           DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count);
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_read_replies_for_related_request(
    ZUV_BrelServiceAdminRequester *self, ZUV_Service_Admin_CommandReplySeq *replies,
    DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count,
    const DDS_SampleIdentity_t *related_request_info);
DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_read_replies(ZUV_BrelServiceAdminRequester *self,
                                           ZUV_Service_Admin_CommandReplySeq *replies,
                                           DDS_SampleInfoSeq *info_seq, DDS_Long max_reply_count);

/* The second step of those, for use within this module: complete `replies` after a get that gave `code`. The
 * `count` samples of `data` go into the sequence as a loan, or only its length is set when they were copied
 * into its elements. A loan that the sequence refuses goes back, and the result is DDS_RETCODE_ERROR; without
 * data the length becomes 0; any other code passes through. NULL is not allowed. */
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_loan_or_copy_samplesI(
    ZUV_BrelServiceAdminRequester *self, DDS_ReturnCode_t code,
    ZUV_Service_Admin_CommandReplySeq *replies, DDS_Boolean is_loan, void **data, DDS_Long count,
    DDS_SampleInfoSeq *info_seq);

/* Wait at most `max_wait` for a reply to any request, then take it. */
DDS_ReturnCode_t ZUV_BrelServiceAdminRequester_receive_reply(ZUV_BrelServiceAdminRequester *self,
                                                             ZUV_Service_Admin_CommandReply *reply,
                                                             DDS_SampleInfo *sample_info,
                                                             const DDS_Duration_t *max_wait);

/* Wait for `min_count` replies, then take up to `max_count`. DDS_RETCODE_BAD_PARAMETER as well when the counts
 * or the wait make no sense. */
DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_receive_replies(ZUV_BrelServiceAdminRequester *self,
                                              ZUV_Service_Admin_CommandReplySeq *replies,
                                              DDS_SampleInfoSeq *info_seq, DDS_Long min_count,
                                              DDS_Long max_count, const DDS_Duration_t *max_wait);

/* The endpoints, owned by the requester. NULL, after a report, when there is none. */
ZUV_Service_Admin_CommandRequestDataWriter *
ZUV_BrelServiceAdminRequester_get_request_datawriter(ZUV_BrelServiceAdminRequester *self);
ZUV_Service_Admin_CommandReplyDataReader *
ZUV_BrelServiceAdminRequester_get_reply_datareader(ZUV_BrelServiceAdminRequester *self);

/* Give back a loan. DDS_RETCODE_ERROR when the requester has no reader. */
DDS_ReturnCode_t
ZUV_BrelServiceAdminRequester_return_loan(ZUV_BrelServiceAdminRequester *self,
                                          ZUV_Service_Admin_CommandReplySeq *replies,
                                          DDS_SampleInfoSeq *info_seq);

#ifdef __cplusplus
}
#endif

#endif
