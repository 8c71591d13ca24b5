#include <algorithm>
#include <utility>

#include <libxml/tree.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Object.h"
#include "platform/xmlutils/Parser.h"
#include "platform/xmlutils/Tree.hpp"

using namespace zuv::xmlutils;

namespace
{

std::string_view toText(const xmlNode *node)
{
    return node->content != nullptr ? reinterpret_cast<const char *>(node->content) : "";
}

int depthOf(const xmlNode *node)
{
    int depth = 0;
    for (; node != nullptr; node = parentOf(node)) {
        ++depth;
    }
    return depth;
}

int heightOf(const xmlNode *top)
{
    int height = 0;
    for (const xmlNode *node = top; node != nullptr; node = nextInSubtree(node, top)) {
        height = std::max(height, depthOf(node));
    }
    return height - depthOf(top) + 1;
}

// `line` is where the text has come to. False when there is no memory.
bool spreadLines(xmlNode *parent, long &line)
{
    for (xmlNode *node = parent->children; node != nullptr; node = node->next) {
        if (!isElement(node)) {
            const std::string_view text = toText(node);
            line += std::count(text.begin(), text.end(), '\n');
            continue;
        }
        // No text may be longer, or the whole could not be read again.
        const long gap = std::min<long>(lineOf(node) - line, ZUVXMLUTILS_TEXT_LENGTH_MAX);
        if (gap > 0) {
            const HeapString ends(static_cast<std::size_t>(gap), '\n');
            if (!insertText(node, ends.c_str())) {
                return false;
            }
            line += gap;
        }
        if (!spreadLines(node, line)) {
            return false;
        }
    }
    return true;
}

// The names in it are its own: it may go again, and the tree's dictionary never forgets one.
NodePointer copyFor(xmlDoc *document, const xmlNode *original)
{
    xmlDict *const dictionary = std::exchange(document->dict, nullptr);
    NodePointer copy(copySubtree(original, document));
    document->dict = dictionary;
    return copy;
}

char *dump(const xmlNode *node)
{
    const ReserveScope reserve;
    LibraryScope scope;
    xmlBuffer *const buffer = xmlBufferCreate();
    char *text = nullptr;
    if (buffer != nullptr) {
        xmlNodeDump(buffer, node->doc, const_cast<xmlNode *>(node), 0, 0);
        if (scope.isClean()) {
            text = reinterpret_cast<char *>(xmlBufferDetach(buffer));
        }
        xmlBufferFree(buffer);
    }
    return text;
}

} // namespace

extern "C" {

ZUVXMLUTILSObject *ZUVXMLUTILSObject_copyAsChild(ZUVXMLUTILSObject *self,
                                                 const ZUVXMLUTILSObject *element)
{
    if (ZUV_XML_IS_NULL(OBJECT, self) || ZUV_XML_IS_NULL(OBJECT, element)) {
        return nullptr;
    }
    xmlNode *const parent = toNode(self);
    const xmlNode *const original = toNode(element);
    Problem problem;
    NodePointer copy;
    if (depthOf(parent) + heightOf(original) > 2 * ZUVXMLUTILS_DEPTH_MAX) {
        problem.set(original, "elements are nested too deeply");
    } else {
        copy = ZUV_OSAPI_FAULT("xmlutils.copy") ? nullptr : copyFor(parent->doc, original);
        NodeRecord *const record = copy != nullptr ? needRecord(copy.get()) : nullptr;
        if (record == nullptr || !setFilePath(record, parent->doc, filePathOf(original))) {
            problem.set(original, Problem::kOutOfMemory);
        }
    }
    if (problem.isSet()) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_OBJECT, sourceOf(original), problem);
        return nullptr;
    }
    // In front of its kind: what looks back from the copy meets none of them.
    attach(parent, copy.get(), firstOfTag(parent, tagOf(original)));
    return toObject(copy.release());
}

void ZUVXMLUTILSObject_moveToEnd(ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return;
    }
    xmlNode *const node = toNode(self);
    if (xmlNode *const parent = parentOf(node); parent != nullptr && nextOf(node) != nullptr) {
        detach(node);
        attach(parent, node, nullptr);
    }
}

int ZUVXMLUTILSObject_restoreLines(ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return 0;
    }
    xmlNode *const node = toNode(self);
    Problem problem;
    const auto onFailure = [&] { problem.set(node, Problem::kOutOfMemory); };
    long line = lineOf(node);
    if (!withMemory(false, onFailure, [&] { return spreadLines(node, line); })) {
        problem.set(node, Problem::kOutOfMemory);
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_OBJECT, sourceOf(node), problem);
        return 0;
    }
    return 1;
}

char *ZUVXMLUTILSObject_toString(const ZUVXMLUTILSObject *self)
{
    if (ZUV_XML_IS_NULL(OBJECT, self)) {
        return nullptr;
    }
    char *const text = ZUV_OSAPI_FAULT("xmlutils.to_string") ? nullptr : dump(toNode(self));
    if (text == nullptr) {
        ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_OBJECT,
                         &ZUV_LOG_FAILURE_TEMPLATE, "write element <%s>: out of memory",
                         tagOf(toNode(self)).data());
    }
    return text;
}
}
