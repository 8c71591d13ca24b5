/* The service's event thread: runs what callers post, at once or after a delay, outside of their context.
 *
 * The thread has a worker of the service's concurrency for its whole life, so its events may enter exclusive
 * areas. Unless it is said otherwise, a NULL argument is a failed precondition: the operation reports it and
 * fails. */
#ifndef ZUV_COMMON_SERVICE_EVENT_THREAD_H
#define ZUV_COMMON_SERVICE_EVENT_THREAD_H

#include "common/Concurrency.h"
#include "platform/event/ActiveGenerator.h"
#include "platform/osapi/Semaphore.h"

#ifdef __cplusplus
extern "C" {
#endif

#define BREL_SERVICE_EVENT_THREAD_INITIALIZED 29508
#define BREL_SERVICE_EVENT_THREAD_FINALIZED 29509

typedef struct BRELServiceEventThread {
    int _init; /* one of the two numbers above; another one before the first initialize */
    BRELConcurrency *_concurrency;       /* borrowed; gives the thread its worker */
    MAVOWorkerFactory *_workerFactory;   /* borrowed; the middleware's */
    ZUVClock *_clock;                    /* borrowed */
    ZUVEventTimer *_timer;               /* owned */
    ZUVEventActiveGenerator *_generator; /* owned; the thread and its events */
    ZUVOsapiSemaphore *_binSem;          /* owned; given when the thread ends */
    ZUVEventActiveGeneratorListener _generatorListener;
    int _storageBytesToCompare;                       /* posted with each event */
    ZUVEventGeneratorListener _onThreadStartListener; /* room that nothing here uses */
    char *_threadName;                                /* owned */
} BRELServiceEventThread;

/* Make a record and initialize it. NULL, after a report, when memory or the initialization is refused. Release
 * with BRELServiceEventThread_delete. */
BRELServiceEventThread *BRELServiceEventThread_new(BRELConcurrency *concurrency, ZUVClock *clock,
                                                   int storageBytesToCompare,
                                                   const char *threadName);

/* Start the thread. It and its worker are named after `threadName`, which is copied. `clock`, which decides when
 * events are due, and `concurrency` must outlive the thread; so must the middleware's participant factory. With a
 * `storageBytesToCompare` above 0, posts with the same listener and the same first bytes of the storage are one
 * event while they wait; see ZUVEventActiveGenerator_postEvent.
 * A record that is initialized already is left alone, with the result 1. Returns 1, or 0 after a report; then the
 * record is finalized. A NULL `clock` is reported as one that could not be made. */
int BRELServiceEventThread_initialize(BRELServiceEventThread *self, BRELConcurrency *concurrency,
                                      ZUVClock *clock, int storageBytesToCompare,
                                      const char *threadName);

/* Let `eventListener` run on the thread `deltaTime` from now; never, when that is infinite, and at once, when it is
 * negative. Events run one at a time in the order of their times. `*eventListenerStorage` is copied; NULL stands
 * for one of zeros. The listener is not: it must last until its event has run. Any thread, the event thread
 * included. Returns 1, or 0 after a report: then that event is lost, and nothing else. */
int BRELServiceEventThread_postEvent(BRELServiceEventThread *self, const ZUVNtpTime *deltaTime,
                                     const ZUVEventGeneratorListener *eventListener,
                                     const ZUVEventGeneratorListenerStorage *eventListenerStorage);

/* The same without a delay. */
int BRELServiceEventThread_postImmediateEvent(
    BRELServiceEventThread *self, const ZUVEventGeneratorListener *eventListener,
    const ZUVEventGeneratorListenerStorage *eventListenerStorage);

/* Stop the thread, wait until it has ended, and release what the record owns. Events that have not begun will not
 * run. Nobody may be posting; not on the event thread itself. Returns 1, also for a record that is not
 * initialized; or 0 after a report: then it may be called again. */
int BRELServiceEventThread_finalize(BRELServiceEventThread *self);

/* Finalize and release the record. Returns 1, or 0 after a report: then the record stays. */
int BRELServiceEventThread_delete(BRELServiceEventThread *self);

#ifdef __cplusplus
}
#endif

#endif
