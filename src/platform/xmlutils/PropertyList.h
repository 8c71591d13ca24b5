/* Names with their values, in the form in which the XML utilities take them from a program: the variables
 * that a document may refer to. */
#ifndef ZUV_PLATFORM_XMLUTILS_PROPERTY_LIST_H
#define ZUV_PLATFORM_XMLUTILS_PROPERTY_LIST_H

#ifdef __cplusplus
extern "C" {
#endif

/* Both texts are borrowed and not NULL. */
typedef struct ZUVXMLUTILSProperty {
    const char *name;
    const char *value;
} ZUVXMLUTILSProperty;

/* The array is borrowed; NULL is allowed for a count of 0. */
typedef struct ZUVXMLUTILSPropertyList {
    const ZUVXMLUTILSProperty *properties;
    int count;
} ZUVXMLUTILSPropertyList;

#ifdef __cplusplus
}
#endif

#endif
