/* The one lock of the process, for what is made and destroyed once in it. */
#ifndef ZUV_PLATFORM_OSAPI_GLOBAL_LOCK_H
#define ZUV_PLATFORM_OSAPI_GLOBAL_LOCK_H

#ifdef __cplusplus
extern "C" {
#endif

/* Wait for the lock and take it. Returns 0, or a number of errno.h after a failure, with which the lock is as
 * it was: EDEADLK when the calling thread has it already. Fault point "global_lock.take". */
int ZUVOsapi_global_lock(void);

/* Give the lock. Returns 0, or EPERM when the calling thread does not have it. Fault point
 * "global_lock.give": the lock is given, and EPERM is returned nevertheless. */
int ZUVOsapi_global_unlock(void);

#ifdef __cplusplus
}
#endif

#endif
