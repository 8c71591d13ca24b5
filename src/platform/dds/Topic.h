/* Topics and filtered topics (OMG DDS 1.4, 2.2.2.3). */
#ifndef ZUV_PLATFORM_DDS_TOPIC_H
#define ZUV_PLATFORM_DDS_TOPIC_H

#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

DDS_Entity *DDS_Topic_as_entity(DDS_Topic *self);

/* The same object in its general form. NULL gives NULL. */
DDS_TopicDescription *DDS_Topic_as_topicdescription(DDS_Topic *self);
DDS_TopicDescription *DDS_ContentFilteredTopic_as_topicdescription(DDS_ContentFilteredTopic *self);

/* The object in its special form, or NULL if it is of the other kind. */
DDS_Topic *DDS_Topic_narrow(DDS_TopicDescription *description);
DDS_ContentFilteredTopic *DDS_ContentFilteredTopic_narrow(DDS_TopicDescription *description);

/* Texts of the topic, valid as long as it. A filtered topic has the type of its related topic, and a name of
 * its own that only this participant knows. NULL for NULL. */
const char *DDS_TopicDescription_get_name(DDS_TopicDescription *self);
const char *DDS_TopicDescription_get_type_name(DDS_TopicDescription *self);
DDS_DomainParticipant *DDS_TopicDescription_get_participant(DDS_TopicDescription *self);

DDS_ReturnCode_t DDS_Topic_get_qos(DDS_Topic *self, DDS_TopicQos *qos);

/* The topic whose samples are filtered, and the expression. */
DDS_Topic *DDS_ContentFilteredTopic_get_related_topic(DDS_ContentFilteredTopic *self);
const char *DDS_ContentFilteredTopic_get_filter_expression(DDS_ContentFilteredTopic *self);

#ifdef __cplusplus
}
#endif

#endif
