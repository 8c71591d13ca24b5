/* Texts of samples and of configuration records: NUL-terminated, on the system's heap.
 *
 * Each operation may be called from any thread; two of them must not work on the same text at once. */
#ifndef ZUV_PLATFORM_TYPESYS_STRING_H
#define ZUV_PLATFORM_TYPESYS_STRING_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* An empty text with room for `length` characters and the terminator. NULL when there is no memory, and
 * for a length of SIZE_MAX. Release with DDS_String_free. */
char *DDS_String_alloc(size_t length);

/* A copy of `text`; NULL for NULL and when there is no memory. Release with DDS_String_free. */
char *DDS_String_dup(const char *text);

/* Make `*text` a copy of `newText`. The storage behind `*text` (from DDS_String_alloc or DDS_String_dup,
 * or NULL) is kept when it is large enough and exchanged otherwise; `newText` may point into it.
 * Returns the new `*text`. A NULL `newText` releases `*text`, sets it to NULL and returns NULL.
 * NULL as well when there is no memory or `text` is NULL: then `*text` is as it was. */
char *DDS_String_replace(char **text, const char *newText);

/* Release a text. NULL does nothing. */
void DDS_String_free(char *text);

#ifdef __cplusplus
}
#endif

#endif
