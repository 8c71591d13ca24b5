/* A wait set with threads of its own, which wait for conditions and handle them.
 *
 * One thread of the pool waits, the others handle what has been triggered, each one condition at a time; a
 * condition is never handled by two threads at once. A condition that is still triggered when its handler has
 * returned is handled again.
 *
 * All operations may be called from any thread, from handlers too, except that a handler may neither stop nor delete
 * the wait set that calls it; delete excludes all others, and comes before the participant factory is finalized. What
 * fails reports it and leaves everything as it was. */
#ifndef ZUV_PLATFORM_DDS_ASYNC_WAIT_SET_H
#define ZUV_PLATFORM_DDS_ASYNC_WAIT_SET_H

#include "platform/dds/Condition.h"
#include "platform/dds/ThreadSettings.h"
#include "platform/osapi/Time.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DDS_AsyncWaitSet DDS_AsyncWaitSet;

/* When waiting ends: as soon as so many conditions are triggered, or so long after the first. */
typedef struct DDS_WaitSetProperty_t {
    DDS_Long max_event_count; /* 1 or more, or DDS_LENGTH_UNLIMITED: the time alone counts */
    DDS_Duration_t max_event_delay;
} DDS_WaitSetProperty_t;

typedef struct DDS_AsyncWaitSetProperty_t {
    DDS_WaitSetProperty_t waitset_property;
    DDS_Long thread_pool_size; /* threads */
    DDS_ThreadSettings_t thread_settings;
    char *
        thread_name_prefix; /* owned; their names are this text, cut if need be, and a number from 0 */
    DDS_Long level;         /* of the exclusive area that the waiting thread is in */
} DDS_AsyncWaitSetProperty_t;

/* One event at a time, without delay; one thread, with the system's settings; no name, which stands for
 * "zAsyncWaitSet"; level 1. It owns nothing: a plain copy of it, of which no member is changed but numbers and
 * borrowed texts, need not be finalized. */
extern const DDS_AsyncWaitSetProperty_t DDS_ASYNC_WAITSET_PROPERTY_DEFAULT;

/* Make raw memory a record with the default values; make a valid record a deep copy; release what a valid record
 * owns and leave it empty. DDS_RETCODE_BAD_PARAMETER for NULL; DDS_RETCODE_OUT_OF_RESOURCES when there is no
 * memory, and then a copy's target is as it was. Fault point "dds.copy_async_waitset_property". */
DDS_ReturnCode_t DDS_AsyncWaitSetProperty_t_initialize(DDS_AsyncWaitSetProperty_t *self);
DDS_ReturnCode_t DDS_AsyncWaitSetProperty_t_copy(DDS_AsyncWaitSetProperty_t *self,
                                                 const DDS_AsyncWaitSetProperty_t *source);
DDS_ReturnCode_t DDS_AsyncWaitSetProperty_t_finalize(DDS_AsyncWaitSetProperty_t *self);

/* Called on each thread of the pool as its first and its last act: where a program gives its threads what it needs
 * on them. Callbacks may be NULL. */
typedef struct DDS_AsyncWaitSetListener {
    void *listener_data; /* the argument of each callback */
    void (*on_thread_spawned)(void *listener_data);
    void (*on_thread_deleted)(void *listener_data);
} DDS_AsyncWaitSetListener;

/* Tells whoever attaches a condition when the pool has taken note of it. */
typedef struct DDS_AsyncWaitSetCompletionToken DDS_AsyncWaitSetCompletionToken;

/* Nobody is told: the call does not wait for the pool. The only token there is. */
#define DDS_ASYNC_WAITSET_COMPLETION_TOKEN_IGNORE ((DDS_AsyncWaitSetCompletionToken *)1)

/* A wait set that is not started, without conditions. `property` is copied; it may not be NULL. `listener` is copied
 * and may be NULL. NULL, after a log line, for a property out of range or when there is no memory. Release with
 * DDS_AsyncWaitSet_delete. Fault point "dds.create_async_waitset". */
DDS_AsyncWaitSet *DDS_AsyncWaitSet_new_with_listener(const DDS_AsyncWaitSetProperty_t *property,
                                                     const DDS_AsyncWaitSetListener *listener);

/* Stop, detach all conditions, and release. DDS_RETCODE_BAD_PARAMETER for NULL; else as DDS_AsyncWaitSet_stop, whose
 * failure leaves the wait set alive. */
DDS_ReturnCode_t DDS_AsyncWaitSet_delete(DDS_AsyncWaitSet *self);

/* Start the threads; nothing to do when they run. DDS_RETCODE_BAD_PARAMETER for NULL, DDS_RETCODE_OUT_OF_RESOURCES
 * when not all threads can be made: then none runs. Fault point "dds.start_async_waitset". */
DDS_ReturnCode_t DDS_AsyncWaitSet_start(DDS_AsyncWaitSet *self);

/* End the threads, waiting for the handlers that run; nothing to do when none runs. The conditions stay attached, and
 * what is triggered meanwhile is handled after the next start. DDS_RETCODE_BAD_PARAMETER for NULL,
 * DDS_RETCODE_PRECONDITION_NOT_MET on a thread of the pool. Fault point "dds.stop_async_waitset". */
DDS_ReturnCode_t DDS_AsyncWaitSet_stop(DDS_AsyncWaitSet *self);

/* 1 from a successful start to the end of a stop; 0 for NULL. */
DDS_Boolean DDS_AsyncWaitSet_is_started(DDS_AsyncWaitSet *self);

/* Handle the condition from now on. It must have a handler, and be detached before its entity is deleted.
 * `completionToken` must be DDS_ASYNC_WAITSET_COMPLETION_TOKEN_IGNORE. DDS_RETCODE_BAD_PARAMETER for NULL and other
 * tokens, DDS_RETCODE_PRECONDITION_NOT_MET for a condition without a handler or that is attached to any asynchronous
 * wait set, DDS_RETCODE_ERROR when the middleware refuses. Fault point "dds.attach_condition". */
DDS_ReturnCode_t DDS_AsyncWaitSet_attach_condition_with_completion_token(
    DDS_AsyncWaitSet *self, DDS_Condition *condition,
    DDS_AsyncWaitSetCompletionToken *completionToken);

/* Handle the condition no more: when the call returns its handler does not run, nor will it. Called from that very
 * handler, which then is the last to run, it does not wait. Nothing to do for one that is attached nowhere.
 * DDS_RETCODE_BAD_PARAMETER for NULL, DDS_RETCODE_PRECONDITION_NOT_MET if it is attached elsewhere or is being
 * detached. The caller may hold no lock that the handler takes.
 * Fault point "dds.detach_condition". */
DDS_ReturnCode_t DDS_AsyncWaitSet_detach_condition(DDS_AsyncWaitSet *self,
                                                   DDS_Condition *condition);

#ifdef __cplusplus
}
#endif

#endif
