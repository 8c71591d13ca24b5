// What the tests of the XML utilities share: the globals, the log, the balance of the heap, and trees that free
// themselves.
#ifndef ZUV_TESTS_PLATFORM_XMLUTILS_XML_TEST_H
#define ZUV_TESTS_PLATFORM_XMLUTILS_XML_TEST_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Heap.h"
#include "platform/xmlutils/Globals.h"
#include "platform/xmlutils/Object.h"
#include "platform/xmlutils/Parser.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace zuv_test
{

struct TreeDeleter {
    void operator()(ZUVXMLUTILSObject *root) const { ZUVXMLUTILSParser_freeDom(root); }
};
using Tree = std::unique_ptr<ZUVXMLUTILSObject, TreeDeleter>;

inline Tree parse(const std::string &text)
{
    return Tree(ZUVXMLUTILSParser_parseString(text.c_str()));
}

// The element as text.
inline std::string toText(const ZUVXMLUTILSObject *object)
{
    char *const text = ZUVXMLUTILSObject_toString(object);
    const std::string result = text != nullptr ? text : "(null)";
    ZUVOsapiHeap_free(text);
    return result;
}
inline std::string toText(const Tree &tree)
{
    return toText(tree.get());
}

// The descendant at the path of names.
inline ZUVXMLUTILSObject *at(const Tree &tree, const char *path)
{
    return ZUVXMLUTILSObject_lookUp(tree.get(), path);
}

// The names of the children, or their tags where they have no name.
inline std::vector<std::string> childrenOf(const ZUVXMLUTILSObject *object)
{
    std::vector<std::string> names;
    for (const auto *child = ZUVXMLUTILSObject_getFirstChild(object); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        const std::string name = ZUVXMLUTILSObject_getName(child);
        names.push_back(!name.empty() ? name : ZUVXMLUTILSObject_getTagName(child));
    }
    return names;
}

// A folder of its own for each test, gone with it.
class Folder
{
public:
    Folder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "zuv_xml_XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string operator/(std::string_view name) const { return (path_ / name).string(); }
    std::string write(std::string_view name, std::string_view content) const
    {
        std::ofstream(path_ / name, std::ios::binary) << content;
        return *this / name;
    }
    std::string read(std::string_view name) const
    {
        std::ifstream stream(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::size_t fileCount() const
    {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path_), {}));
    }

private:
    std::filesystem::path path_;
};

// Starts and ends the room around each test, and finds nothing left behind by either.
class XmlTest : public testing::Test
{
protected:
    void SetUp() override
    {
        heap_.emplace();
        ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
    }
    void TearDown() override
    {
        ZUVXMLUTILSGlobals_finalize();
        EXPECT_TRUE(heap_->isBalanced());
    }

    // The one line logged since the last call.
    std::string onlyLine()
    {
        const std::vector<std::string> texts = log.texts();
        log.clear();
        return texts.size() == 1 ? texts[0] : "(" + std::to_string(texts.size()) + " lines)";
    }

    LogCapture log;

private:
    std::optional<HeapCheck> heap_;
};

} // namespace zuv_test

#endif
