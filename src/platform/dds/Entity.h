/* What all entities have in common, and the condition that tells of their statuses (OMG DDS 1.4, 2.2.2.1).
 *
 * Entities are records of the middleware behind pointers; a pointer to any of them may be converted to
 * DDS_Entity *, which the operations ..._as_entity do. */
#ifndef ZUV_PLATFORM_DDS_ENTITY_H
#define ZUV_PLATFORM_DDS_ENTITY_H

#include "platform/dds/SampleInfo.h"
#include "platform/dds/Status.h"
#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DDS_Entity DDS_Entity;
typedef struct DDS_DomainParticipantFactory DDS_DomainParticipantFactory;
typedef struct DDS_DomainParticipant DDS_DomainParticipant;
typedef struct DDS_TopicDescription DDS_TopicDescription;
typedef struct DDS_Topic DDS_Topic;
typedef struct DDS_ContentFilteredTopic DDS_ContentFilteredTopic;
typedef struct DDS_Publisher DDS_Publisher;
typedef struct DDS_Subscriber DDS_Subscriber;
typedef struct DDS_DataWriter DDS_DataWriter;
typedef struct DDS_DataReader DDS_DataReader;
typedef struct DDS_StatusCondition DDS_StatusCondition;

/* Let the entity take part in communication, and with it those that it contains, if its entity factory
 * policy says so. An enabled one stays as it is. DDS_RETCODE_BAD_PARAMETER for NULL,
 * DDS_RETCODE_PRECONDITION_NOT_MET when the entity's factory is not enabled, DDS_RETCODE_ERROR when the
 * middleware refuses; both leave the entity as it was. */
DDS_ReturnCode_t DDS_Entity_enable(DDS_Entity *self);

/* 1 if the entity is enabled. */
DDS_Boolean DDS_Entity_is_enabled(DDS_Entity *self);

/* The entity's condition; it lives as long as the entity. NULL, after a log line, for NULL. */
DDS_StatusCondition *DDS_Entity_get_statuscondition(DDS_Entity *self);

/* The entity's handle; DDS_HANDLE_NIL for NULL. */
DDS_InstanceHandle_t DDS_Entity_get_instance_handle(DDS_Entity *self);

/* Choose the statuses that trigger the condition: DDS_..._STATUS bits. All do at first. */
DDS_ReturnCode_t DDS_StatusCondition_set_enabled_statuses(DDS_StatusCondition *self,
                                                          DDS_StatusMask mask);
DDS_StatusMask DDS_StatusCondition_get_enabled_statuses(DDS_StatusCondition *self);

/* 1 while one of the enabled statuses has changed and was not read since. Data that have arrived count
 * until the next read or take, whatever that yields. */
DDS_Boolean DDS_StatusCondition_get_trigger_value(DDS_StatusCondition *self);

/* The entity that the condition belongs to. */
DDS_Entity *DDS_StatusCondition_get_entity(DDS_StatusCondition *self);

#ifdef __cplusplus
}
#endif

#endif
