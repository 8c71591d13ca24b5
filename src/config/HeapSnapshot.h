/* Pictures of the heap, taken at regular times. */
#ifndef ZUV_CONFIG_HEAP_SNAPSHOT_H
#define ZUV_CONFIG_HEAP_SNAPSHOT_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Where the snapshots go, and how often one is taken. The texts are borrowed. */
typedef struct ZUV_BrelServiceHeapMonitorProperty {
    const char *output_dir;     /* NULL: the current directory */
    const char *snapshot_name;  /* part of each file's name; NULL: empty */
    int snapshot_period_millis; /* 0 or less: none is taken */
} ZUV_BrelServiceHeapMonitorProperty;

/* Write the name of the next snapshot's file into `snapshotName`, which has room for `limit` bytes, terminator
 * included: "DIR/ZUV_heap_NAME_PROCESS_COUNTER.log". The counter grows with each name of this process. Returns
 * 1, or 0 after a report when the name does not fit: then it is cut. Neither pointer may be NULL. Any
 * thread. */
int BRELUtils_getHeapSnapshotName(const ZUV_BrelServiceHeapMonitorProperty *property,
                                  char *snapshotName, size_t limit);

/* Take a snapshot at once and then after each period, until another thread or a signal handler stores
 * something else than 0 in `*exitLoopFlag`, or `stopAfterSec` seconds, if that is above 0, are over. The flag
 * and the times are looked at every 200 ms. A snapshot that fails is reported, and the loop goes on. Neither
 * pointer may be NULL. */
void BRELUtils_executeHeapSnapshotLoop(const ZUV_BrelServiceHeapMonitorProperty *property,
                                       int stopAfterSec, const volatile int *exitLoopFlag);

#ifdef __cplusplus
}
#endif

#endif
