#include "platform/xmlutils/Visitor.h"

#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Tree.hpp"

#include <libxml/tree.h>

using namespace zuv::xmlutils;

namespace
{

bool isWrong(const ZUVXMLUTILSVisitor *visitor, const ZUVXMLUTILSObject *object)
{
    return ZUV_XML_IS_NULL(OBJECT, visitor) || ZUV_XML_IS_NULL(OBJECT, visitor->visit) ||
           ZUV_XML_IS_NULL(OBJECT, object);
}

xmlNode *deepestFirst(xmlNode *node)
{
    while (xmlNode *const child = firstChildOf(node)) {
        node = child;
    }
    return node;
}

} // namespace

extern "C" {

int ZUVXMLUTILSVisitor_visit(const ZUVXMLUTILSVisitor *self, ZUVXMLUTILSObject *object)
{
    if (isWrong(self, object)) {
        return 0;
    }
    xmlNode *const top = toNode(object);
    for (xmlNode *node = top; node != nullptr; node = nextInSubtree(node, top)) {
        if (!self->visit(self->visitorData, toObject(node))) {
            return 0;
        }
    }
    return 1;
}

int ZUVXMLUTILSVisitor_visitChildrenFirst(const ZUVXMLUTILSVisitor *self, ZUVXMLUTILSObject *object)
{
    if (isWrong(self, object)) {
        return 0;
    }
    xmlNode *const top = toNode(object);
    xmlNode *node = deepestFirst(top);
    while (self->visit(self->visitorData, toObject(node))) {
        if (node == top) {
            return 1;
        }
        xmlNode *const sibling = nextOf(node);
        node = sibling != nullptr ? deepestFirst(sibling) : parentOf(node);
    }
    return 0;
}
}
