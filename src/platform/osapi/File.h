/* Reading a whole file, with a fault point at each step: "file.open", "file.seek", "file.tell" and
 * "file.read". A file is used by one thread at a time. */
#ifndef ZUV_PLATFORM_OSAPI_FILE_H
#define ZUV_PLATFORM_OSAPI_FILE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A file that is open for reading. */
typedef struct ZUVOsapiFile ZUVOsapiFile;

/* Open the file at `path`, which must not be NULL, for binary reading. NULL when it cannot be opened;
 * errno tells why. Release with ZUVOsapiFile_close. */
ZUVOsapiFile *ZUVOsapiFile_open(const char *path);

/* Close and release; NULL does nothing. */
void ZUVOsapiFile_close(ZUVOsapiFile *self);

/* Store the size of the file in bytes and go back to its start. Returns 1, or 0 for a file that has no
 * size, such as a directory or a pipe: then `*size` is untouched and the position undefined. No argument
 * may be NULL. */
int ZUVOsapiFile_getSize(ZUVOsapiFile *self, uint64_t *size);

/* Read up to `limit` bytes into `buffer` and store their number in `*count`, which is below `limit` only at
 * the end of the file. Returns 1, or 0 when reading failed: then `*count` tells what was read before. No
 * argument may be NULL. */
int ZUVOsapiFile_read(ZUVOsapiFile *self, void *buffer, size_t limit, size_t *count);

/* 1 if a read has met the end of the file, as feof() has it. `self` must not be NULL. */
int ZUVOsapiFile_isAtEnd(const ZUVOsapiFile *self);

#ifdef __cplusplus
}
#endif

#endif
