#include "platform/xmlutils/Object.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include <libxml/tree.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Tree.hpp"

using namespace zuv::xmlutils;

namespace
{

constexpr std::string_view kSeparator = "::";
constexpr const char *kCommentTag = "#comment";

// Elements and comments.
xmlNode *visibleFrom(xmlNode *node)
{
    while (node != nullptr && node->type != XML_ELEMENT_NODE && node->type != XML_COMMENT_NODE) {
        node = node->next;
    }
    return node;
}

xmlNode *findChild(xmlNode *parent, std::string_view name)
{
    if (name.empty()) {
        return nullptr;
    }
    if (const ChildIndex *const index = indexOf(parent)) {
        return index->findByName(name);
    }
    xmlNode *child = firstChildOf(parent);
    while (child != nullptr && nameOf(child) != name) {
        child = nextOf(child);
    }
    return child;
}

// A name may hold the separator, so that each part of the path may end at any of them. No element is met twice,
// since its path has one length.
xmlNode *findPath(xmlNode *from, std::string_view path)
{
    for (std::size_t start = 0;;) {
        const std::size_t end = path.find(kSeparator, start);
        xmlNode *const child = findChild(from, path.substr(0, end));
        if (end == path.npos) {
            return child;
        }
        start = end + kSeparator.size();
        xmlNode *const found = child != nullptr ? findPath(child, path.substr(start)) : nullptr;
        if (found != nullptr) {
            return found;
        }
    }
}

// The cached name, made from that of the element around; null when there is no memory.
const FullName *fullNameOf(xmlNode *node)
{
    NodeRecord *const record = needRecord(node);
    if (record == nullptr || record->fullName != nullptr) {
        return record != nullptr ? record->fullName : nullptr;
    }
    std::string_view outer;
    if (xmlNode *const parent = parentOf(node)) {
        const FullName *const outerName = fullNameOf(parent);
        if (outerName == nullptr) {
            return nullptr;
        }
        outer = outerName->text;
    }
    // The root has no segment.
    const std::string_view name = parentOf(node) != nullptr ? nameOf(node) : "";
    const std::string_view separator =
        outer.empty() || (!name.empty() && outer != kSeparator) ? kSeparator : "";
    const std::size_t length = outer.size() + separator.size() + name.size();
    auto *const fullName = static_cast<FullName *>(
        ZUVOsapiHeap_allocate(offsetof(FullName, text) + length + 1, "xml"));
    if (fullName != nullptr) {
        char *end = fullName->text;
        for (const std::string_view part : {outer, separator, name}) {
            end += part.copy(end, part.size());
        }
        *end = '\0';
    }
    return record->fullName = fullName;
}

} // namespace

extern "C" {

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getRoot(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return nullptr;
    }
    return toObject(xmlDocGetRootElement(toNode(self)->doc));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getParent(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : toObject(parentOf(toNode(self)));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getFirstChild(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : toObject(firstChildOf(toNode(self)));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getNextSibling(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : toObject(nextOf(toNode(self)));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getPreviousSibling(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : toObject(previousOf(toNode(self)));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getFirstChildWithTag(const ZUVXMLUTILSObject *self,
                                                          const char *tag)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, tag)) {
        return nullptr;
    }
    return toObject(firstOfTag(toNode(self), tag));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getNextSiblingWithTag(const ZUVXMLUTILSObject *self,
                                                           const char *tag)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, tag)) {
        return nullptr;
    }
    if (tagOf(toNode(self)) == tag) {
        return toObject(nextWithTag(toNode(self)));
    }
    xmlNode *sibling = nextOf(toNode(self));
    while (sibling != nullptr && tagOf(sibling) != tag) {
        sibling = nextOf(sibling);
    }
    return toObject(sibling);
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getFirstNode(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : toObject(visibleFrom(toNode(self)->children));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_getNextNode(const ZUVXMLUTILSObject *self)
{
    return ZUV_XML_IS_NULL(OBJECT, self) ? nullptr : toObject(visibleFrom(toNode(self)->next));
}

int ZUVXMLUTILSObject_countPreviousSiblingsWithTag(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return 0;
    }
    const xmlNode *const node = toNode(self);
    xmlNode *const parent = parentOf(node);
    if (ChildIndex *const index = parent != nullptr ? indexOf(parent) : nullptr) {
        return static_cast<int>(std::min<std::int64_t>(index->rankOf(node), INT_MAX));
    }
    int count = 0;
    for (const xmlNode *at = previousOf(node); at != nullptr; at = previousOf(at)) {
        count += haveSameTag(at, node);
    }
    return count;
}

const char *ZUVXMLUTILSObject_getTagName(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return "";
    }
    return isElement(toNode(self)) ? reinterpret_cast<const char *>(toNode(self)->name)
                                   : kCommentTag;
}

int ZUVXMLUTILSObject_setTagName(ZUVXMLUTILSObject *self, const char *tag)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, tag)) {
        return 0;
    }
    if (ZUV_OSAPI_FAULT("xmlutils.tag") || !renameTag(toNode(self), tag)) {
        ZUV_XML_REPORT(ZUVXMLUTILS_SUBMODULE_OBJECT, &ZUV_LOG_ASSERT_FAILURE_s, "tag of element");
        return 0;
    }
    return 1;
}

const char *ZUVXMLUTILSObject_getName(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || !isElement(toNode(self))) {
        return "";
    }
    const xmlAttr *const attribute = findAttribute(toNode(self), "name");
    return attribute != nullptr ? valueOf(attribute) : "";
}

int ZUVXMLUTILSObject_setName(ZUVXMLUTILSObject *self, const char *name)
{
    return ZUVXMLUTILSObject_setAttribute(self, "name", name);
}

const char *ZUVXMLUTILSObject_getFullyQualifiedName(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return nullptr;
    }
    const FullName *const fullName =
        ZUV_OSAPI_FAULT("xmlutils.full_name") ? nullptr : fullNameOf(toNode(self));
    if (fullName == nullptr) {
        ZUV_XML_REPORT(ZUVXMLUTILS_SUBMODULE_OBJECT, &ZUV_LOG_GET_FAILURE_s,
                       "fully qualified name of element");
        return nullptr;
    }
    return fullName->text;
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_lookUp(const ZUVXMLUTILSObject *self, const char *fullName)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, fullName)) {
        return nullptr;
    }
    std::string_view path = fullName;
    xmlNode *from = toNode(self);
    if (path.starts_with(kSeparator)) {
        path.remove_prefix(kSeparator.size());
        from = xmlDocGetRootElement(from->doc);
    }
    return toObject(path.empty() ? from : findPath(from, path));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_lookUpChild(const ZUVXMLUTILSObject *self, const char *name)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name)) {
        return nullptr;
    }
    return toObject(findChild(toNode(self), name));
}

ZUVXMLUTILSObject *ZUVXMLUTILSObject_lookUpPreviousSibling(const ZUVXMLUTILSObject *self,
                                                           const char *name)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, name) || *name == '\0') {
        return nullptr;
    }
    xmlNode *const parent = parentOf(toNode(self));
    if (parent == nullptr) {
        return nullptr;
    }
    if (const ChildIndex *const index = indexOf(parent)) {
        return toObject(index->findBefore(toNode(self), name));
    }
    xmlNode *sibling = firstChildOf(parent);
    while (sibling != toNode(self) && nameOf(sibling) != name) {
        sibling = nextOf(sibling);
    }
    return sibling != toNode(self) ? toObject(sibling) : nullptr;
}
}
