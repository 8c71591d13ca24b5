/* A thread that runs events when their time has come.
 *
 * Events run one at a time, in the order of their times; those of one time run in the order of their posts. An
 * event never runs before its time by the generator's clock. */
#ifndef ZUV_PLATFORM_EVENT_ACTIVE_GENERATOR_H
#define ZUV_PLATFORM_EVENT_ACTIVE_GENERATOR_H

#include "platform/event/Clock.h"
#include "platform/event/GeneratorListener.h"
#include "platform/event/SmartTimer.h"
#include "platform/mavo/WorkerFactory.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUVEventActiveGenerator ZUVEventActiveGenerator;

/* Make a generator and start its thread, which bears `name` and calls `listener->onStarted` before anything
 * else. `name` and `*listener` are copied. `workerFactory` makes the thread's worker; it, `clock` and
 * `timer`, which is for this generator alone, must outlive the generator. The reserved arguments must be NULL,
 * all others must not.
 * Time follows `clock`; in between the thread sleeps on the monotonic clock. When `clock` is one that can
 * be set, the thread notices at the end of its present sleep, or when an event is posted that comes before all
 * others.
 * NULL, after a report, when memory or the thread is refused. Release with ZUVEventActiveGenerator_delete. */
ZUVEventActiveGenerator *
ZUVEventActiveGenerator_new(const char *name, MAVOWorkerFactory *workerFactory, ZUVClock *clock,
                            ZUVEventTimer *timer, const ZUVEventActiveGeneratorListener *listener,
                            const void *reserved1, const void *reserved2, const void *reserved3,
                            const void *reserved4);

/* Let `listener` run at `time`, at once if that has passed. An infinite time is never reached.
 *
 * `snoozeTime` is handed to the listener with the event. `storage` is copied; NULL stands for one of zeros.
 * With a `storageBytesToCompare` above 0, an event that waits for the same listener with the same number of
 * bytes to compare, and with these first bytes of its storage the same, takes the new one in: one event runs,
 * at the earlier of the two times, with the storage and the snooze time of the later post. With 0 or less
 * every post is an event of its own. More than the storage has stands for all of it. `flags` must be 0.
 *
 * Any thread may post, that of the generator included. Neither `self`, `time`, `snoozeTime` nor `listener` may
 * be NULL. Returns 1, or 0 after a report when there is no memory or the generator is shut down: then nothing
 * has changed. */
int ZUVEventActiveGenerator_postEvent(ZUVEventActiveGenerator *self, const ZUVNtpTime *time,
                                      const ZUVNtpTime *snoozeTime,
                                      const ZUVEventGeneratorListener *listener,
                                      const ZUVEventGeneratorListenerStorage *storage,
                                      int storageBytesToCompare, int flags);

/* Let the thread end after the event that it is in, if any; it calls `onStopped` then. Does not wait for that.
 * Events that have not begun will not run. `worker` is the caller's or NULL. Any thread, that of the generator
 * included, and more than once. Returns 1, or 0 after a report, with nothing changed; fault point
 * "event_generator.shutdown". `self` must not be NULL. */
int ZUVEventActiveGenerator_shutdown(ZUVEventActiveGenerator *self, MAVOWorker *worker);

/* 1 until the thread is about to call `onStopped`, or would if there were one. `self` must not be NULL. Any
 * thread. */
int ZUVEventActiveGenerator_isRunning(ZUVEventActiveGenerator *self);

/* Shut down, wait until the thread has ended, and release. `worker` is the caller's or NULL. Returns 1, or 0
 * after a report when called on the generator's own thread: then nothing has changed. No other thread may use
 * the generator any more. `self` must not be NULL. */
int ZUVEventActiveGenerator_delete(ZUVEventActiveGenerator *self, MAVOWorker *worker);

#ifdef __cplusplus
}
#endif

#endif
