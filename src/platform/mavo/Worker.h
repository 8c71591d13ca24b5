/* A worker: in whose name a thread enters and leaves exclusive areas, and the record of what it holds.
 *
 * Areas are entered in the order of rising levels. An entry is refused, with a report, when the worker is in an
 * area of the same or a higher level, unless it is in that very area, whose entries are counted. So threads
 * that would wait for each other in a circle do not wait: one of them gets the report.
 *
 * A worker serves one thread at a time; nothing else may be called for it meanwhile. */
#ifndef ZUV_PLATFORM_MAVO_WORKER_H
#define ZUV_PLATFORM_MAVO_WORKER_H

#include "platform/mavo/ExclusiveArea.h"
#include "platform/mavo/InlineList.h"

#ifdef __cplusplus
extern "C" {
#endif

struct MAVOWorkerFactory;

#define MAVO_WORKER_NAME_SIZE 64

/* Read by anyone on the worker's thread, written by the room alone. */
typedef struct MAVOWorker {
    MAVOInlineListNode _node;
    struct MAVOWorkerFactory *_factory;  /* that made it; NULL in MAVOWorker_g_none */
    char _name[MAVO_WORKER_NAME_SIZE];   /* cut to its room */
    MAVOInlineList _inEA;                /* the areas that it is in, in the order of their levels */
    MAVOExclusiveArea *_inEaMaxLevelPtr; /* the one of the highest level, or NULL */
} MAVOWorker;

/* Stands for the worker of a thread that has none: it has a name to print, and may enter nothing. */
extern MAVOWorker MAVOWorker_g_none;

/* Wait until no other worker is in `ea`, and be in it. `reserved` must be NULL. Returns 1, or 0 after a report
 * when the order of levels forbids it, or when `self` or `ea` is NULL or `self` is MAVOWorker_g_none: then the
 * worker is in the areas that it was in. Fault point "exclusive_area.enter". */
int MAVOWorker_enterExclusiveArea(MAVOWorker *self, void *reserved, MAVOExclusiveArea *ea);

/* Undo one entry; the last one lets others in. Areas may be left in any order. Returns 1, or 0 after a report
 * when the worker is not in `ea`, or an argument is NULL. Fault point "exclusive_area.leave": the worker is
 * still in it. */
int MAVOWorker_leaveExclusiveArea(MAVOWorker *self, void *reserved, MAVOExclusiveArea *ea);

#ifdef __cplusplus
}
#endif

#endif
