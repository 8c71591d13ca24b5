/* Threads: one of the system's own, and the identity of the calling one. */
#ifndef ZUV_PLATFORM_OSAPI_THREAD_H
#define ZUV_PLATFORM_OSAPI_THREAD_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The calling thread's number in the system, as the tools of the operator show it. No two threads have the
 * same at a time. */
uint64_t ZUVOsapiThread_getCurrentThreadID(void);

typedef struct ZUVOsapiThread ZUVOsapiThread;

/* What a thread runs. No exception may leave it. */
typedef void (*ZUVOsapiThreadRoutine)(void *routineData);

/* Start a thread that runs `routine`. `name` is the name in the system, kept up to 15 bytes; it is used
 * during the call only. Neither may be NULL. The thread has the caller's signal mask and the default stack.
 * NULL when there is no memory or the system refuses; fault point "thread.create". Release with
 * ZUVOsapiThread_delete. */
ZUVOsapiThread *ZUVOsapiThread_new(const char *name, ZUVOsapiThreadRoutine routine,
                                   void *routineData);

/* What a thread may be given beyond the defaults; all zeros stand for these. */
typedef struct ZUVOsapiThreadSettings {
    size_t stackSize;          /* in bytes; 0: the system's default */
    const int32_t *processors; /* numbers of those that it may run on */
    size_t processorCount;     /* 0: all */
    int realtimePriority;      /* above 0: scheduled first in, first out, with this priority */
} ZUVOsapiThreadSettings;

/* The same with settings, which are used during the call only and may not be NULL. NULL also when the system has no
 * such processor, or does not grant the priority. */
ZUVOsapiThread *ZUVOsapiThread_newWithSettings(const char *name, ZUVOsapiThreadRoutine routine,
                                               void *routineData,
                                               const ZUVOsapiThreadSettings *settings);

/* 1 on the thread itself. `self` must not be NULL. */
int ZUVOsapiThread_isCurrent(const ZUVOsapiThread *self);

/* Wait until the routine has returned, and release. Not on the thread itself. NULL does nothing. */
void ZUVOsapiThread_delete(ZUVOsapiThread *self);

#ifdef __cplusplus
}
#endif

#endif
