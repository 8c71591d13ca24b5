/* Calls an operation for each element of a tree. */
#ifndef ZUV_PLATFORM_XMLUTILS_VISITOR_H
#define ZUV_PLATFORM_XMLUTILS_VISITOR_H

#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Visit one element. Returns 1 to go on, 0 to end the walk. `visitorData` is that of the visitor. */
typedef int (*ZUVXMLUTILSVisitorVisitFcn)(void *visitorData, ZUVXMLUTILSObject *object);

/* Borrows what `visitorData` leads to. */
typedef struct ZUVXMLUTILSVisitor {
    void *visitorData;
    ZUVXMLUTILSVisitorVisitFcn visit;
} ZUVXMLUTILSVisitor;

/* Visit `object` and everything in it, each element before its children, children in their order. A visit may
 * change the element, add or free elements in it, and free siblings that stand before it. Returns 1 when all
 * visits did, or 0 as soon as one returned 0. No argument may be NULL. */
int ZUVXMLUTILSVisitor_visit(const ZUVXMLUTILSVisitor *self, ZUVXMLUTILSObject *object);

/* The same with each element visited behind its children. A visit may change the element, and free siblings
 * that stand before it. */
int ZUVXMLUTILSVisitor_visitChildrenFirst(const ZUVXMLUTILSVisitor *self,
                                          ZUVXMLUTILSObject *object);

#ifdef __cplusplus
}
#endif

#endif
