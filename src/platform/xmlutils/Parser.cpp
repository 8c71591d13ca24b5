#include "platform/xmlutils/Parser.h"

#include <libxml/tree.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/File.h"
#include "platform/xmlutils/Globals.hpp"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Reader.hpp"
#include "platform/xmlutils/UrlGroup.hpp"

using namespace zuv::xmlutils;

namespace
{

// The document of a tree is found again by its root.
ZUVXMLUTILSObject *toTree(DocumentPointer document)
{
    return document != nullptr ? toObject(xmlDocGetRootElement(document.release())) : nullptr;
}

struct TreeDeleter {
    void operator()(ZUVXMLUTILSObject *root) const { ZUVXMLUTILSParser_freeDom(root); }
};
using TreePointer = std::unique_ptr<ZUVXMLUTILSObject, TreeDeleter>;

bool isThere(const char *path)
{
    ZUVOsapiFile *const file = ZUVOsapiFile_open(path);
    ZUVOsapiFile_close(file);
    return file != nullptr;
}

// The first URL of the group that leads to something, read. A group without one reports its files.
TreePointer readGroup(const UrlGroup &group)
{
    for (const Url &url : group) {
        const HeapString content(url.content);
        if (url.kind == Url::Kind::kText) {
            return TreePointer(ZUVXMLUTILSParser_parseString(content.c_str()));
        }
        if (isThere(content.c_str())) {
            return TreePointer(ZUVXMLUTILSParser_parseFile(content.c_str()));
        }
    }
    for (const Url &url : group) {
        ZUV_XML_REPORT(ZUVXMLUTILS_SUBMODULE_PARSER, &ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s,
                       HeapString(url.content).c_str());
    }
    return nullptr;
}

TreePointer readGroups(const HeapVector<UrlGroup> &groups)
{
    TreePointer merged;
    for (const UrlGroup &group : groups) {
        TreePointer tree = readGroup(group);
        if (tree == nullptr) {
            return nullptr;
        }
        if (merged == nullptr) {
            merged = std::move(tree);
        } else if (!ZUVXMLUTILSParser_mergeRoot(merged.get(), tree.get())) {
            return nullptr;
        }
    }
    return merged;
}

// Copies of the children of `newRoot`, ready to join; empty with a problem when there is no memory.
HeapVector<NodePointer> copyChildren(const xmlNode *newRoot, xmlDoc *document, Problem &problem)
{
    HeapVector<NodePointer> copies;
    for (const xmlNode *child = firstChildOf(newRoot); child != nullptr; child = nextOf(child)) {
        NodePointer copy(copySubtree(child, document));
        NodeRecord *const record = copy != nullptr ? needRecord(copy.get()) : nullptr;
        if (record == nullptr || !setFilePath(record, document, filePathOf(child))) {
            problem.set(child, Problem::kOutOfMemory);
            return {};
        }
        copies.push_back(std::move(copy));
    }
    return copies;
}

std::size_t countAttributes(const xmlNode *node)
{
    std::size_t count = 0;
    for (const xmlAttr *at = node->properties; at != nullptr; at = at->next) {
        ++count;
    }
    return count;
}

// The attributes that the root lacks, all or none.
bool mergeAttributes(xmlNode *root, const xmlNode *newRoot)
{
    HeapVector<xmlAttr *> added;
    added.reserve(countAttributes(newRoot));
    for (const xmlAttr *from = newRoot->properties; from != nullptr; from = from->next) {
        const char *const name = reinterpret_cast<const char *>(from->name);
        if (from->ns != nullptr || findAttribute(root, name) != nullptr) {
            continue;
        }
        if (!changeAttribute(root, name, valueOf(from), {.isFromProgram = false})) {
            for (xmlAttr *const attribute : added) {
                removeAttribute(root, attribute);
            }
            return false;
        }
        added.push_back(findAttribute(root, name));
    }
    return true;
}

int merge(xmlNode *root, const xmlNode *newRoot, Problem &problem)
{
    if (tagOf(root) != tagOf(newRoot)) {
        problem.set(newRoot, "the document has another root than the one that it joins");
        return 0;
    }
    const auto onFailure = [&] { problem.set(newRoot, Problem::kOutOfMemory); };
    return withMemory(0, onFailure, [&] {
        HeapVector<NodePointer> copies = copyChildren(newRoot, root->doc, problem);
        if (problem.isSet()) {
            return 0;
        }
        if (!mergeAttributes(root, newRoot)) {
            onFailure();
            return 0;
        }
        for (NodePointer &copy : copies) {
            attach(root, copy.release(), nullptr);
        }
        return 1;
    });
}

} // namespace

