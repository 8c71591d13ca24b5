/* Type codes of the types that a tree defines (DDS-XTypes 1.3, 7.3.2). */
#ifndef ZUV_PLATFORM_DDSXML_XML_TYPE_CODE_H
#define ZUV_PLATFORM_DDSXML_XML_TYPE_CODE_H

#include "platform/ddsxml/XmlObject.h"
#include "platform/typesys/TypeCode.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The type code of an element "struct", "valuetype", "union", "enum" or "typedef". It is made when it is asked for
 * the first time, together with those of the types that it uses, and belongs to the element: it lives as long as
 * that does.
 *
 * Names of types and constants are looked for in the element's own module, then in the modules around it, and with
 * a leading "::" from the element "types" on. A module may be written in several pieces. Several dimensions of an
 * array are arrays of arrays, the slowest one outermost. A "valuetype" is a structure. Members without an "id" have
 * the number behind that of the member before, or with the "autoid" hash one made of their name.
 *
 * NULL after a report, which names the type and the reason, when the definition is wrong or there is no memory:
 *   - an attribute is missing or its value is not understood; a name leads to nothing;
 *   - a type uses itself, or types use one another more than 64 deep;
 *   - two members have one name or id, the base included; two enumerators one name or value; two cases one label;
 *   - a base is no structure, or is extensible in another way; a member is key and optional;
 *   - it needs what a type code does not tell: an enumeration with a "bitBound" of at most 16, a union with a key,
 *     a label beyond 32 bits.
 * `self` must not be NULL. */
const DDS_TypeCode *DDS_XMLTypeCode_get_dds_typecode(ZUVXMLObject *self);

#ifdef __cplusplus
}
#endif

#endif
