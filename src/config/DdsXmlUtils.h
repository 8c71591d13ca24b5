/* Small operations on the tree of what the middleware's own XML declares. Callers take turns, as with all of that
 * tree. */
#ifndef ZUV_CONFIG_DDS_XML_UTILS_H
#define ZUV_CONFIG_DDS_XML_UTILS_H

#include "platform/ddsxml/XmlHelper.h"
#include "platform/ddsxml/XmlParser.h"
#include "platform/ddsxml/XmlTypeCode.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The type code of the structure, union, enumeration or value type `typeName` ("Module::Type") in the first element
 * "types" under the root of the tree that `xml` is part of. It belongs to that tree: see
 * DDS_XMLTypeCode_get_dds_typecode.
 * NULL when there is no such name, which is not reported. NULL with a report and the error flag of `context` set
 * when the name is not that of a type, the definition is wrong, or `xml` is NULL, which has no root. Neither
 * `typeName` nor `context` may be NULL. */
const DDS_TypeCode *BRELUtils_getTypeCodeFromXML(const ZUVXMLObject *xml, const char *typeName,
                                                 DDS_XMLContext *context);

/* The same for a tree that is given by its root, without a flag. */
const DDS_TypeCode *BRELUtils_getTypeCodeFromXMLDom(const ZUVXMLObject *xmlDom,
                                                    const char *typeName);

/* The class that reads elements `tagName`, or NULL, which is not reported. No argument may be NULL. */
ZUVXMLExtensionClass *BRELUtils_findExtensionClass(const DDS_XMLParser *parser,
                                                   const char *tagName);

/* Take `child` out of `parent` without freeing it. Returns 1, or 0 after a report when it is not in there. No
 * argument may be NULL. */
int BRELUtils_removeChildXmlObject(ZUVXMLObject *parent, ZUVXMLObject *child);

/* Take `childObject` out of its tree and free it with all that is in it. Returns 1, or 0 after a report when an
 * argument is NULL. */
int BRELUtils_deleteXMLObject(DDS_XMLParser *parser, ZUVXMLObject *childObject);

#ifdef __cplusplus
}
#endif

#endif
