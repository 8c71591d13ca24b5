/* Paths of files, worked on as texts. */
#ifndef ZUV_PLATFORM_OSAPI_PATH_H
#define ZUV_PLATFORM_OSAPI_PATH_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Write `path` into `normalized`, which has room for `limit` bytes, terminator included, without what it
 * can do without: doubled and final "/", "." components, and each ".." together with the component before
 * it. A ".." at the start of a relative path stays, one at the root goes. The file system is not asked, so
 * the file need not exist, and a component that is a symbolic link counts like any other. The result is
 * never longer than `path`, except that of an empty path, which is ".".
 * Returns 1, or 0 when the result or a part on the way to it does not fit: then `normalized` is empty.
 * Neither may be NULL, they must not overlap, and `limit` is at least 1. Any thread. */
int ZUVOsapiUtility_normalizePath(char *normalized, size_t limit, const char *path);

#ifdef __cplusplus
}
#endif

#endif
