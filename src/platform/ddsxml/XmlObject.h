/* The tree of what the middleware's own XML declares: libraries of QoS profiles, types, variables.
 *
 * A tree comes from ZUVXMLParser_parseFromString and DDS_QosProvider_load_builtin_profilesI, and is freed with
 * DDS_XMLParser_free_dom. Texts belong to the tree. Nothing here locks: threads that share a tree take turns. No
 * argument may be NULL: one that is gets reported, and the operation gives NULL. */
#ifndef ZUV_PLATFORM_DDSXML_XML_OBJECT_H
#define ZUV_PLATFORM_DDSXML_XML_OBJECT_H

#ifdef __cplusplus
extern "C" {
#endif

/* An element of the tree. */
typedef struct ZUVXMLObject ZUVXMLObject;

const char *ZUVXMLObject_getTagName(const ZUVXMLObject *self);

/* The attribute "name"; "" without one. */
const char *ZUVXMLObject_getName(const ZUVXMLObject *self);

/* The text of an element without children; "" if it has none. */
const char *ZUVXMLObject_getText(const ZUVXMLObject *self);

/* The value of the attribute, or NULL. */
const char *ZUVXMLObject_getAttribute(const ZUVXMLObject *self, const char *name);

/* Children in the order in which they came; NULL behind the last. */
ZUVXMLObject *ZUVXMLObject_getFirstChild(const ZUVXMLObject *self);
ZUVXMLObject *ZUVXMLObject_getNextSibling(const ZUVXMLObject *self);

/* The first child with the tag, or NULL. */
ZUVXMLObject *ZUVXMLObject_getFirstChildWithTag(const ZUVXMLObject *self, const char *tag);

/* The element around this one; NULL for the root. */
ZUVXMLObject *DDS_XMLObject_get_parent(const ZUVXMLObject *self);

/* The first child of the name, or NULL. Among many children this is a lookup and no walk. */
ZUVXMLObject *DDS_XMLObject_lookup_child(const ZUVXMLObject *self, const char *name);

/* The element at the path of names, parted by "::", from `self` downwards; NULL if there is none. A leading "::"
 * does not count. */
ZUVXMLObject *DDS_XMLObject_lookup(const ZUVXMLObject *self, const char *fullName);

/* "::library::profile": the names on the way from below the root to this element; elements without a name add
 * nothing. The text lives as long as the element. NULL after a report when there is no memory. */
const char *DDS_XMLObject_get_fully_qualified_name(ZUVXMLObject *self);

/* Take `child` out of its parent without freeing it. Returns 1, or 0 if `self` does not hold it: then nothing
 * happens. */
int ZUVXMLObject_removeChild(ZUVXMLObject *self, ZUVXMLObject *child);

#ifdef __cplusplus
}
#endif

#endif
