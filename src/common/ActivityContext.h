/* Templates of what a service is doing when it logs: the activity context of its lines. They are for the
 * engine; nothing in this system sets one. */
#ifndef ZUV_COMMON_ACTIVITY_CONTEXT_H
#define ZUV_COMMON_ACTIVITY_CONTEXT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The symbol of a template whose format takes a text ends in _s. */
typedef struct ZUVActivityContextTemplate {
    uint32_t activityId; /* 0x21c0000 in all of them */
    const char *format;
} ZUVActivityContextTemplate;

/* Entities and what becomes of them. */
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_CREATE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_DELETE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ENABLE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_DISABLE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_PAUSE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_RUN;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ADD_s;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOVE_s;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_START;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_STOP;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_START_s;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_STOP_s;

/* Monitoring. */
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_PUBLISH_s; /* topic */
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_PERIODIC_s;

/* Remote administration. */
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_GET;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_CREATE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_DELETE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_UPDATE;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_UNKNOWN;

/* Streams and routes. */
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ON_STREAM_DISCOVERED_s;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ON_STREAM_DISPOSED_s;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_RESUME_s;
extern const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_SUSPEND_s;
extern const ZUVActivityContextTemplate BREL_ACTIVITY_STREAM_DISCOVERED;
extern const ZUVActivityContextTemplate BREL_ACTIVITY_STREAM_DISPOSED;
extern const ZUVActivityContextTemplate BREL_ACTIVITY_MATCH_STREAM;

#ifdef __cplusplus
}
#endif

#endif
