/* The record of an element that says no more than its name and whether it is enabled.
 *
 * A record is hung on its element by the parser, which makes, sets up and deletes it; see
 * BRELXmlObjectExtension. Texts are borrowed from the tree. No argument may be NULL. */
#ifndef ZUV_CONFIG_CFG_FILE_ELEMENT_H
#define ZUV_CONFIG_CFG_FILE_ELEMENT_H

#include "platform/typesys/Types.h"
#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

struct BRELCfgFileParser;

typedef struct BRELCfgFileElement {
    ZUVXMLUTILSObject *xmlObject;
    const char *name;
    const char *
        fullName; /* within the service, see BRELXmlObject_getFullyQualifiedNameRelativeToService */
    DDS_Boolean enabled;
    void *object; /* what the running service makes of it */
} BRELCfgFileElement;

/* A record of the element: that of the update target, if it has one, with what the element says over it. NULL after
 * a report. */
void *BRELCfgFileElement_new(struct BRELCfgFileParser *parser, ZUVXMLUTILSObject *xmlObject);

/* Nothing is left to be checked once the element's subtree exists: 1. */
int BRELCfgFileElement_setUp(struct BRELCfgFileParser *parser, void *object);

/* Release the record. */
void BRELCfgFileElement_delete(void *object);

/* Make a record, whatever it held, that of the element. 1, or 0 after a report: then it is finalized. */
int BRELCfgFileElement_initialize(BRELCfgFileElement *self, ZUVXMLUTILSObject *xmlObject);

/* Take over what the element says; what it does not mention stays. 1, or 0 after a report. */
int BRELCfgFileElement_parse(BRELCfgFileElement *self, const ZUVXMLUTILSObject *xmlObject);

/* Take over the settings of another record, but not its element. 1, or 0 when one is NULL. */
int BRELCfgFileElement_copy(BRELCfgFileElement *self, const BRELCfgFileElement *source);

/* Change the live record, and its element, as `newCfg` says, the record of an update. 1, or 0 after a report with
 * everything as it was. `*updated` is set if a change reaches the running entity. */
int BRELCfgFileElement_update(int *updated, BRELCfgFileElement *self,
                              const BRELCfgFileElement *newCfg);

/* The record owns nothing. */
void BRELCfgFileElement_finalize(BRELCfgFileElement *self);

/* 1 if the tag is that of a route that is not automatic. */
int BRELCfgFileTopicRoute_isXmlTopicRouteObject(const ZUVXMLUTILSObject *xmlObject);

#ifdef __cplusplus
}
#endif

#endif