extern "C" {

ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseString(const char *text)
{
    if (ZUV_XML_IS_NULL(PARSER, text) || ZUV_XML_IS_NOT_READY(PARSER)) {
        return nullptr;
    }
    Problem problem;
    DocumentPointer document = readDocument(text, nullptr, DocumentKind::kTree, problem);
    if (document == nullptr) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_PARSER, kNoFile, problem);
    }
    return toTree(std::move(document));
}

ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseStringArray(const char *const *pieces, int count)
{
    if (ZUV_XML_IS_NULL(PARSER, pieces) || ZUV_XML_IS_NOT_READY(PARSER) ||
        ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_PARSER, count < 1, "count < 1")) {
        return nullptr;
    }
    if (count == 1) {
        return ZUVXMLUTILSParser_parseString(pieces[0]);
    }
    Problem problem;
    const auto onFailure = [&] { problem.set(0, "", Problem::kOutOfMemory); };
    DocumentPointer document = withMemory(DocumentPointer(), onFailure, [&] {
        return readDocument(joined(pieces, count), nullptr, DocumentKind::kTree, problem);
    });
    if (document == nullptr) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_PARSER, kNoFile, problem);
    }
    return toTree(std::move(document));
}

ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseFile(const char *path)
{
    if (ZUV_XML_IS_NULL(PARSER, path) || ZUV_XML_IS_NOT_READY(PARSER)) {
        return nullptr;
    }
    Problem problem;
    DocumentPointer document = readFile(path, DocumentKind::kTree, problem);
    if (document == nullptr) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_PARSER, path, problem);
        ZUV_XML_REPORT(ZUVXMLUTILS_SUBMODULE_PARSER, &ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, path);
    }
    return toTree(std::move(document));
}

ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseUrlGroupList(const char *list)
{
    if (ZUV_XML_IS_NULL(PARSER, list) || ZUV_XML_IS_NOT_READY(PARSER)) {
        return nullptr;
    }
    const char *wrong = nullptr;
    const auto onFailure = [&] { wrong = Problem::kOutOfMemory; };
    TreePointer tree = withMemory(TreePointer(), onFailure, [&] {
        HeapVector<UrlGroup> groups;
        wrong = readUrlGroups(list, groups);
        return wrong == nullptr ? readGroups(groups) : nullptr;
    });
    if (wrong != nullptr) {
        ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_PARSER,
                         &ZUV_LOG_FAILED_TO_PARSE_TEMPLATE, "URL group list '%s': %s", list, wrong);
    }
    return tree.release();
}

int ZUVXMLUTILSParser_mergeRoot(ZUVXMLUTILSObject *root, const ZUVXMLUTILSObject *newRoot)
{
    if (ZUV_XML_IS_NULL(PARSER, root) || ZUV_XML_IS_NULL(PARSER, newRoot)) {
        return 0;
    }
    Problem problem;
    if (ZUV_OSAPI_FAULT("xmlutils.merge")) {
        problem.set(toNode(newRoot), Problem::kOutOfMemory);
    } else if (merge(toNode(root), toNode(newRoot), problem)) {
        return 1;
    }
    ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_PARSER, sourceOf(toNode(newRoot)), problem);
    return 0;
}

void ZUVXMLUTILSParser_freeDom(ZUVXMLUTILSObject *object)
{
    if (object == nullptr) {
        return;
    }
    xmlNode *const node = toNode(object);
    if (node == xmlDocGetRootElement(node->doc)) {
        freeDocument(node->doc);
    } else {
        destroy(node);
    }
}
}
