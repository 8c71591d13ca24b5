/* How a requester or replier is described to the operations that make one. */
#ifndef ZUV_PLATFORM_TALVANE_PARAMS_H
#define ZUV_PLATFORM_TALVANE_PARAMS_H

#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

struct ZUV_Talvane_Replier;

/* Makes a type known to a participant under a name: the typed supports' register_type. */
typedef DDS_ReturnCode_t (*ZUV_Talvane_RegisterTypeFunction)(DDS_DomainParticipant *participant,
                                                             const char *typeName);

/* Called when requests have arrived, by one thread at a time: one of the middleware's, but for requests that
 * arrive while the replier is being made that which makes it. */
typedef struct ZUV_Talvane_ReplierListener {
    void (*on_request_available)(struct ZUV_Talvane_Replier *replier, void *user_data);
    void *user_data;
} ZUV_Talvane_ReplierListener;

/* Gives the reply to a request at once. `on_request_available` returns the reply or NULL for none;
 * `return_loan` gets the reply back after it was sent. */
typedef struct ZUV_Talvane_SimpleReplierListener {
    void *(*on_request_available)(struct ZUV_Talvane_Replier *replier, const void *request,
                                  const DDS_SampleInfo *info, void *user_data);
    void (*return_loan)(void *reply, void *user_data);
    void *user_data;
} ZUV_Talvane_SimpleReplierListener;

/* All pointers stay the caller's and are used during the call only, but for `participant`, `publisher` and
 * `subscriber`, which must outlive the requester or replier. A record of zeros is an empty one.
 *
 * Topics: `request_topic_name` and `reply_topic_name`, or, where one is NULL, `service_name` with "Request" or
 * "Reply" behind it. The name on the reading side may be that of a filtered topic that exists in the
 * participant. A topic that exists is used, another one is made, with the type's registered name.
 *
 * QoS: `datawriter_qos` and `datareader_qos`, or, where one is NULL, reliable with a history that keeps all.
 * Profiles from XML are not read yet: with `qos_library_name` or `qos_profile_name` set the operation fails.
 *
 * `publisher` and `subscriber`: NULL takes the participant's own. */
typedef struct ZUV_Talvane_RequesterParams {
    DDS_DomainParticipant *participant;
    const char *service_name;
    const char *request_topic_name;
    const char *reply_topic_name;
    const char *qos_library_name;
    const char *qos_profile_name;
    const DDS_DataWriterQos *datawriter_qos;
    const DDS_DataReaderQos *datareader_qos;
    DDS_Publisher *publisher;
    DDS_Subscriber *subscriber;
} ZUV_Talvane_RequesterParams;

typedef struct ZUV_Talvane_ReplierParams {
    DDS_DomainParticipant *participant;
    const char *service_name;
    const char *request_topic_name;
    const char *reply_topic_name;
    const char *qos_library_name;
    const char *qos_profile_name;
    const DDS_DataWriterQos *datawriter_qos;
    const DDS_DataReaderQos *datareader_qos;
    DDS_Publisher *publisher;
    DDS_Subscriber *subscriber;
    const ZUV_Talvane_ReplierListener *listener; /* or NULL; the typed replier installs it */
} ZUV_Talvane_ReplierParams;

/* What both have in common. */
typedef ZUV_Talvane_RequesterParams ZUV_Talvane_EntityParams;

/* Fill `entityParams` with what `self` says, listener aside. Neither may be NULL. */
void ZUV_Talvane_ReplierParams_toEntityParams(const ZUV_Talvane_ReplierParams *self,
                                              ZUV_Talvane_EntityParams *entityParams);

#ifdef __cplusplus
}
#endif

#endif
