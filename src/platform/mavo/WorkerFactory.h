/* Makes workers and exclusive areas, and owns them. Its operations may be called from any thread, its new and
 * delete excepted, during which no other one is called. */
#ifndef ZUV_PLATFORM_MAVO_WORKER_FACTORY_H
#define ZUV_PLATFORM_MAVO_WORKER_FACTORY_H

#include "platform/mavo/Worker.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct MAVOWorkerFactory MAVOWorkerFactory;

/* `workerCount` (0 or more): for how many workers room is made at once, so that the first threads to ask for
 * one cannot be refused for want of memory; further ones get theirs when they are made. NULL, after a
 * report, when there is no memory. Release with MAVOWorkerFactory_delete. */
MAVOWorkerFactory *MAVOWorkerFactory_new(int workerCount);

/* Release the factory with the workers and areas that it has made; nobody may be in one of these areas. An
 * area that still exists is reported: it should have been destroyed before. NULL is a failed precondition. */
void MAVOWorkerFactory_delete(MAVOWorkerFactory *self);

/* A worker that is in no area. `name` is copied, cut to what MAVOWorker has room for. No argument may be NULL.
 * NULL, after a report, when there is no memory. The factory owns it; hand it back with destroyWorker. */
MAVOWorker *MAVOWorkerFactory_createWorker(MAVOWorkerFactory *self, const char *name);

/* Take a worker back and keep its room for the next one. Areas that it is still in are reported and left. To
 * be called on the worker's thread, or when that has ended. No argument may be NULL. */
void MAVOWorkerFactory_destroyWorker(MAVOWorkerFactory *self, MAVOWorker *worker);

/* An area of any level that nobody is in. `name` is copied. No pointer may be NULL. NULL, after a report, when
 * there is no memory. The factory owns it; release it with destroyExclusiveArea. */
MAVOExclusiveArea *MAVOWorkerFactory_createExclusiveAreaEx(MAVOWorkerFactory *self, int level,
                                                           const char *name);

/* Release an area of this factory. While a worker is in it that is refused, with a report. No argument may be
 * NULL. */
void MAVOWorkerFactory_destroyExclusiveArea(MAVOWorkerFactory *self, MAVOExclusiveArea *ea);

#ifdef __cplusplus
}
#endif

#endif
