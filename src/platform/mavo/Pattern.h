/* The one matcher of patterns, on texts that need no terminator. MAVOString_matchesPattern tells what a
 * pattern is. */
#ifndef ZUV_PLATFORM_MAVO_PATTERN_H
#define ZUV_PLATFORM_MAVO_PATTERN_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* 1 if the whole text matches the whole pattern. Neither pointer may be NULL. Any thread. */
int MAVOPattern_matches(const char *text, size_t textLength, const char *pattern,
                        size_t patternLength);

#ifdef __cplusplus
}
#endif

#endif
