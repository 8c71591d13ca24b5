/* A participant: the membership in a domain, and the factory of everything in it (OMG DDS 1.4, 2.2.2.2.1).
 *
 * Operations on one participant may be called from several threads, except those that delete: no other
 * thread may use what is being deleted. What takes a QoS copies it; NULL is not allowed, the
 * DDS_..._QOS_DEFAULT constants stand for the participant's default. */
#ifndef ZUV_PLATFORM_DDS_DOMAIN_PARTICIPANT_H
#define ZUV_PLATFORM_DDS_DOMAIN_PARTICIPANT_H

#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"
#include "platform/osapi/Time.h"

#ifdef __cplusplus
extern "C" {
#endif

struct ZUVTypePlugin;

/* No listeners of these kinds exist; the arguments must be NULL. */
struct DDS_TopicListener;
struct DDS_PublisherListener;
struct DDS_SubscriberListener;

DDS_Entity *DDS_DomainParticipant_as_entity(DDS_DomainParticipant *self);
DDS_Long DDS_DomainParticipant_get_domain_id(DDS_DomainParticipant *self);

/* Give `qos`, a valid record, the participant's QoS. */
DDS_ReturnCode_t DDS_DomainParticipant_get_qos(DDS_DomainParticipant *self,
                                               DDS_DomainParticipantQos *qos);

/* Give `qos`, a valid record, the QoS that further entities get for DDS_..._QOS_DEFAULT. */
DDS_ReturnCode_t DDS_DomainParticipant_get_default_topic_qos(DDS_DomainParticipant *self,
                                                             DDS_TopicQos *qos);
DDS_ReturnCode_t DDS_DomainParticipant_get_default_publisher_qos(DDS_DomainParticipant *self,
                                                                 DDS_PublisherQos *qos);
DDS_ReturnCode_t DDS_DomainParticipant_get_default_subscriber_qos(DDS_DomainParticipant *self,
                                                                  DDS_SubscriberQos *qos);
DDS_ReturnCode_t DDS_DomainParticipant_get_default_datawriter_qos(DDS_DomainParticipant *self,
                                                                  DDS_DataWriterQos *qos);
DDS_ReturnCode_t DDS_DomainParticipant_get_default_datareader_qos(DDS_DomainParticipant *self,
                                                                  DDS_DataReaderQos *qos);

/* Change the default for further topics. The participant is as before on failure. */
DDS_ReturnCode_t DDS_DomainParticipant_set_default_topic_qos(DDS_DomainParticipant *self,
                                                             const DDS_TopicQos *qos);

/* Make a type known under `typeName`. `plugin` is used during the call only; what it describes must live as
 * long as the process. The same type again under the same name is counted; another one under a name in use
 * gives DDS_RETCODE_PRECONDITION_NOT_MET. */
DDS_ReturnCode_t DDS_DomainParticipant_register_type(DDS_DomainParticipant *self,
                                                     const char *typeName,
                                                     const struct ZUVTypePlugin *plugin);

/* Undo one registration. DDS_RETCODE_PRECONDITION_NOT_MET while a topic uses the type, or when there is no
 * such registration. */
DDS_ReturnCode_t DDS_DomainParticipant_unregister_type(DDS_DomainParticipant *self,
                                                       const char *typeName);

/* A topic of a registered type. The name must be new in the participant. `listener` must be NULL. */
DDS_Topic *DDS_DomainParticipant_create_topic(DDS_DomainParticipant *self, const char *topicName,
                                              const char *typeName, const DDS_TopicQos *qos,
                                              const struct DDS_TopicListener *listener,
                                              DDS_StatusMask mask);

/* DDS_RETCODE_PRECONDITION_NOT_MET while a reader, a writer or a filtered topic uses it. */
DDS_ReturnCode_t DDS_DomainParticipant_delete_topic(DDS_DomainParticipant *self, DDS_Topic *topic);

/* A topic that yields only those samples of `relatedTopic` that `expression` admits; see ContentFilter.h
 * for its grammar. `parameters` must be empty or NULL: the grammar has none. An expression that cannot be
 * read is refused: NULL after a log line. The filter is evaluated in this process, whoever writes. */
DDS_ContentFilteredTopic *
DDS_DomainParticipant_create_contentfilteredtopic(DDS_DomainParticipant *self, const char *name,
                                                  DDS_Topic *relatedTopic, const char *expression,
                                                  const DDS_StringSeq *parameters);

/* DDS_RETCODE_PRECONDITION_NOT_MET while a reader uses it. */
DDS_ReturnCode_t DDS_DomainParticipant_delete_contentfilteredtopic(DDS_DomainParticipant *self,
                                                                   DDS_ContentFilteredTopic *topic);

/* The topic or filtered topic `name` of this participant, or NULL. Still owned by the participant. */
DDS_TopicDescription *DDS_DomainParticipant_lookup_topicdescription(DDS_DomainParticipant *self,
                                                                    const char *name);

/* `listener` must be NULL. NULL, after a log line, on failure. */
DDS_Publisher *DDS_DomainParticipant_create_publisher(DDS_DomainParticipant *self,
                                                      const DDS_PublisherQos *qos,
                                                      const struct DDS_PublisherListener *listener,
                                                      DDS_StatusMask mask);
DDS_Subscriber *
DDS_DomainParticipant_create_subscriber(DDS_DomainParticipant *self, const DDS_SubscriberQos *qos,
                                        const struct DDS_SubscriberListener *listener,
                                        DDS_StatusMask mask);

/* DDS_RETCODE_PRECONDITION_NOT_MET, and nothing done, while it contains entities, or is of another
 * participant. */
DDS_ReturnCode_t DDS_DomainParticipant_delete_publisher(DDS_DomainParticipant *self,
                                                        DDS_Publisher *publisher);
DDS_ReturnCode_t DDS_DomainParticipant_delete_subscriber(DDS_DomainParticipant *self,
                                                         DDS_Subscriber *subscriber);

/* The publisher and subscriber that serve whoever brings none; made when first asked for. */
DDS_Publisher *DDS_DomainParticipant_get_implicit_publisher(DDS_DomainParticipant *self);
DDS_Subscriber *DDS_DomainParticipant_get_implicit_subscriber(DDS_DomainParticipant *self);

/* Delete everything made by this participant. DDS_RETCODE_PRECONDITION_NOT_MET when a reader's samples are
 * still on loan; what was deleted before stays deleted, and the call may be repeated. */
DDS_ReturnCode_t DDS_DomainParticipant_delete_contained_entities(DDS_DomainParticipant *self);

#ifdef __cplusplus
}
#endif

#endif
