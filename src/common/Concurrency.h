/* The service's concurrency: named workers for its threads, and exclusive areas whose levels have one order.
 *
 * One object is made when the service starts, before any thread that uses it, and deleted after the last of
 * these has ended. Its new and delete run under the global lock of the process; everything else may run on
 * any threads at once. A NULL argument is a failed precondition, unless it is said to be allowed: the operation
 * reports it and fails. */
#ifndef ZUV_COMMON_CONCURRENCY_H
#define ZUV_COMMON_CONCURRENCY_H

#include "platform/mavo/ExclusiveArea.h"
#include "platform/mavo/Worker.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct BRELConcurrencyImpl BRELConcurrency;

/* The levels of all exclusive areas of the service, from its outermost objects to the innermost. An area of a
 * lower level is entered first. The numbers between them are free; those from 130 on are the DDS adapter's. */
extern const int BRELConcurrency_SERVICE_EA_LEVEL;                      /* 10 */
extern const int BRELConcurrency_ADMINISTRATION_WSR_EA_LEVEL;           /* 11 */
extern const int BRELConcurrency_MONITORING_EA_LEVEL;                   /* 12 */
extern const int BRELConcurrency_MONITORABLE_EA_LEVEL;                  /* 13 */
extern const int BRELConcurrency_DISCOVERY_EA_LEVEL;                    /* 14 */
extern const int BRELConcurrency_CONNECTION_EA_LEVEL;                   /* 20 */
extern const int BRELConcurrency_SESSION_WSR_EA_LEVEL;                  /* 30 */
extern const int BRELConcurrency_DDS_CONNECTION_INPUT_STREAM_EA_LEVEL;  /* 130 */
extern const int BRELConcurrency_DDS_CONNECTION_OUTPUT_STREAM_EA_LEVEL; /* 131 */
extern const int BRELConcurrency_DDS_FILTER_EVENT_TRACKER_EA_LEVEL;     /* 132 */
extern const int BRELConcurrency_DDS_ADAPTER_EA_LEVEL;                  /* 133 */

/* NULL, after a report, when the lock, memory or thread-specific storage is refused. Release with
 * BRELConcurrency_delete. */
BRELConcurrency *BRELConcurrency_new(void);

/* Release the object, the calling thread's worker included. Its exclusive areas must have been deleted. When the
 * global lock is refused, that is reported and the object stays as it is. */
void BRELConcurrency_delete(BRELConcurrency *instance);

/* The calling thread's worker; on a thread that has none a stand-in, MAVOWorker_g_none, that may enter no area.
 * NULL for a NULL `self` only. */
MAVOWorker *BRELConcurrency_getWorker(BRELConcurrency *self);

/* Give the calling thread a worker until deleteWorker is called on the same thread. Its name is
 * `workerBaseName`, which must not be empty, an underscore and the thread's identity: "events_0x1c2f"; of a
 * long base name the first 63 characters alone. NULL, after a report, when the thread has a worker or
 * memory is refused. */
MAVOWorker *BRELConcurrency_createWorker(BRELConcurrency *self, const char *workerBaseName);

/* Take the calling thread's worker away; done already if it has none. */
void BRELConcurrency_deleteWorker(BRELConcurrency *self);

/* An area that nobody is in. `level` is 1 or more, and one of the constants above; `name` is copied. NULL, after
 * a report, on failure. Release with deleteExclusiveArea, before the concurrency. */
MAVOExclusiveArea *BRELConcurrency_createExclusiveArea(BRELConcurrency *self, int level,
                                                       const char *name);

/* Release an area that no thread is in. */
void BRELConcurrency_deleteExclusiveArea(BRELConcurrency *self, MAVOExclusiveArea *ea);

/* Wait until no other thread is in the area, and be in it, as the calling thread's worker. Returns 1; or 0 after
 * a report, and the thread is outside, when the thread has no worker or is in an area of the same or a
 * higher level. The area that it is in may be entered again, and is left as often. Traced when the bit 0x40
 * of the instrumentation mask and the submodule's are on. */
int BRELConcurrency_enterExclusiveArea(BRELConcurrency *self, MAVOExclusiveArea *ea);

/* Undo one entry of the calling thread, traced likewise. Returns 1, or 0 after a report: then the thread is where
 * it was. */
int BRELConcurrency_leaveExclusiveArea(BRELConcurrency *self, MAVOExclusiveArea *ea);

/* An entry that a scope makes and undoes. The caller owns the record, zero-filled before its first use; it
 * serves one area at a time, on one thread, and does not count. */
typedef struct BRELExclusiveAreaGuard {
    MAVOExclusiveArea *_ea; /* the area last entered through the guard, or tried */
    int _isInEA;            /* 1 from a successful enter to a successful leave */
} BRELExclusiveAreaGuard;

/* Enter `ea` as BRELConcurrency_enterExclusiveArea does, without a trace. Returns 1, or 0 after a report. */
int BRELExclusiveAreaGuard_enter(BRELExclusiveAreaGuard *self, MAVOExclusiveArea *ea,
                                 BRELConcurrency *concurrency);

/* Leave the area if the guard is in it, without a trace. Returns 1, also when there was nothing to leave, so that
 * a clean-up path may always call it; or 0 after a report: then it may be called again. */
int BRELExclusiveAreaGuard_leave(BRELExclusiveAreaGuard *self, BRELConcurrency *concurrency);

#ifdef __cplusplus
}
#endif

#endif
