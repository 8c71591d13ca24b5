#include "platform/xmlutils/Utils.h"

#include <libxml/tree.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Tree.hpp"
#include "platform/xmlutils/Update.hpp"

using namespace zuv::xmlutils;

namespace
{

void moveBefore(xmlNode *node, xmlNode *cursor)
{
    xmlNode *const parent = parentOf(node);
    detach(node);
    attach(parent, node, cursor);
}

// Let the children with the tag stand before `cursor`; returns what is then behind them.
xmlNode *gather(ZUVXMLUTILSObject *parent, const char *tag, xmlNode *cursor)
{
    ZUVXMLUTILSObject *child = ZUVXMLUTILSObject_getFirstChildWithTag(parent, tag);
    while (child != nullptr) {
        ZUVXMLUTILSObject *const next = ZUVXMLUTILSObject_getNextSiblingWithTag(child, tag);
        if (toNode(child) == cursor) {
            cursor = nextOf(cursor);
        } else {
            moveBefore(toNode(child), cursor);
        }
        child = next;
    }
    return cursor;
}

} // namespace

extern "C" {

int ZUVXMLUTILSUtils_updateObject(ZUVXMLUTILSObject *self, const ZUVXMLUTILSObject *update)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, update)) {
        return 0;
    }
    Problem problem;
    const auto onFailure = [&] { problem.set(toNode(update), Problem::kOutOfMemory); };
    if (tagOf(toNode(self)) != tagOf(toNode(update))) {
        problem.set(toNode(update), "the element that it changes has another tag");
    } else if (ZUV_OSAPI_FAULT("xmlutils.update")) {
        onFailure();
    } else if (withMemory(false, onFailure, [&] {
                   Update plan(toNode(self), toNode(update));
                   plan.commit();
                   return true;
               })) {
        return 1;
    }
    ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_OBJECT, sourceOf(toNode(update)), problem);
    return 0;
}

void ZUVXMLUTILSUtils_sortChildren(ZUVXMLUTILSObject *self, const char *const *tags, int count)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, tags)) {
        return;
    }
    xmlNode *cursor = gather(self, "annotation", firstChildOf(toNode(self)));
    for (int index = 0; index < count; ++index) {
        cursor = gather(self, tags[index], cursor);
    }
}

ZUVXMLUTILSObject *ZUVXMLUTILSUtils_lookUpProperty(const ZUVXMLUTILSObject *self, const char *name)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name)) {
        return nullptr;
    }
    xmlNode *entry = firstChildOf(toNode(self));
    if (entry != nullptr && tagOf(entry) == "value") {
        entry = firstChildOf(entry);
    }
    const auto isIt = [name](const xmlNode *node) {
        const xmlNode *const child = firstOfTag(node, "name");
        return child != nullptr && contentOf(child) == std::string_view(name);
    };
    while (entry != nullptr && !isIt(entry)) {
        entry = nextOf(entry);
    }
    return toObject(entry);
}
}
