/* Small services of the middleware. */
#ifndef ZUV_PLATFORM_KOLM_UTILITY_H
#define ZUV_PLATFORM_KOLM_UTILITY_H

#include "platform/osapi/Time.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Let the calling thread sleep for `*duration`, which must not be NULL. A signal does not shorten it; a
 * span of 0 or below returns at once, the infinite one never. */
void KOLM_Utility_sleep(const DDS_Duration_t *duration);

#ifdef __cplusplus
}
#endif

#endif
