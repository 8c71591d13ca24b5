#include <algorithm>
#include <climits>
#include <cstring>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Object.h"
#include "platform/xmlutils/Tree.hpp"

using namespace zuv::xmlutils;

namespace
{

const xmlAttr *toAttribute(const ZUVXMLUTILSAttribute *attribute)
{
    return reinterpret_cast<const xmlAttr *>(attribute);
}

ZUVXMLUTILSAttribute *toPublic(xmlAttr *attribute)
{
    return reinterpret_cast<ZUVXMLUTILSAttribute *>(attribute);
}

const char *toText(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

const xmlChar *toXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

NodePointer newInstruction(xmlDoc *document, const char *name, const char *text)
{
    const LibraryScope scope;
    NodePointer node(xmlNewDocPI(document, toXml(name), toXml(text)));
    return scope.isOutOfMemory() ? nullptr : std::move(node);
}

const char *instructionIn(const xmlNode *node, const char *name)
{
    const bool isOne = node->type == XML_PI_NODE && std::strcmp(toText(node->name), name) == 0;
    return isOne ? toText(node->content) : nullptr;
}

void reportNotSet(const xmlNode *node, const char *attribute)
{
    ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_OBJECT,
                     &ZUV_LOG_FAILURE_TEMPLATE, "set attribute '%s' of element <%s>", attribute,
                     tagOf(node).data());
}

} // namespace

extern "C" {

const char *ZUVXMLUTILSObject_getText(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? "" : contentOf(toNode(self));
}

int ZUVXMLUTILSObject_isText(const ZUVXMLUTILSObject *self)
{
    return !ZUV_XML_IS_NULL(OBJECT, self) && firstChildOf(toNode(self)) == nullptr &&
           *contentOf(toNode(self)) != '\0';
}

int ZUVXMLUTILSObject_mayHoldVariables(const ZUVXMLUTILSObject *self)
{
    return !ZUV_XML_IS_NULL(OBJECT, self) && documentOf(toNode(self))->mayHoldVariables;
}

const char *ZUVXMLUTILSObject_getAttribute(const ZUVXMLUTILSObject *self, const char *name)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name) ||
        !isElement(toNode(self))) {
        return nullptr;
    }
    const xmlAttr *const attribute = findAttribute(toNode(self), name);
    return attribute != nullptr ? valueOf(attribute) : nullptr;
}

int ZUVXMLUTILSObject_setAttribute(ZUVXMLUTILSObject *self, const char *name, const char *value)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name) ||
        ZUV_XML_IS_NULL(OBJECT, value)) {
        return 0;
    }
    if (ZUV_OSAPI_FAULT("xmlutils.attribute") || !changeAttribute(toNode(self), name, value, {})) {
        reportNotSet(toNode(self), name);
        return 0;
    }
    return 1;
}

int ZUVXMLUTILSObject_replaceAttribute(ZUVXMLUTILSObject *self, const char *name, const char *value,
                                       ZUVXMLUTILSAttribute **former)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name) ||
        ZUV_XML_IS_NULL(OBJECT, value) || ZUV_XML_IS_NULL(OBJECT, former)) {
        return 0;
    }
    xmlNode *const node = toNode(self);
    xmlAttr *const attribute =
        ZUV_OSAPI_FAULT("xmlutils.attribute") ? nullptr : newAttribute(node->doc, name, value);
    if (attribute == nullptr) {
        reportNotSet(node, name);
        return 0;
    }
    *former = toPublic(exchangeAttribute(node, attribute));
    return 1;
}

void ZUVXMLUTILSObject_putBackAttribute(ZUVXMLUTILSObject *self, const char *name,
                                        ZUVXMLUTILSAttribute *former)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name)) {
        return;
    }
    xmlNode *const node = toNode(self);
    xmlAttr *const attribute = former == nullptr
                                   ? findAttribute(node, name)
                                   : exchangeAttribute(node, reinterpret_cast<xmlAttr *>(former));
    if (attribute != nullptr && former == nullptr) {
        removeAttribute(node, attribute);
    } else if (attribute != nullptr) {
        xmlFreeProp(attribute);
    }
}

