/* Threads: one of the system's own, and the identity of the calling one. */
#ifndef ZUV_PLATFORM_OSAPI_THREAD_H
#define ZUV_PLATFORM_OSAPI_THREAD_H

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

/* 1 on the thread itself. `self` must not be NULL. */
int ZUVOsapiThread_isCurrent(const ZUVOsapiThread *self);

/* Wait until the routine has returned, and release. Not on the thread itself. NULL does nothing. */
void ZUVOsapiThread_delete(ZUVOsapiThread *self);

#ifdef __cplusplus
}
#endif

#endif
