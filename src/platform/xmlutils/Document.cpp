#include <libxml/parser.h>
#include <libxml/tree.h>

#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Tree.hpp"

namespace zuv::xmlutils
{
namespace
{

bool isLineNumber(const void *slot)
{
    return (reinterpret_cast<std::uintptr_t>(slot) & 1) != 0;
}

long lineIn(const void *slot)
{
    return static_cast<long>(reinterpret_cast<std::uintptr_t>(slot) >> 1);
}

} // namespace

Document::~Document()
{
    while (xmlNode *const node = retiredNodes_) {
        retiredNodes_ = node->next;
        node->next = nullptr;
        xmlFreeNode(node);
    }
    while (FullName *const name = retiredNames_) {
        retiredNames_ = name->next;
        ZUVOsapiHeap_free(name);
    }
    for (const HeapPointer<Chunk> &chunk : chunks_) {
        for (const NodeRecord &record : chunk->records) {
            ZUVOsapiHeap_free(record.fullName);
        }
    }
}

NodeRecord *Document::takeRecord()
{
    if (free_ == nullptr) {
        try {
            chunks_.push_back(HeapPointer<Chunk>(heapNew<Chunk>()));
        } catch (const std::bad_alloc &) {
            return nullptr;
        }
        for (NodeRecord &record : chunks_.back()->records) {
            giveRecord(&record);
        }
    }
    NodeRecord *const record = free_;
    free_ = static_cast<NodeRecord *>(record->userData);
    record->userData = nullptr;
    return record;
}

void Document::giveRecord(NodeRecord *record)
{
    ZUVOsapiHeap_free(record->fullName);
    *record = {};
    record->userData = free_;
    free_ = record;
}

void Document::retire(xmlNode *node)
{
    node->next = retiredNodes_;
    retiredNodes_ = node;
}

void Document::retire(FullName *name)
{
    name->next = retiredNames_;
    retiredNames_ = name;
}

bool adoptDocument(xmlDoc *document)
{
    if (document->dict == nullptr) {
        document->dict = xmlDictCreate();
    }
    if (document->_private == nullptr) {
        try {
            document->_private = heapNew<Document>();
        } catch (const std::bad_alloc &) {
            return false;
        }
    }
    xmlNode *const root = xmlDocGetRootElement(document);
    return document->dict != nullptr && root != nullptr && needRecord(root) != nullptr;
}

void freeDocument(xmlDoc *document)
{
    heapDelete(static_cast<Document *>(document->_private));
    document->_private = nullptr;
    xmlFreeDoc(document);
}

Document *documentOf(const xmlNode *node)
{
    return static_cast<Document *>(node->doc->_private);
}

NodeRecord *recordOf(const xmlNode *node)
{
    return isLineNumber(node->_private) ? nullptr : static_cast<NodeRecord *>(node->_private);
}

NodeRecord *needRecord(xmlNode *node)
{
    NodeRecord *record = recordOf(node);
    if (record == nullptr) {
        record = documentOf(node)->takeRecord();
        if (record != nullptr) {
            record->line = isLineNumber(node->_private) ? lineIn(node->_private) : 0;
            node->_private = record;
        }
    }
    return record;
}

long lineOf(const xmlNode *node)
{
    if (isLineNumber(node->_private)) {
        return lineIn(node->_private);
    }
    const NodeRecord *const record = recordOf(node);
    return record != nullptr && record->line != 0 ? record->line : node->line;
}

void setLine(xmlNode *node, long line)
{
    // libxml2 keeps numbers below this one.
    if (line < UINT16_MAX) {
        return;
    }
    if (NodeRecord *const record = recordOf(node)) {
        record->line = line;
    } else {
        node->_private = reinterpret_cast<void *>((static_cast<std::uintptr_t>(line) << 1) | 1);
    }
}

const char *filePathOf(const xmlNode *node)
{
    for (const xmlNode *at = node; at != nullptr; at = parentOf(at)) {
        const NodeRecord *const record = recordOf(at);
        if (record != nullptr && record->filePath != nullptr) {
            return *record->filePath != '\0' ? record->filePath : nullptr;
        }
    }
    return node->doc != nullptr ? reinterpret_cast<const char *>(node->doc->URL) : nullptr;
}

bool setFilePath(NodeRecord *record, xmlDoc *document, const char *path)
{
    if (path == nullptr) {
        record->filePath = "";
        return true;
    }
    const LibraryScope scope;
    record->filePath = reinterpret_cast<const char *>(
        xmlDictLookup(document->dict, reinterpret_cast<const xmlChar *>(path), -1));
    return record->filePath != nullptr;
}

const char *sourceOf(const xmlNode *node)
{
    const char *const path = filePathOf(node);
    return path != nullptr ? path : kNoFile;
}

} // namespace zuv::xmlutils
