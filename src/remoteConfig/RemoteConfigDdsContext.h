/* The DDS side of an administration endpoint, in the same form for the client and the server. */
#ifndef ZUV_REMOTE_CONFIG_REMOTE_CONFIG_DDS_CONTEXT_H
#define ZUV_REMOTE_CONFIG_REMOTE_CONFIG_DDS_CONTEXT_H

#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Whoever holds the record owns its entities and QoS records. A record of zeros is an empty one. */
typedef struct BRELRemoteConfigDdsContext {
    DDS_DomainParticipant *_participant;
    DDS_Publisher *_publisher;
    DDS_Subscriber *_subscriber;
    DDS_TopicQos _topicQos; /* not touched by the client */
    DDS_DataWriterQos _writerQos;
    DDS_DataReaderQos _readerQos;
    /* Borrowed texts, set by the server; the client's names are fixed. */
    const char *replyTopicName;
    const char *requesTopicName;
    const char *replyTypeName;
    const char *requesTypeName;
} BRELRemoteConfigDdsContext;

#ifdef __cplusplus
}
#endif

#endif
