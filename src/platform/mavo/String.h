/* Text helpers: comparison without case, tokens, booleans, and matching of patterns.
 *
 * Nothing here allocates, and everything may be called from any thread. No argument may be NULL. Letters
 * are those of ASCII, whatever the locale. */
#ifndef ZUV_PLATFORM_MAVO_STRING_H
#define ZUV_PLATFORM_MAVO_STRING_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Compare without regard to case: below, at or above 0 as `left` stands before, beside or behind
 * `right`. */
int MAVOString_iCompare(const char *left, const char *right);

/* The same for at most the first `length` characters; 0 for a length of 0. */
int MAVOString_inCompare(const char *left, const char *right, size_t length);

/* The next token of a text, which is cut in place: the character behind the token becomes a terminator.
 * `text` is the text for its first token and NULL for the others, `separators` lists the characters that
 * part tokens, `*position` keeps the place between the calls. Empty tokens are dropped. Returns the token,
 * which lies in the text, or NULL when there is none left. */
char *MAVOString_strToken(char *text, const char *separators, char **position);

/* Read a boolean: "true", "1", "false" or "0" (XML Schema 1.0, Datatypes, 3.2.2), and beyond that "yes" and
 * "no", without regard to case and to the white space around. Returns 1 and stores 1 or 0, or returns 0
 * for any other text and stores nothing. */
int MAVOString_strToBoolean(const char *text, int *value);

/* 1 if `text` holds a character that matches more than itself: "*", "?" or "[" with no backslash before
 * it. */
int MAVOString_isPattern(const char *text);

/* 1 if the whole `text` matches `pattern`, as POSIX fnmatch() without flags has it in the C locale: "*" is
 * any characters, none included, "?" one character, "[a-c]" and "[[:digit:]]" one of these, "[!a-c]" one
 * other, a backslash the next character itself. A "[" without its "]" is itself. A pattern of many stars
 * does not make it slow: the time never grows faster than a power of the lengths. */
int MAVOString_matchesPattern(const char *text, const char *pattern);

/* 1 if `text` matches one of the patterns in a list, which `separator` parts: "a*,b*". White space belongs
 * to the patterns, and none can hold the separator. An empty list is one empty pattern, which only an
 * empty text matches. */
int MAVOString_matchesAnyPattern(const char *text, const char *patternList, char separator);

/* 1 if an element of one list matches an element of the other. Both are lists parted by `separator`. Two
 * elements match if they are equal, or if one of them as a pattern matches the other as it stands. This is
 * how partitions match (OMG DDS 1.4, 2.2.3.13). */
int MAVOString_hasMatchingElement(const char *left, const char *right, char separator);

#ifdef __cplusplus
}
#endif

#endif
