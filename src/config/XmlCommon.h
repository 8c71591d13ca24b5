/* What the records of all configuration elements share: reading of values, the attribute "enabled", names,
 * targets of updates, references, property lists.
 *
 * Operations return 1 for success and 0 after a report of what is wrong; the report of a NULL argument, which none
 * may be unless it says so, is that of a failed precondition. Texts are borrowed from the tree. Nothing here
 * locks: callers hold the lock of the parser, see BRELCfgFileParser_lockXmlDom. */
#ifndef ZUV_CONFIG_XML_COMMON_H
#define ZUV_CONFIG_XML_COMMON_H

#include <stdint.h>

#include "config/ThreadSettingsMask.h"
#include "config/Version.h"
#include "config/XmlTags.h"
#include "platform/ddsxml/XmlParser.h"
#include "platform/osapi/Time.h"
#include "platform/typesys/Types.h"
#include "platform/xmlutils/Parser.h"
#include "sdkLib/Properties.h"

#ifdef __cplusplus
extern "C" {
#endif

struct BRELCfgFileParser;

/* ---- Values: the text of an element ---- */

/* As MAVOString_strToBoolean reads it. A failure leaves `*value` as it was. */
int BRELXmlBoolean_getValue(const ZUVXMLUTILSObject *xmlObject, DDS_Boolean *value);

/* As BRELXmlUtils_strToInt reads it. */
int BRELXmlInt_getValue(const ZUVXMLUTILSObject *xmlObject, int *value);

/* The children "sec" and "nanosec". One that is absent or empty counts as 0, so that an empty element is no
 * time at all. A failure leaves the member at fault, and those behind it, as they were. */
int BRELXmlDuration_getValue(const ZUVXMLUTILSObject *xmlDuration, DDS_Duration_t *duration);

/* A symbolic name in any case, or a number: hexadecimal behind "0x", else decimal. It is cut to 32 bits, and
 * what follows the digits is ignored. A text without a digit fails, and stores 0. */
int BRELXmlUtils_strToInt(int32_t *value, const char *text);

/* ---- Elements ---- */

/* The first child of that tag, or NULL. */
ZUVXMLUTILSObject *BRELXmlObject_getDomainId(const ZUVXMLUTILSObject *xmlObject);
ZUVXMLUTILSObject *BRELXmlObject_getEnabled(const ZUVXMLUTILSObject *xmlObject);

/* The attribute "enabled". Without one `*enabled` stays as it is. */
int BRELXmlObject_getEnabledAttribute(const ZUVXMLUTILSObject *xmlObject, DDS_Boolean *enabled);

/* The name of the element within its service: "::service::route::port" gives "route::port", and the service
 * itself gives its own name. NULL after a report when there is no memory. */
const char *
BRELXmlObject_getFullyQualifiedNameRelativeToService(const ZUVXMLUTILSObject *xmlObject);

/* The parser that owns the tree. */
struct BRELCfgFileParser *BRELXmlObject_getXmlSupport(const ZUVXMLUTILSObject *xmlObject);

/* The element of the tree at the name `referenceName` must have the tag `referenceTagName`; that of a Java
 * plug-in counts as that of a plug-in. A name that leads nowhere is no failure: what it names may come later. */
int BRELXmlObject_checkReferencedObject(const ZUVXMLUTILSObject *xmlObject,
                                        const char *referenceName, const char *referenceTagName);

/* Give an element without a name one that is made of its tag and its number among the siblings of that tag:
 * the third "domain_route" is "DomainRoute3". An element with a name keeps it. */
int BRELXmlUtils_setAutoName(ZUVXMLUTILSObject *xmlObject);

/* The version of the product, with the numbers that the attribute "version" gives in place of the first three.
 * A wrong attribute is reported, and changes nothing else. */
void BRELXmlUtils_getVersion(const ZUVXMLUTILSObject *xmlObject, ZUV_BrelServiceVersion *version);

/* ---- Targets of updates ---- */

/* The attribute that binds a temporary element, which says what is to change, to the element that changes. Its
 * value is an address: no document may bring it. */
#define BREL_XML_SUPPORT_UPDATE_TARGET_ATTR_NAME ZUVXMLUTILS_RESERVED_ATTRIBUTE_NAME

/* Bind `xmlObject` to its target. */
int BRELXmlObject_setUpdateTarget(ZUVXMLUTILSObject *xmlObject, const ZUVXMLUTILSObject *target);

/* The element that `xmlObject` is to change; NULL without a report if it is bound to none. */
ZUVXMLUTILSObject *BRELXmlObject_getUpdateTarget(const ZUVXMLUTILSObject *xmlObject);

/* The record of that element, or NULL. */
void *BRELXmlObject_getUpdateTargetExtensionObject(const ZUVXMLUTILSObject *xmlObject);

/* ---- Property lists ---- */

/* Add the entries of a property list, which stand in the element or in its first child "value", to `properties`:
 * of each the text of its child "name" and of its child "value", either of them "" if it is absent. A name that
 * is there already gets the new value. A failure keeps what was added before it. */
int BRELXmlProperty_parse(const ZUVXMLUTILSObject *xmlObject,
                          ZUV_BrelServiceProperties *properties);

/* The same, but a name that is there already keeps its value. */
int BRELXmlProperty_parseNoOverride(const ZUVXMLUTILSObject *xmlObject,
                                    ZUV_BrelServiceProperties *properties);
int BRELXmlProperty_parseWithOverride(const ZUVXMLUTILSObject *xmlObject,
                                      ZUV_BrelServiceProperties *properties, DDS_Boolean override);

/* The entry of that name; NULL, and no report, if there is none. */
ZUVXMLUTILSObject *BRELXmlProperty_lookUpElement(const ZUVXMLUTILSObject *xmlObject,
                                                 const char *name);

/* ---- The tree of QoS profiles ---- */

/* Take `child` out of `parent`, if it is there. It is not freed. */
void BRELXmlUtils_removeDdsXmlObject(ZUVXMLObject *parent, ZUVXMLObject *child);

/* Take `child` out of its tree and free it. */
void BRELXmlUtils_deleteDdsXmlObject(DDS_XMLParser *parser, ZUVXMLObject *child);

#ifdef __cplusplus
}
#endif

#endif
