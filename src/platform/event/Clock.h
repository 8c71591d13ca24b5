/* Where the time of events comes from. */
#ifndef ZUV_PLATFORM_EVENT_CLOCK_H
#define ZUV_PLATFORM_EVENT_CLOCK_H

#include "platform/osapi/NtpTime.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A clock: the first member of whatever else a kind of clock needs. */
typedef struct ZUVClock {
    /* Store the present time and return 1, or return 0. Called from any thread, at once. */
    int (*getTime)(struct ZUVClock *self, ZUVNtpTime *now);
} ZUVClock;

/* The system's monotonic clock: the time since the machine was started, which nobody can set. Lives as long
 * as the process and is shared by all. Never NULL. Fault point "clock.get_time". */
ZUVClock *ZUVClock_getMonotonic(void);

#ifdef __cplusplus
}
#endif

#endif
