/* Validates elements against a schema (XML Schema 1.0) that a program holds as text. */
#ifndef ZUV_PLATFORM_XMLUTILS_VALIDATOR_H
#define ZUV_PLATFORM_XMLUTILS_VALIDATOR_H

#include "platform/xmlutils/Object.h"
#include "platform/xmlutils/PropertyList.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A schema, ready for use. May be used by one thread at a time. */
typedef struct ZUVXMLUTILSValidator ZUVXMLUTILSValidator;

/* Make a validator of a schema document in `count` pieces, at least one, which are read as if they were one
 * and are not needed any more afterwards. Its xs:include elements find the texts registered with
 * ZUVXMLUTILSGlobals_registerStringResource and nothing else. Release with ZUVXMLUTILSValidator_delete. NULL
 * after a report: when the schema is wrong, or there is no memory. No argument may be NULL. */
ZUVXMLUTILSValidator *ZUVXMLUTILSValidator_new(const char *const *pieces, int count);

/* NULL does nothing. */
void ZUVXMLUTILSValidator_delete(ZUVXMLUTILSValidator *self);

/* Let elements with the tags that are the names of `roots` be valid on their own, each against the type of
 * the schema that is its value, as if the schema declared them globally. The types are those without a
 * namespace. The list is not needed any more afterwards. Costs as much as making the validator. Returns 1, or
 * 0 after a report with the validator as it was: when a tag is declared already, a type is unknown, or there
 * is no memory. No argument may be NULL. */
int ZUVXMLUTILSValidator_addValidationRoots(ZUVXMLUTILSValidator *self,
                                            const ZUVXMLUTILSPropertyList *roots);

/* Validate an element, which the schema must declare globally, with everything in it. Neither the element nor
 * the tree around it changes. Returns 1 if it is valid. Otherwise 0, after a report of the first thing that
 * is wrong: file, line, element, reason. No argument may be NULL. */
int ZUVXMLUTILSValidator_validate(ZUVXMLUTILSValidator *self, ZUVXMLUTILSObject *object);

#ifdef __cplusplus
}
#endif

#endif
