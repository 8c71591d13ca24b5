/* What a program does to whole elements: change one as another one says, put its children into order, find a
 * property in it. */
#ifndef ZUV_PLATFORM_XMLUTILS_UTILS_H
#define ZUV_PLATFORM_XMLUTILS_UTILS_H

#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Change `self` as `update` says, which has the same tag. What `update` does not mention stays as it is.
 *
 * Each child of `update` is matched with a child of `self` of the same tag. The key of a child is its name, or
 * the text of its own child "name":
 *   - with a key, the child with that key; if there is none, but either side has just one child of the tag and
 *     the one in `self` has user data, that one;
 *   - without a key, the first child of the tag, if it is the only one on either side, or has a key;
 *   - otherwise children without a key are a list, which replaces all of the tag in `self` that have none.
 * Matched children are changed in the same way, down to the texts, which are replaced. What has no match is
 * added: before the match of the next child of `update` that has one, else behind the match of the one before,
 * else at the end.
 *
 * Attributes of children are added or replaced, but never "name", and nothing that the program has set with
 * ZUVXMLUTILSObject_setAttribute or setName. The attributes of `self` itself, user data, comments and
 * processing instructions do not change. `update` stays as it is.
 *
 * Takes time as `update` is large, not as the tree is. Returns 1, or 0 after a report with the tree as it was:
 * when the tags differ, or there is no memory. No argument may be NULL. */
int ZUVXMLUTILSUtils_updateObject(ZUVXMLUTILSObject *self, const ZUVXMLUTILSObject *update);

/* Put the children of `self` into this order: those tagged "annotation", those with the first of the `count`
 * tags, with the second, and so on, then all others. Among equals the order stays. Takes time as there are
 * children with these tags, not as there are others. No argument may be NULL. */
void ZUVXMLUTILSUtils_sortChildren(ZUVXMLUTILSObject *self, const char *const *tags, int count);

/* Find an entry of a property list: a child of `self`, or of its first child if that has the tag "value", whose
 * own child "name" has this text. NULL, and no report, if there is none. No argument may be NULL. */
ZUVXMLUTILSObject *ZUVXMLUTILSUtils_lookUpProperty(const ZUVXMLUTILSObject *self, const char *name);

#ifdef __cplusplus
}
#endif

#endif
