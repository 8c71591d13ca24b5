/* A picture of the heap, for somebody who looks for memory that grows. */
#ifndef ZUV_PLATFORM_KOLM_HEAP_SNAPSHOT_H
#define ZUV_PLATFORM_KOLM_HEAP_SNAPSHOT_H

#ifdef __cplusplus
extern "C" {
#endif

/* Write the counters of the process's heap to the file `fileName`, which must not be NULL, replacing its
 * content. With `printDetails` not 0 there is a line for each kind of block alive as well: blocks, bytes
 * and tag, parted by tabulators. Other threads go on meanwhile, so the numbers need not add up.
 * Returns 1, or 0 when the file cannot be written: errno tells why, and the file may hold a
 * part. Any thread. */
int KOLM_Utility_take_heap_snapshot(const char *fileName, int printDetails);

#ifdef __cplusplus
}
#endif

#endif
