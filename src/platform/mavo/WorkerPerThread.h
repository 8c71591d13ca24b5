/* Which worker the calling thread has, kept in storage that is the thread's own. Any thread may call. */
#ifndef ZUV_PLATFORM_MAVO_WORKER_PER_THREAD_H
#define ZUV_PLATFORM_MAVO_WORKER_PER_THREAD_H

#include "platform/mavo/WorkerFactory.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct MAVOWorkerPerThread MAVOWorkerPerThread;

/* `factory` makes the workers and must outlive the object; it must not be NULL. NULL, after a report, when
 * there is no memory or no more such storage; fault point "thread.create_storage". Release with
 * MAVOWorkerPerThread_delete. */
MAVOWorkerPerThread *MAVOWorkerPerThread_new(MAVOWorkerFactory *factory);

/* Release the object, and the calling thread's worker with it. Other threads with a worker should have ended;
 * what they leave stays with the factory. NULL is a failed precondition. */
void MAVOWorkerPerThread_delete(MAVOWorkerPerThread *self);

/* Give the calling thread a worker. It lasts until deleteWorker on the same thread, at the longest until the
 * thread ends. No argument may be NULL. NULL, after a report, when the thread has one already or there is
 * no memory; fault point "thread.store". */
MAVOWorker *MAVOWorkerPerThread_createWorker(MAVOWorkerPerThread *self, const char *name);

/* The calling thread's worker; MAVOWorker_g_none, and never NULL, if it has none. `self` must not be NULL. */
MAVOWorker *MAVOWorkerPerThread_getWorker(MAVOWorkerPerThread *self);

/* Take the calling thread's worker away; done already if it has none. Areas that it is still in are reported
 * and left. `self` must not be NULL. */
void MAVOWorkerPerThread_deleteWorker(MAVOWorkerPerThread *self);

#ifdef __cplusplus
}
#endif

#endif
