/* Semaphores of two kinds, for any threads of the process. Fault points: "semaphore.new"; "semaphore.take",
 * which takes nothing; and "semaphore.give", which gives and returns an error nevertheless, so that nobody
 * waits for ever. */
#ifndef ZUV_PLATFORM_OSAPI_SEMAPHORE_H
#define ZUV_PLATFORM_OSAPI_SEMAPHORE_H

#include "platform/osapi/NtpTime.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUVOsapiSemaphore ZUVOsapiSemaphore;

typedef enum ZUVOsapiSemaphoreKind {
    /* Empty at first. A give fills it, and stays without effect on a full one; a take empties it. */
    ZUV_OSAPI_SEMAPHORE_KIND_BINARY = 0,
    /* Free at first. The thread that has taken it owns it, may take it again, and gives it as often. */
    ZUV_OSAPI_SEMAPHORE_KIND_MUTEX = 1
} ZUVOsapiSemaphoreKind;

typedef enum ZUVOsapiSemaphoreStatus {
    ZUV_OSAPI_SEMAPHORE_STATUS_OK = 0,
    ZUV_OSAPI_SEMAPHORE_STATUS_TIMEOUT = 1,
    ZUV_OSAPI_SEMAPHORE_STATUS_ERROR = 2
} ZUVOsapiSemaphoreStatus;

/* No such settings exist; the place of the argument stands for the defaults. */
struct ZUVOsapiSemaphoreProperty;

/* `kind` is a ZUVOsapiSemaphoreKind; `property` must be NULL. NULL when there is no memory, or for another kind
 * or property. Release with ZUVOsapiSemaphore_delete. */
ZUVOsapiSemaphore *ZUVOsapiSemaphore_new(int kind,
                                         const struct ZUVOsapiSemaphoreProperty *property);

/* Wait until the semaphore can be taken, at most for the span `timeout`, and take it. Zero and less does
 * not wait; NULL or an infinite span waits without limit. The wait follows the monotonic clock. `self` must not
 * be NULL. */
ZUVOsapiSemaphoreStatus ZUVOsapiSemaphore_take(ZUVOsapiSemaphore *self, const ZUVNtpTime *timeout);

/* Give the semaphore. ZUV_OSAPI_SEMAPHORE_STATUS_ERROR for a mutex that the calling thread does not own, which is
 * then as it was. `self` must not be NULL. */
ZUVOsapiSemaphoreStatus ZUVOsapiSemaphore_give(ZUVOsapiSemaphore *self);

/* Release; NULL does nothing. No thread may be using the semaphore, one that is about to return from its
 * give excepted. */
void ZUVOsapiSemaphore_delete(ZUVOsapiSemaphore *self);

#ifdef __cplusplus
}
#endif

#endif