void ZUVXMLUTILSObject_removeAttribute(ZUVXMLUTILSObject *self, const char *name)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name)) {
        return;
    }
    if (xmlAttr *const attribute = findAttribute(toNode(self), name)) {
        removeAttribute(toNode(self), attribute);
    }
}

ZUVXMLUTILSAttribute *ZUVXMLUTILSObject_getFirstAttribute(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || !isElement(toNode(self))) {
        return nullptr;
    }
    return toPublic(toNode(self)->properties);
}

ZUVXMLUTILSAttribute *ZUVXMLUTILSAttribute_getNext(const ZUVXMLUTILSAttribute *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : toPublic(toAttribute(self)->next);
}

const char *ZUVXMLUTILSAttribute_getName(const ZUVXMLUTILSAttribute *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return "";
    }
    const xmlAttr *const attribute = toAttribute(self);
    if (attribute->ns != nullptr && attribute->ns->prefix != nullptr) {
        // In the dictionary it lives as long as the tree. Without memory the plain name has to do.
        const LibraryScope scope;
        if (const xmlChar *const name =
                xmlDictQLookup(attribute->doc->dict, attribute->ns->prefix, attribute->name)) {
            return toText(name);
        }
    }
    return toText(attribute->name);
}

const char *ZUVXMLUTILSAttribute_getValue(const ZUVXMLUTILSAttribute *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? "" : valueOf(toAttribute(self));
}

const char *ZUVXMLUTILSObject_getProcessingInstruction(const ZUVXMLUTILSObject *self,
                                                       const char *name)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name)) {
        return nullptr;
    }
    for (const xmlNode *node = toNode(self)->children; node != nullptr; node = node->next) {
        if (const char *const text = instructionIn(node, name)) {
            return text;
        }
    }
    return nullptr;
}

const char *ZUVXMLUTILSObject_getPrecedingInstruction(const ZUVXMLUTILSObject *self,
                                                      const char *name)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name)) {
        return nullptr;
    }
    const xmlNode *node = toNode(self)->prev;
    for (; node != nullptr && !isElement(node); node = node->prev) {
        if (const char *const text = instructionIn(node, name)) {
            return text;
        }
    }
    return nullptr;
}

int ZUVXMLUTILSObject_addProcessingInstruction(ZUVXMLUTILSObject *self, const char *name,
                                               const char *text)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name) ||
        ZUV_XML_IS_NULL(OBJECT, text)) {
        return 0;
    }
    xmlNode *const node = toNode(self);
    NodePointer instruction = ZUV_OSAPI_FAULT("xmlutils.processing_instruction")
                                  ? nullptr
                                  : newInstruction(node->doc, name, text);
    if (instruction == nullptr) {
        ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_OBJECT,
                         &ZUV_LOG_FAILURE_TEMPLATE,
                         "add processing instruction '%s' to element <%s>", name,
                         tagOf(node).data());
        return 0;
    }
    insertFirst(node, instruction.release());
    return 1;
}

void *ZUVXMLUTILSObject_getUserData(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return nullptr;
    }
    const NodeRecord *const record = recordOf(toNode(self));
    return record != nullptr ? record->userData : nullptr;
}

int ZUVXMLUTILSObject_setUserData(ZUVXMLUTILSObject *self, void *userData)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) ||
        ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_OBJECT, !isElement(toNode(self)),
                         "self is a comment")) {
        return 0;
    }
    NodeRecord *const record = recordOf(toNode(self));
    if (record == nullptr && userData == nullptr) {
        return 1;
    }
    NodeRecord *const needed = record != nullptr                       ? record
                               : ZUV_OSAPI_FAULT("xmlutils.user_data") ? nullptr
                                                                       : needRecord(toNode(self));
    if (needed == nullptr) {
        ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_OBJECT,
                         &ZUV_LOG_FAILURE_TEMPLATE, "set user data of element <%s>",
                         tagOf(toNode(self)).data());
        return 0;
    }
    needed->userData = userData;
    return 1;
}

int ZUVXMLUTILSObject_getLine(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return 0;
    }
    return static_cast<int>(std::min<long>(lineOf(toNode(self)), INT_MAX));
}

const char *ZUVXMLUTILSObject_getFilePath(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : filePathOf(toNode(self));
}
}
