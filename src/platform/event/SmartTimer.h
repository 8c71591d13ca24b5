/* What the thread of an event generator sleeps on, and what wakes it. */
#ifndef ZUV_PLATFORM_EVENT_SMART_TIMER_H
#define ZUV_PLATFORM_EVENT_SMART_TIMER_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUVEventTimer ZUVEventTimer;

/* A timer that sleeps on the monotonic clock and that calls into the system only to wake a sleeper. It serves
 * one generator at a time. NULL when there is no memory; fault point "timer.new". */
ZUVEventTimer *ZUVEventSmartTimer_new(void);

/* Release; no generator may use the timer any more. NULL does nothing. */
void ZUVEventSmartTimer_delete(ZUVEventTimer *self);

#ifdef __cplusplus
}
#endif

#endif
