/* Conditions: what a thread can wait for, and what is to be done when it comes about (OMG DDS 1.4, 2.2.2.1.7).
 *
 * The conditions of entities, see DDS_Entity_get_statuscondition, are the only kind. */
#ifndef ZUV_PLATFORM_DDS_CONDITION_H
#define ZUV_PLATFORM_DDS_CONDITION_H

#include "platform/dds/Entity.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DDS_Condition DDS_Condition;

/* What an asynchronous wait set calls, on one of its threads, while the condition is triggered. No exception may
 * leave it. */
typedef struct DDS_ConditionHandler {
    void (*on_condition_triggered)(void *handler_data, DDS_Condition *condition);
    void *handler_data;
} DDS_ConditionHandler;

/* The same object. NULL for NULL, after a log line. */
DDS_Condition *DDS_StatusCondition_as_condition(DDS_StatusCondition *self);

/* Exchange the handler: it is copied, NULL takes it away. DDS_RETCODE_BAD_PARAMETER for a NULL condition or a
 * handler without a callback, DDS_RETCODE_PRECONDITION_NOT_MET while the condition is attached to an asynchronous
 * wait set; then the handler is as it was. Fault point "dds.set_handler". */
DDS_ReturnCode_t DDS_Condition_set_handler(DDS_Condition *self,
                                           const DDS_ConditionHandler *handler);

#ifdef __cplusplus
}
#endif

#endif
