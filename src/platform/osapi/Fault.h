/* Fault points: each fallible operation of the platform asks here whether a test wants it to fail.
 *
 * Unarmed, a point costs one relaxed load. Allocation is a point like the others, with the name
 * ZUV_OSAPI_FAULT_POINT_HEAP. Arming and counting are meant for one test at a time; the points themselves
 * may be passed from any thread. */
#ifndef ZUV_PLATFORM_OSAPI_FAULT_H
#define ZUV_PLATFORM_OSAPI_FAULT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define ZUV_OSAPI_FAULT_POINT_HEAP "heap"

/* Not to be used directly: 1 while a fault is armed. */
extern int32_t ZUVOsapiFault_g_armed;

/* Let the `count`-th pass (1 is the next one) through a point fail, and each one after it as well if
 * `onward` is not 0. `point` restricts this to the points of that name; NULL means every point,
 * allocation included. The counter of injected faults restarts at 0. */
void ZUVOsapiFault_arm(const char *point, uint32_t count, int onward);

/* Nothing fails any more. The counter keeps its value. */
void ZUVOsapiFault_disarm(void);

/* How many faults were injected since the last arming. */
uint32_t ZUVOsapiFault_getInjectedCount(void);

/* Count a pass through `point` and say whether it must fail. Called through ZUV_OSAPI_FAULT. */
int ZUVOsapiFault_pass(const char *point);

/* 1 if the operation at this point must fail now. */
#define ZUV_OSAPI_FAULT(POINT)                                                                     \
    (__atomic_load_n(&ZUVOsapiFault_g_armed, __ATOMIC_RELAXED) != 0 && ZUVOsapiFault_pass(POINT))

#ifdef __cplusplus
}
#endif

#endif
