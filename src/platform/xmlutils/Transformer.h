/* Transforms trees with a stylesheet (XSLT 1.0). */
#ifndef ZUV_PLATFORM_XMLUTILS_TRANSFORMER_H
#define ZUV_PLATFORM_XMLUTILS_TRANSFORMER_H

#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A stylesheet, ready for use. May be used by one thread at a time. */
typedef struct ZUVXMLUTILSTransformer ZUVXMLUTILSTransformer;

/* The one kind of value that a parameter may have: `value` is a text. */
#define ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING 13

/* A value for a global parameter of a stylesheet. Everything is borrowed for the time of the call. */
typedef struct ZUVXMLUTILSTransformationParameter {
    const char *name;
    const void *value;
    int valueKind;
} ZUVXMLUTILSTransformationParameter;

/* Make a transformer of a stylesheet in `count` pieces, at least one, which are read as if they were one and
 * are not needed any more afterwards.
 *
 * A stylesheet is trusted, but it stands alone: xsl:import, xsl:include and document() find nothing, and it
 * writes no files. The function line-number() of the namespace "http://icl.com/saxon" gives the source line
 * of the context node. The limits of documents hold, see platform/xmlutils/Parser.h.
 *
 * Release with ZUVXMLUTILSTransformer_delete. NULL after a report: when the stylesheet is wrong, or there is no
 * memory. No argument may be NULL. */
ZUVXMLUTILSTransformer *ZUVXMLUTILSTransformer_newFromStringArray(const char *const *pieces,
                                                                  int count);

/* The same for a file. */
ZUVXMLUTILSTransformer *ZUVXMLUTILSTransformer_newFromFile(const char *path);

/* NULL does nothing. */
void ZUVXMLUTILSTransformer_delete(ZUVXMLUTILSTransformer *self);

/* Transform an element with everything in it, as if it were the root of a document. It is left as it is.
 * Returns the root of the result, a tree to be freed with ZUVXMLUTILSParser_freeDom. NULL after a report: when
 * the stylesheet ends the transformation with xsl:message, whose text is then the reason, when it fails, when
 * the result has no element, or when there is no memory. No argument may be NULL. */
ZUVXMLUTILSObject *ZUVXMLUTILSTransformer_transform(ZUVXMLUTILSTransformer *self,
                                                    ZUVXMLUTILSObject *object);

/* The same with values for `count` global parameters. They are taken as they stand, never as expressions. A
 * parameter that the stylesheet does not declare has no effect. `parameters` may be NULL for a count of 0. */
ZUVXMLUTILSObject *
ZUVXMLUTILSTransformer_transformWithParams(ZUVXMLUTILSTransformer *self, ZUVXMLUTILSObject *object,
                                           const ZUVXMLUTILSTransformationParameter *parameters,
                                           int count);

#ifdef __cplusplus
}
#endif

#endif
