// The tree beneath the public operations: libxml2's nodes, each with a record where it needs one, and an index
// over the children of elements that have many.
//
// A ZUVXMLUTILSObject is a libxml2 node. Its _private slot is empty, or holds a line number that libxml2 has no
// room for (the lowest bit is set), or leads to the node's record. Nodes join and leave a tree, get names and
// lose them through the functions below alone, which keep the index right.
#ifndef ZUV_PLATFORM_XMLUTILS_TREE_HPP
#define ZUV_PLATFORM_XMLUTILS_TREE_HPP

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/xmlutils/ChildIndex.hpp"
#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/Object.h"

struct _xmlAttr;
struct _xmlDoc;
struct _xmlNode;

namespace zuv::xmlutils
{

// Where documents without a file come from, in messages.
constexpr const char *kNoFile = "text";

struct FullName {
    FullName *next; // of the retired ones
    char text[1];
};

struct NodeRecord {
    void *userData = nullptr;
    // A text of the document's dictionary, or "" for a tree that comes from no file; null: as the parent.
    const char *filePath = nullptr;
    FullName *fullName = nullptr; // cached, owned
    HeapPointer<ChildIndex> children;
    long line = 0;
    ChildIndex::Place place = {}; // in the index of the parent
};

// What belongs to a document and goes with it.
class Document
{
public:
    Document() = default;
    ~Document();
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    // A record that nobody uses, or null when there is no memory.
    NodeRecord *takeRecord();
    void giveRecord(NodeRecord *record);

    // False if no text in the document refers to a variable for sure.
    bool mayHoldVariables = false;

    // Keep a replaced text, or a node that has left its tree, alive as long as the document: records may have
    // borrowed what it holds.
    void retire(_xmlNode *node);
    void retire(FullName *name);

private:
    static constexpr std::size_t kChunkSize = 64;
    struct Chunk {
        NodeRecord records[kChunkSize];
    };

    HeapVector<HeapPointer<Chunk>> chunks_;
    NodeRecord *free_ = nullptr; // linked through their user data
    _xmlNode *retiredNodes_ = nullptr;
    FullName *retiredNames_ = nullptr;
};

// What the reference to a variable begins with.
constexpr const char *kVariableMark = "$(";

// Give a document of libxml2 its Document, and its root a record. False when there is no memory.
bool adoptDocument(_xmlDoc *document);
void freeDocument(_xmlDoc *document);

struct DocumentDeleter {
    void operator()(_xmlDoc *document) const { freeDocument(document); }
};
using DocumentPointer = std::unique_ptr<_xmlDoc, DocumentDeleter>;

inline _xmlNode *toNode(ZUVXMLUTILSObject *object)
{
    return reinterpret_cast<_xmlNode *>(object);
}
inline _xmlNode *toNode(const ZUVXMLUTILSObject *object)
{
    return reinterpret_cast<_xmlNode *>(const_cast<ZUVXMLUTILSObject *>(object));
}
inline ZUVXMLUTILSObject *toObject(_xmlNode *node)
{
    return reinterpret_cast<ZUVXMLUTILSObject *>(node);
}
inline ZUVXMLUTILSObject *toObject(const _xmlNode *node)
{
    return toObject(const_cast<_xmlNode *>(node));
}

Document *documentOf(const _xmlNode *node);
NodeRecord *recordOf(const _xmlNode *node);
// The record, made if the node has none; null when there is no memory.
NodeRecord *needRecord(_xmlNode *node);

long lineOf(const _xmlNode *node);
void setLine(_xmlNode *node, long line);

std::string_view tagOf(const _xmlNode *node);
// Empty for an element without a name.
std::string_view nameOf(const _xmlNode *node);
// Beyond the characters that a name may have.
bool isNameTooLong(std::string_view name);
const char *filePathOf(const _xmlNode *node);
// Say where the element comes from; null for no file. False when there is no memory.
bool setFilePath(NodeRecord *record, _xmlDoc *document, const char *path);
// As filePathOf, for messages: kNoFile without a file.
const char *sourceOf(const _xmlNode *node);

bool isElement(const _xmlNode *node);
// Neighbours that are elements; null where there is none.
_xmlNode *parentOf(const _xmlNode *node);
_xmlNode *firstChildOf(const _xmlNode *node);
_xmlNode *lastChildOf(const _xmlNode *node);
_xmlNode *nextOf(const _xmlNode *node);
_xmlNode *previousOf(const _xmlNode *node);
// The first child of the tag, the next sibling of the same tag. A lookup among many siblings.
_xmlNode *firstOfTag(const _xmlNode *parent, std::string_view tag);
_xmlNode *nextWithTag(const _xmlNode *node);
bool haveSameTag(const _xmlNode *node, const _xmlNode *other);
// The next element of the subtree of `top` in the order of the document; null behind the last.
_xmlNode *nextInSubtree(const _xmlNode *node, const _xmlNode *top);

// The index of an element's children, made once the children are many; null if they are few or there is no
// memory: then a walk serves.
ChildIndex *indexOf(_xmlNode *parent);

// The node that holds the text of an element, or null.
_xmlNode *textOf(const _xmlNode *node);
const char *contentOf(const _xmlNode *node);

// Attributes without a namespace.
_xmlAttr *findAttribute(const _xmlNode *node, const char *name);
const char *valueOf(const _xmlAttr *attribute);
// Attributes that the program has set, which no document holds.
bool isProgramAttribute(const _xmlAttr *attribute);
// Give the attribute this value, which replaces the former one at once or not at all. False when there is no
// memory. `isFromProgram` marks it; a former value is retired if `isRetired`, else freed.
struct AttributeChange {
    bool isFromProgram = true;
    bool isRetired = false;
};
bool changeAttribute(_xmlNode *node, const char *name, const char *value, AttributeChange change);
// An attribute that stands nowhere; null when there is no memory.
_xmlAttr *newAttribute(_xmlDoc *document, const char *name, const char *value);
// Put the attribute, which stands nowhere, into the place of the one with the same name, or behind all. Returns that
// one, which is the caller's now, or null. Not for names of elements, of which there is an index.
_xmlAttr *exchangeAttribute(_xmlNode *node, _xmlAttr *attribute);
void removeAttribute(_xmlNode *node, _xmlAttr *attribute);
// Give the element, which holds text, another one; the former is retired if `isRetired`, else freed. False when there is
// no memory.
bool changeText(_xmlNode *node, const char *text, bool isRetired);
// Put the node in the place of the text in the element, or add it; null takes the text away. Returns the former
// text, which is the caller's now, or null.
_xmlNode *exchangeText(_xmlNode *node, _xmlNode *text);

bool renameTag(_xmlNode *node, const char *tag);

// Put a node that stands in no tree before a child of the parent; null: behind the last one.
void attach(_xmlNode *parent, _xmlNode *node, _xmlNode *before);
// Put a node that is no element before everything else in the parent.
void insertFirst(_xmlNode *parent, _xmlNode *node);
// Put a text between a node and the one before it. False when there is no memory.
bool insertText(_xmlNode *before, const char *text);
// Take the node out of its tree.
void detach(_xmlNode *node);
// Free a node with its subtree; it may still stand in a tree.
void destroy(_xmlNode *node);

// A copy of a subtree for the document, in no tree yet, with the lines of the original; null when there is no
// memory. User data is not copied.
_xmlNode *copySubtree(const _xmlNode *node, _xmlDoc *document);

struct NodeDeleter {
    void operator()(_xmlNode *node) const { destroy(node); }
};
using NodePointer = std::unique_ptr<_xmlNode, NodeDeleter>;

} // namespace zuv::xmlutils

#endif
