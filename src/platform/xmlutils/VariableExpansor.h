/* Replaces references to variables in the elements of a document by their values.
 *
 * A reference is "$(NAME)", in the text of an element or the value of an attribute; NAME is one or more of the
 * letters and digits of ASCII, "_", "-", "." and ":". Anything else is plain text, and there is no way to
 * escape a reference. A value comes from the first of these that knows the name: the dictionary, the
 * environment of the process, the defaults. References in a value are replaced in turn. One that nobody knows
 * stays as it stands, with a note at warning level, so that a later visit may replace it.
 *
 * A failure is a variable that leads back to itself, values that lead to each other beyond
 * ZUVXMLUTILS_VARIABLE_DEPTH_MAX, more replacements in one text than ZUVXMLUTILS_REPLACEMENT_COUNT_MAX, a
 * result beyond the limits of a document, or, over all texts of a walk, values that come to more than
 * ZUVXMLUTILS_VALUE_SIZE_MAX: a document takes no more than a multiple of its own size, and no more time. */
#ifndef ZUV_PLATFORM_XMLUTILS_VARIABLE_EXPANSOR_H
#define ZUV_PLATFORM_XMLUTILS_VARIABLE_EXPANSOR_H

#include <stddef.h>

#include "platform/xmlutils/Visitor.h"

#ifdef __cplusplus
extern "C" {
#endif

#define ZUVXMLUTILS_REPLACEMENT_COUNT_MAX 10000
#define ZUVXMLUTILS_VARIABLE_DEPTH_MAX 64
#define ZUVXMLUTILS_VALUE_SIZE_MAX (32 * 1024 * 1024)

/* The value of a variable in a source, or NULL if the source does not know it. The text is used before the
 * source is asked again. */
typedef const char *(*ZUVXMLUTILSVariableExpansorValueFcn)(const void *source, const char *name);

/* Filled in by initialize. `visitor` leads to the expansor itself, which may not be moved. */
typedef struct ZUVXMLUTILSVariableExpansor {
    ZUVXMLUTILSVisitor visitor;
    const void *dictionary;
    ZUVXMLUTILSVariableExpansorValueFcn getDictionaryValue;
    const void *defaults;
    ZUVXMLUTILSVariableExpansorValueFcn getDefaultValue;
    int isUnread; /* 1: nobody holds a text of the elements that are visited; the former ones are freed */
    size_t valueSize; /* bytes of values that were put in; whoever starts a walk sets it to 0 */
} ZUVXMLUTILSVariableExpansor;

/* Both sources are borrowed and asked at each visit, so that they may change between two. A NULL function stands
 * for a source that knows nothing. Holds nothing that would have to be released. Returns 1, or 0 for a NULL
 * `self`, after a report. */
int ZUVXMLUTILSVariableExpansor_initialize(ZUVXMLUTILSVariableExpansor *self,
                                           const void *dictionary,
                                           ZUVXMLUTILSVariableExpansorValueFcn getDictionaryValue,
                                           const void *defaults,
                                           ZUVXMLUTILSVariableExpansorValueFcn getDefaultValue);

/* Replace the references in the text and the attributes of one element, not in its children. This is the
 * visit of `visitor`, whose data is the expansor; no argument may be NULL. Returns 1, or 0 after a report with
 * the file, the line, the element and the reason; then the text or attribute at fault, and those behind it,
 * are as they were. Texts that were there before stay alive as long as the tree, since somebody may hold
 * them, unless `isUnread` says that nobody does. */
int ZUVXMLUTILSVariableExpansor_visit(void *visitorData, ZUVXMLUTILSObject *object);

#ifdef __cplusplus
}
#endif

#endif
