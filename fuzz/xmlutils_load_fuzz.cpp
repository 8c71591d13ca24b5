// Any text as a document. What is accepted can be walked, looked up, written, and reads as the same again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/osapi/Heap.h"
#include "platform/xmlutils/Globals.h"
#include "platform/xmlutils/Parser.h"
#include "platform/xmlutils/Visitor.h"
#include "platform/xmlutils/XmlUtilsLog.h"

namespace
{

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

int visit(void *, ZUVXMLUTILSObject *object)
{
    require(std::strlen(ZUVXMLUTILSObject_getTagName(object)) != 0);
    require(ZUVXMLUTILSObject_getLine(object) > 0);
    for (const auto *attribute = ZUVXMLUTILSObject_getFirstAttribute(object); attribute != nullptr;
         attribute = ZUVXMLUTILSAttribute_getNext(attribute)) {
        require(ZUVXMLUTILSAttribute_getName(attribute) != nullptr);
        require(ZUVXMLUTILSAttribute_getValue(attribute) != nullptr);
    }
    require(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(object) >= 0);
    const char *const name = ZUVXMLUTILSObject_getName(object);
    ZUVXMLUTILSObject *const parent = ZUVXMLUTILSObject_getParent(object);
    if (parent != nullptr && *name != '\0') {
        ZUVXMLUTILSObject *const first = ZUVXMLUTILSObject_lookUpChild(parent, name);
        require(first == object || ZUVXMLUTILSObject_lookUpPreviousSibling(object, name) == first);
    }
    require(std::strncmp(ZUVXMLUTILSObject_getFullyQualifiedName(object), "::", 2) == 0);
    return 1;
}

std::string toText(const ZUVXMLUTILSObject *object)
{
    char *const text = ZUVXMLUTILSObject_toString(object);
    require(text != nullptr);
    const std::string result = text;
    ZUVOsapiHeap_free(text);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ZUVXMLUTILSLog_g_instrumentationMask = 0;
    static const int isReady = ZUVXMLUTILSGlobals_initialize();
    require(isReady == 1);
    const std::string text(reinterpret_cast<const char *>(data), size);
    ZUVXMLUTILSObject *const tree = ZUVXMLUTILSParser_parseString(text.c_str());
    if (tree != nullptr) {
        const ZUVXMLUTILSVisitor visitor = {nullptr, &visit};
        require(ZUVXMLUTILSVisitor_visit(&visitor, tree) == 1);
        const std::string once = toText(tree);
        ZUVXMLUTILSObject *const again = ZUVXMLUTILSParser_parseString(once.c_str());
        // What is written is longer than what was read where it has to be escaped.
        if (again != nullptr) {
            require(toText(again) == once);
            require(ZUVXMLUTILSParser_mergeRoot(tree, again) == 1);
        }
        ZUVXMLUTILSParser_freeDom(again);
        ZUVXMLUTILSParser_freeDom(tree);
    }
    ZUVXMLUTILSParser_freeDom(ZUVXMLUTILSParser_parseUrlGroupList(
        ("str://\"" + text.substr(0, text.find('\0')) + "\"").c_str()));
    return 0;
}
