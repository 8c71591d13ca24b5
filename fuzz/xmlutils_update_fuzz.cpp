// Any snippet as an update of a live tree, which stays whole whatever comes: its elements keep their user data,
// it can be written and read, and what the index finds is what a walk finds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/osapi/Heap.h"
#include "platform/xmlutils/Globals.h"
#include "platform/xmlutils/Parser.h"
#include "platform/xmlutils/Utils.h"
#include "platform/xmlutils/XmlUtilsLog.h"

namespace
{

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

constexpr int kRoutes = 30;

ZUVXMLUTILSObject *makeTree()
{
    std::string text = "<dds><session name='s'><thread_pool><size>1</size></thread_pool>";
    for (int index = 0; index < kRoutes; ++index) {
        text += "<topic_route name='r" + std::to_string(index) +
                "'><input name='in'><topic_name>T</topic_name></input><property><value><element>"
                "<name>a</name><value>1</value></element></value></property></topic_route>";
    }
    return ZUVXMLUTILSParser_parseString((text + "</session></dds>").c_str());
}

void requireWhole(const ZUVXMLUTILSObject *tree, const ZUVXMLUTILSObject *session, void *userData)
{
    require(ZUVXMLUTILSObject_getUserData(session) == userData);
    int count = 0;
    for (auto *child = ZUVXMLUTILSObject_getFirstChildWithTag(session, "topic_route");
         child != nullptr; child = ZUVXMLUTILSObject_getNextSiblingWithTag(child, "topic_route")) {
        require(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(child) == count);
        ++count;
    }
    require(count >= kRoutes);
    for (const char *name : {"r0", "r7", "r29"}) {
        ZUVXMLUTILSObject *walked = ZUVXMLUTILSObject_getFirstChild(session);
        while (walked != nullptr && std::string(ZUVXMLUTILSObject_getName(walked)) != name) {
            walked = ZUVXMLUTILSObject_getNextSibling(walked);
        }
        require(walked != nullptr && ZUVXMLUTILSObject_lookUpChild(session, name) == walked);
    }
    char *const text = ZUVXMLUTILSObject_toString(tree);
    require(text != nullptr);
    ZUVOsapiHeap_free(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ZUVXMLUTILSLog_g_instrumentationMask = 0;
    static const int isReady = ZUVXMLUTILSGlobals_initialize();
    require(isReady == 1);
    const std::string text(reinterpret_cast<const char *>(data), size);
    ZUVXMLUTILSObject *const snippet = ZUVXMLUTILSParser_parseString(text.c_str());
    if (snippet != nullptr) {
        ZUVXMLUTILSObject *const tree = makeTree();
        ZUVXMLUTILSObject *const session = ZUVXMLUTILSObject_lookUp(tree, "::s");
        require(ZUVXMLUTILSObject_setUserData(session, tree) == 1);
        const std::string tag = ZUVXMLUTILSObject_getTagName(snippet);
        ZUVXMLUTILSObject *const target =
            tag == "session" ? session : ZUVXMLUTILSObject_lookUpChild(session, "r7");
        ZUVXMLUTILSObject *const copy =
            ZUVXMLUTILSObject_copyAsChild(ZUVXMLUTILSObject_getParent(target), snippet);
        if (copy != nullptr) {
            require(ZUVXMLUTILSObject_setName(copy, "Copy1") == 1);
            ZUVXMLUTILSUtils_updateObject(target, copy);
            const char *const tags[] = {"thread_pool", "input", "topic_name"};
            ZUVXMLUTILSUtils_sortChildren(target, tags, 3);
            ZUVXMLUTILSParser_freeDom(copy);
        }
        requireWhole(tree, session, tree);
        ZUVXMLUTILSParser_freeDom(tree);
    }
    ZUVXMLUTILSParser_freeDom(snippet);
    return 0;
}
