#include "platform/xmlutils/Tree.hpp"

#include <algorithm>
#include <cstring>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include "platform/xmlutils/LibraryScope.hpp"

namespace zuv::xmlutils
{
namespace
{

// In the _private slot of an attribute that the program has set.
char g_programMark;

std::string_view view(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

const xmlChar *toXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

const char *toText(const xmlChar *text)
{
    return reinterpret_cast<const char *>(text);
}

// Ends where the texts differ, most often at once, and so without a call.
bool isEqual(const xmlChar *text, const char *other)
{
    for (; *text == static_cast<xmlChar>(*other); ++text, ++other) {
        if (*text == '\0') {
            return true;
        }
    }
    return false;
}

xmlNode *elementFrom(xmlNode *node, xmlNode *xmlNode::*direction)
{
    while (node != nullptr && node->type != XML_ELEMENT_NODE) {
        node = node->*direction;
    }
    return node;
}

ChildIndex *existingIndexOf(const xmlNode *parent)
{
    const NodeRecord *const record =
        parent != nullptr && parent->type == XML_ELEMENT_NODE ? recordOf(parent) : nullptr;
    return record != nullptr ? record->children.get() : nullptr;
}

// An index that could not take up a change is dropped, and made anew when it is needed.
template <typename Change>
void changeIndexOf(const xmlNode *child, Change &&change)
{
    ChildIndex *const index = existingIndexOf(child->parent);
    if (index == nullptr) {
        return;
    }
    try {
        change(*index);
    } catch (const std::bad_alloc &) {
        recordOf(child->parent)->children.reset();
    }
}

// A full name that is cached beneath a renamed element is out of date. Records may have borrowed it. Whoever has one
// has them all the way up.
void retireFullNames(xmlNode *top)
{
    const NodeRecord *const topRecord = recordOf(top);
    if (topRecord == nullptr || topRecord->fullName == nullptr) {
        return;
    }
    for (xmlNode *node = top; node != nullptr; node = nextInSubtree(node, top)) {
        NodeRecord *const record = recordOf(node);
        if (record != nullptr && record->fullName != nullptr) {
            documentOf(node)->retire(record->fullName);
            record->fullName = nullptr;
        }
    }
}

template <typename Change>
void changeName(xmlNode *node, Change &&change)
{
    changeIndexOf(node, [&](ChildIndex &index) { index.removeName(node); });
    change();
    changeIndexOf(node, [&](ChildIndex &index) { index.addName(node); });
    retireFullNames(node);
}

bool isName(const xmlAttr *attribute)
{
    return attribute->ns == nullptr && isEqual(attribute->name, "name");
}

// Nodes of a program's own are not made by libxml2, to which somebody would have to listen for a want of memory.
xmlAttr *newAttribute(xmlDoc *document, const char *name)
{
    const xmlChar *const knownName = xmlDictLookup(document->dict, toXml(name), -1);
    void *const room = knownName != nullptr ? xmlMalloc(sizeof(xmlAttr)) : nullptr;
    if (room == nullptr) {
        return nullptr;
    }
    xmlAttr *const attribute = new (room) xmlAttr();
    attribute->type = XML_ATTRIBUTE_NODE;
    attribute->name = knownName;
    attribute->doc = document;
    return attribute;
}

// A short text lies in its node, where libxml2 itself puts those of documents.
NodePointer newText(xmlDoc *document, const char *text)
{
    static_assert(offsetof(xmlNode, nsDef) == offsetof(xmlNode, properties) + sizeof(void *));
    void *const room = xmlMalloc(sizeof(xmlNode));
    if (room == nullptr) {
        return nullptr;
    }
    NodePointer node(new (room) xmlNode());
    node->type = XML_TEXT_NODE;
    node->name = xmlStringText;
    node->doc = document;
    const std::size_t size = std::strlen(text) + 1;
    const bool isShort = size <= sizeof(xmlNode::properties) + sizeof(xmlNode::nsDef);
    void *const content = isShort ? &node->properties : xmlMalloc(size);
    if (content == nullptr) {
        return nullptr;
    }
    node->content = static_cast<xmlChar *>(std::memcpy(content, text, size));
    return node;
}

void linkLast(xmlNode *parent, xmlNode *node)
{
    node->parent = parent;
    node->next = nullptr;
    node->prev = parent->last;
    (parent->last != nullptr ? parent->last->next : parent->children) = node;
    parent->last = node;
}

void linkBefore(xmlNode *before, xmlNode *node)
{
    node->parent = before->parent;
    node->next = before;
    node->prev = before->prev;
    (before->prev != nullptr ? before->prev->next : before->parent->children) = node;
    before->prev = node;
}

void linkLast(xmlNode *node, xmlAttr *attribute)
{
    xmlAttr *last = node->properties;
    while (last != nullptr && last->next != nullptr) {
        last = last->next;
    }
    attribute->parent = node;
    attribute->prev = last;
    (last != nullptr ? last->next : node->properties) = attribute;
}

void release(xmlNode *node)
{
    NodeRecord *const record = recordOf(node);
    if (record != nullptr) {
        documentOf(node)->giveRecord(record);
    }
    node->_private = nullptr;
}

} // namespace

std::string_view tagOf(const xmlNode *node)
{
    return view(node->name);
}

std::string_view nameOf(const xmlNode *node)
{
    const xmlAttr *const attribute = findAttribute(node, "name");
    return attribute != nullptr ? valueOf(attribute) : "";
}

bool isNameTooLong(std::string_view name)
{
    static_assert(ZUVXMLUTILS_NAME_LENGTH_MAX == 255, "messages tell the number");
    if (name.size() <= ZUVXMLUTILS_NAME_LENGTH_MAX) {
        return false;
    }
    // Characters count, not bytes: in UTF-8 those that begin with other bits than 10.
    return std::count_if(name.begin(), name.end(), [](char byte) {
               return (byte & 0xc0) != 0x80;
           }) > ZUVXMLUTILS_NAME_LENGTH_MAX;
}

bool isElement(const xmlNode *node)
{
    return node != nullptr && node->type == XML_ELEMENT_NODE;
}

xmlNode *parentOf(const xmlNode *node)
{
    return isElement(node->parent) ? node->parent : nullptr;
}

xmlNode *firstChildOf(const xmlNode *node)
{
    return elementFrom(node->children, &xmlNode::next);
}

xmlNode *lastChildOf(const xmlNode *node)
{
    return elementFrom(node->last, &xmlNode::prev);
}

xmlNode *nextOf(const xmlNode *node)
{
    return elementFrom(node->next, &xmlNode::next);
}

xmlNode *previousOf(const xmlNode *node)
{
    return elementFrom(node->prev, &xmlNode::prev);
}

xmlNode *nextInSubtree(const xmlNode *node, const xmlNode *top)
{
    if (xmlNode *const child = firstChildOf(node)) {
        return child;
    }
    while (node != top) {
        if (xmlNode *const next = nextOf(node)) {
            return next;
        }
        node = node->parent;
    }
    return nullptr;
}

ChildIndex *indexOf(xmlNode *parent)
{
    if (ChildIndex *const index = existingIndexOf(parent)) {
        return index;
    }
    int count = 0;
    for (const xmlNode *child = firstChildOf(parent); child != nullptr; child = nextOf(child)) {
        if (++count == ChildIndex::kWorthwhile) {
            break;
        }
    }
    NodeRecord *const record = count == ChildIndex::kWorthwhile ? needRecord(parent) : nullptr;
    if (record == nullptr) {
        return nullptr;
    }
    try {
        record->children.reset(heapNew<ChildIndex>(parent));
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
    return record->children.get();
}

bool haveSameTag(const xmlNode *node, const xmlNode *other)
{
    return node->name == other->name || isEqual(node->name, toText(other->name));
}

xmlNode *firstOfTag(const xmlNode *parent, std::string_view tag)
{
    if (const ChildIndex *const index = indexOf(const_cast<xmlNode *>(parent))) {
        return index->firstOfTag(tag);
    }
    xmlNode *child = firstChildOf(parent);
    while (child != nullptr && tagOf(child) != tag) {
        child = nextOf(child);
    }
    return child;
}

xmlNode *nextWithTag(const xmlNode *node)
{
    xmlNode *const parent = parentOf(node);
    if (const ChildIndex *const index = parent != nullptr ? indexOf(parent) : nullptr) {
        return index->nextOfTag(node);
    }
    xmlNode *sibling = nextOf(node);
    while (sibling != nullptr && !haveSameTag(sibling, node)) {
        sibling = nextOf(sibling);
    }
    return sibling;
}

xmlNode *textOf(const xmlNode *node)
{
    xmlNode *child = node->children;
    while (child != nullptr && child->type != XML_TEXT_NODE &&
           child->type != XML_CDATA_SECTION_NODE) {
        child = child->type == XML_ELEMENT_NODE ? nullptr : child->next;
    }
    return child;
}

const char *contentOf(const xmlNode *node)
{
    const xmlNode *const text = textOf(node);
    return text != nullptr ? view(text->content).data() : "";
}

xmlAttr *findAttribute(const xmlNode *node, const char *name)
{
    for (xmlAttr *attribute = node->properties; attribute != nullptr; attribute = attribute->next) {
        if (attribute->ns == nullptr && isEqual(attribute->name, name)) {
            return attribute;
        }
    }
    return nullptr;
}

const char *valueOf(const xmlAttr *attribute)
{
    return attribute->children != nullptr ? view(attribute->children->content).data() : "";
}

bool isProgramAttribute(const xmlAttr *attribute)
{
    return attribute->_private == &g_programMark;
}

bool changeAttribute(xmlNode *node, const char *name, const char *value, AttributeChange change)
{
    NodePointer text = newText(node->doc, value);
    if (text == nullptr) {
        return false;
    }
    xmlAttr *attribute = findAttribute(node, name);
    if (attribute == nullptr) {
        attribute = newAttribute(node->doc, name);
        if (attribute == nullptr) {
            return false;
        }
        linkLast(node, attribute);
    }
    documentOf(node)->mayHoldVariables |= std::strstr(value, kVariableMark) != nullptr;
    NodePointer former;
    const auto exchange = [&] {
        former.reset(attribute->children);
        text->parent = reinterpret_cast<xmlNode *>(attribute);
        attribute->children = attribute->last = text.release();
        attribute->_private = change.isFromProgram ? &g_programMark : nullptr;
    };
    if (isName(attribute)) {
        changeName(node, exchange);
    } else {
        exchange();
    }
    if (former != nullptr) {
        former->parent = nullptr;
        if (change.isRetired) {
            documentOf(node)->retire(former.release());
        }
    }
    return true;
}

xmlAttr *newAttribute(xmlDoc *document, const char *name, const char *value)
{
    NodePointer text = newText(document, value);
    xmlAttr *const attribute = text != nullptr ? newAttribute(document, name) : nullptr;
    if (attribute != nullptr) {
        text->parent = reinterpret_cast<xmlNode *>(attribute);
        attribute->children = attribute->last = text.release();
    }
    return attribute;
}

xmlAttr *exchangeAttribute(xmlNode *node, xmlAttr *attribute)
{
    xmlAttr *const former = findAttribute(node, toText(attribute->name));
    if (former == nullptr) {
        linkLast(node, attribute);
        return nullptr;
    }
    attribute->parent = node;
    attribute->prev = former->prev;
    attribute->next = former->next;
    (attribute->prev != nullptr ? attribute->prev->next : node->properties) = attribute;
    if (attribute->next != nullptr) {
        attribute->next->prev = attribute;
    }
    former->prev = former->next = nullptr;
    former->parent = nullptr;
    return former;
}

void removeAttribute(xmlNode *node, xmlAttr *attribute)
{
    if (isName(attribute)) {
        changeName(node, [&] { xmlRemoveProp(attribute); });
    } else {
        xmlRemoveProp(attribute);
    }
}

xmlNode *exchangeText(xmlNode *node, xmlNode *text)
{
    xmlNode *const former = textOf(node);
    if (text != nullptr && former != nullptr) {
        linkBefore(former, text);
    } else if (text != nullptr) {
        linkLast(node, text);
    }
    if (former != nullptr) {
        xmlUnlinkNode(former);
    }
    return former;
}

bool changeText(xmlNode *node, const char *text, bool isRetired)
{
    NodePointer replacement = newText(node->doc, text);
    if (replacement == nullptr) {
        return false;
    }
    NodePointer former(exchangeText(node, replacement.release()));
    if (former != nullptr && isRetired) {
        documentOf(node)->retire(former.release());
    }
    return true;
}

bool renameTag(xmlNode *node, const char *tag)
{
    xmlDict *const dictionary = node->doc->dict;
    const xmlChar *const name = xmlDictLookup(dictionary, toXml(tag), -1);
    if (name == nullptr) {
        return false;
    }
    changeIndexOf(node, [&](ChildIndex &index) { index.remove(node); });
    if (!xmlDictOwns(dictionary, node->name)) {
        xmlFree(const_cast<xmlChar *>(node->name));
    }
    node->name = name;
    changeIndexOf(node, [&](ChildIndex &index) { index.add(node); });
    return true;
}

void attach(xmlNode *parent, xmlNode *node, xmlNode *before)
{
    if (before != nullptr) {
        linkBefore(before, node);
    } else {
        linkLast(parent, node);
    }
    changeIndexOf(node, [&](ChildIndex &index) { index.add(node); });
}

bool insertText(xmlNode *before, const char *text)
{
    NodePointer node = newText(before->doc, text);
    if (node != nullptr) {
        linkBefore(before, node.get());
    }
    return node.release() != nullptr;
}

void insertFirst(xmlNode *parent, xmlNode *node)
{
    if (parent->children != nullptr) {
        linkBefore(parent->children, node);
    } else {
        linkLast(parent, node);
    }
}

void detach(xmlNode *node)
{
    changeIndexOf(node, [&](ChildIndex &index) { index.remove(node); });
    xmlUnlinkNode(node);
}

void destroy(xmlNode *top)
{
    if (top == nullptr) {
        return;
    }
    if (isElement(top)) {
        detach(top);
        for (xmlNode *node = top; node != nullptr; node = nextInSubtree(node, top)) {
            release(node);
        }
    }
    xmlFreeNode(top);
}

xmlNode *copySubtree(const xmlNode *node, xmlDoc *document)
{
    const ReserveScope reserve;
    const LibraryScope scope;
    NodePointer copy(xmlDocCopyNode(const_cast<xmlNode *>(node), document, 1));
    if (copy == nullptr || scope.isOutOfMemory()) {
        return nullptr;
    }
    xmlNode *at = copy.get();
    for (const xmlNode *from = node; from != nullptr; from = nextInSubtree(from, node)) {
        setLine(at, lineOf(from));
        at = nextInSubtree(at, copy.get());
    }
    if (document->_private != nullptr) {
        documentOf(copy.get())->mayHoldVariables |= documentOf(node)->mayHoldVariables;
    }
    return copy.release();
}

} // namespace zuv::xmlutils
