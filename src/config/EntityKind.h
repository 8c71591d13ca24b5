/* The kinds of entities in a service's tree. */
#ifndef ZUV_CONFIG_ENTITY_KIND_H
#define ZUV_CONFIG_ENTITY_KIND_H

#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef enum ZUV_BrelServiceEntityKind {
    ZUV_BREL_SERVICE_SERVICE_ENTITY = 0,
    ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY = 1,
    ZUV_BREL_SERVICE_CONNECTION_ENTITY = 2,
    ZUV_BREL_SERVICE_SESSION_ENTITY = 3,
    ZUV_BREL_SERVICE_AUTO_TOPIC_ROUTE_ENTITY = 4,
    ZUV_BREL_SERVICE_TOPIC_ROUTE_ENTITY = 5,
    ZUV_BREL_SERVICE_INPUT_ENTITY = 6,
    ZUV_BREL_SERVICE_OUTPUT_ENTITY = 7,
    ZUV_BrelServiceEntityKind_count = 8,
    ZUV_BrelServiceEntityKind_OTHER = ZUV_BrelServiceEntityKind_count
} ZUV_BrelServiceEntityKind;

/* The kind by the element's tag; OTHER for a tag of no entity, and for NULL after the report of a failed
 * precondition. */
ZUV_BrelServiceEntityKind BRELCfgFileParser_getEntityKindFromTag(const char *tagName);
ZUV_BrelServiceEntityKind BRELCfgFileParser_getEntityKind(const ZUVXMLUTILSObject *xmlObject);

/* The entity at the name below `xmlParent`, which is itself the answer to an empty name; NULL, and no report, if
 * there is none. Its kind goes to `*entityKind`. An input or output counts as one only in a "route" or
 * "topic_route": elsewhere its kind is OTHER. No argument may be NULL. */
ZUVXMLUTILSObject *BRELCfgFileParser_findEntity(ZUVXMLUTILSObject *xmlParent,
                                                ZUV_BrelServiceEntityKind *entityKind,
                                                const char *entityFullyQualifiedName);

/* The root under which the schema validates an entity of that tag on its own, or as an update of one: "session"
 * or "session_update". That of an input or output also depends on the tag of the route around it. NULL for any
 * other tag. The text lives as long as the process. No argument may be NULL. */
const char *BRELCfgFileParser_findValidationRootTag(const char *entityTag,
                                                    const char *parentTagName, int isUpdate);

#ifdef __cplusplus
}
#endif

#endif
