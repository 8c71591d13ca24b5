/* Bounded string functions. Each works on the caller's memory and may be called from any thread. */
#ifndef ZUV_PLATFORM_OSAPI_UTILITY_H
#define ZUV_PLATFORM_OSAPI_UTILITY_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Format into `buffer`, writing at most `limit` bytes, terminator included, and always terminating when
 * `limit` is not 0. Returns the length that the whole text has, which is `limit` or more when the text
 * was cut, or a negative number when formatting failed. */
int ZUVOsapiUtility_snprintf(char *buffer, size_t limit, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

/* Copy `source` into `destination`, which has room for `limit` bytes, terminator included. Returns
 * `destination`, or NULL when `source` does not fit: then `destination` is left as it was. */
char *ZUVOsapiUtility_strcpy(char *destination, size_t limit, const char *source);

/* Append `source` to the text in `destination`, which has room for `limit` bytes, terminator included.
 * What does not fit is cut. Returns `destination`, or NULL when no terminator stands within `limit`. */
char *ZUVOsapiUtility_strcat(char *destination, size_t limit, const char *source);

#ifdef __cplusplus
}
#endif

#endif
