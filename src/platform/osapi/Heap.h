/* The heap of the system: every block that a public operation hands out comes from here.
 *
 * Each block knows its size and the tag it was allocated under, so that a caller can ask how much room a
 * block has, a snapshot can tell who holds memory, and a test can see that nothing is left behind. All
 * operations may be called from any thread. */
#ifndef ZUV_PLATFORM_OSAPI_HEAP_H
#define ZUV_PLATFORM_OSAPI_HEAP_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Counters of the process's heap since its start. While other threads allocate, they need not fit one
 * another. */
typedef struct ZUVOsapiHeapStatistics {
    uint64_t allocationCount; /* blocks ever handed out; a reallocation counts as one */
    uint64_t liveBlockCount;  /* blocks not yet released */
    uint64_t liveByteCount;   /* bytes of these blocks, as asked for */
    uint64_t peakByteCount;   /* the highest liveByteCount, to within 4 KiB a thread */
} ZUVOsapiHeapStatistics;

/* Allocate `size` bytes with undefined content, aligned for any type.
 * `tag` names the kind of the block in snapshots; it must be a text that lives as long as the process.
 * A size of 0 gives a valid block. NULL when there is no memory. Release with ZUVOsapiHeap_free. */
void *ZUVOsapiHeap_allocate(size_t size, const char *tag);

/* The same, with every byte 0. */
void *ZUVOsapiHeap_allocateZeroed(size_t size, const char *tag);

/* Give the block at `*buffer` room for `size` bytes, keeping its content up to the smaller of both sizes.
 * `*buffer` may be NULL, which allocates. Returns 1, or 0 when there is no memory: then the old block and
 * `*buffer` are untouched. */
int ZUVOsapiHeap_reallocate(void **buffer, size_t size, const char *tag);

/* Release a block. NULL does nothing. */
void ZUVOsapiHeap_free(void *block);

/* Buffers of samples and sequences are allocated and released under these names. `alignment` is a power
 * of two of at most 16, which every block has anyway; NULL for another alignment. */
void *ZUVOsapiHeap_allocateBufferAligned(size_t size, size_t alignment);
void ZUVOsapiHeap_freeBufferAligned(void *block);

/* The size that the block was last allocated with, in bytes; 0 for NULL. */
size_t ZUVOsapiHeap_getBlockSize(const void *block);

/* Fill `*statistics`, which must not be NULL. */
void ZUVOsapiHeap_getStatistics(ZUVOsapiHeapStatistics *statistics);

/* Called with each tag under which blocks live, with their number and bytes. */
typedef void (*ZUVOsapiHeapTagVisitor)(void *visitorData, const char *tag, uint64_t blockCount,
                                       uint64_t byteCount);

/* Visit all tags that hold blocks, in no promised order. */
void ZUVOsapiHeap_visitTags(ZUVOsapiHeapTagVisitor visitor, void *visitorData);

#ifdef __cplusplus
}
#endif

#endif
