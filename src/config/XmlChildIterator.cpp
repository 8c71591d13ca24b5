#include "config/XmlChildIterator.h"

#include "config/XmlLog.hpp"

namespace
{

bool isOverridden(const ZUVXMLUTILSObject *parent, const ZUVXMLUTILSObject *baseChild)
{
    return ZUVXMLUTILSObject_lookUpChild(parent, ZUVXMLUTILSObject_getName(baseChild)) != nullptr ||
           ZUVXMLUTILSObject_getFirstChildWithTag(
               parent, ZUVXMLUTILSObject_getTagName(baseChild)) != nullptr;
}

} // namespace

extern "C" {

void BRELXmlObjectChildIterator_begin(BRELXmlObjectChildIterator *self, ZUVXMLUTILSObject *base,
                                      ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlObject)) {
        return;
    }
    self->parent = xmlObject;
    self->nextChild = ZUVXMLUTILSObject_getFirstChild(xmlObject);
    if (base != nullptr) {
        self->baseNextChild = ZUVXMLUTILSObject_getFirstChild(base);
    }
}

ZUVXMLUTILSObject *BRELXmlObjectChildIterator_next(BRELXmlObjectChildIterator *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return nullptr;
    }
    if (ZUVXMLUTILSObject *const child = self->nextChild) {
        self->nextChild = ZUVXMLUTILSObject_getNextSibling(child);
        return child;
    }
    // The last child of the base is given out even if it is overridden.
    ZUVXMLUTILSObject *child = nullptr;
    while (self->baseNextChild != nullptr) {
        child = self->baseNextChild;
        self->baseNextChild = ZUVXMLUTILSObject_getNextSibling(child);
        if (!isOverridden(self->parent, child)) {
            break;
        }
    }
    return child;
}
}
