#include <filesystem>

#include "XmlTest.h"

namespace zuv_test
{
namespace
{

class XmlParser : public XmlTest
{
};

TEST_F(XmlParser, readsATextInPieces)
{
    const char *const pieces[] = {"<dd", "s><a x='", "1'/></", "dds>"};
    const Tree tree(ZUVXMLUTILSParser_parseStringArray(pieces, 4));
    EXPECT_EQ(toText(tree), "<dds><a x=\"1\"/></dds>");
    const Tree one(ZUVXMLUTILSParser_parseStringArray(pieces + 3, 1));
    EXPECT_EQ(one, nullptr);
    log.clear();
    EXPECT_EQ(ZUVXMLUTILSParser_parseStringArray(pieces, 0), nullptr);
    EXPECT_EQ(onlyLine(), "!meet precondition: count < 1");
}

TEST_F(XmlParser, readsAFileAndRemembersItsPath)
{
    const Folder folder;
    const std::string path =
        folder.write("a.xml", "\xef\xbb\xbf<?xml version='1.0' encoding='utf-8'?>"
                              "\n<dds>\n<a/></dds>\n<!-- end -->\n");
    const Tree tree(ZUVXMLUTILSParser_parseFile(path.c_str()));
    ASSERT_NE(tree, nullptr);
    const auto *const a = ZUVXMLUTILSObject_getFirstChild(tree.get());
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(tree.get()), path);
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(a), path);
    EXPECT_EQ(ZUVXMLUTILSObject_getLine(a), 3);
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(parse("<a/>").get()), nullptr);
}

TEST_F(XmlParser, saysWhyAFileCannotBeRead)
{
    const Folder folder;
    const std::string path = folder / "none.xml";
    EXPECT_EQ(ZUVXMLUTILSParser_parseFile(path.c_str()), nullptr);
    EXPECT_TRUE(
        log.isExactly({{&ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sds,
                        "!accept " + path + ", line 0: No such file or directory"},
                       {&ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, "!load file '" + path + "'"}}));
    log.clear();
    const std::string directory = std::filesystem::path(path).parent_path();
    EXPECT_EQ(ZUVXMLUTILSParser_parseFile(directory.c_str()), nullptr);
    EXPECT_EQ(log.texts().size(), 2U);
}

TEST_F(XmlParser, tellsFileLineElementAndReason)
{
    const Folder folder;
    const std::string path = folder.write("a.xml", "<dds>\n  <a>\n    <b>\n  </a>\n</dds>");
    EXPECT_EQ(ZUVXMLUTILSParser_parseFile(path.c_str()), nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss,
          "!accept " + path +
              ", line 4: element <b>: Opening and ending tag mismatch: b line 3 and a"},
         {&ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, "!load file '" + path + "'"}}));
}

TEST_F(XmlParser, refusesTextsThatAreNotWellFormed)
{
    const struct {
        const char *text;
        const char *report;
    } cases[] = {
        {"", "!accept text, line 1: the document is empty"},
        {" ", "!accept text, line 1: Start tag expected, '<' not found"},
        {"dds", "!accept text, line 1: Start tag expected, '<' not found"},
        {"<dds>", "!accept text, line 1: element <dds>: Premature end of data in tag dds line 1"},
        {"<a/>\n<b/>", "!accept text, line 2: Extra content at the end of the document"},
        {"<a x='1' x='2'/>", "!accept text, line 1: Attribute x redefined"},
        {"<a>\n&none;</a>", "!accept text, line 2: element <a>: Entity 'none' not defined"},
        {"<x:a/>", "!accept text, line 1: Namespace prefix x on a is not defined"},
        {"<a>\n<b></a>", "!accept text, line 2: element <b>: Opening and ending tag mismatch: b "
                         "line 2 and a"},
        {"<a b/>", "!accept text, line 1: Specification mandates value for attribute b"},
        {"<a>&#0;</a>",
         "!accept text, line 1: element <a>: xmlParseCharRef: invalid xmlChar value 0"},
        {"<a><!-- ", "!accept text, line 1: element <a>: Comment not terminated"},
        {"<a><![CDATA[ ", "!accept text, line 1: element <a>: Unregistered error message"},
    };
    for (const auto &[text, report] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(parse(text), nullptr);
        EXPECT_EQ(onlyLine(), report);
    }
}

TEST_F(XmlParser, dropsBlanksBetweenElementsOnly)
{
    const Tree tree = parse("<dds>\n  <a>\n    <b> x </b>\n  </a>\n</dds>\n");
    EXPECT_EQ(toText(tree), "<dds><a><b> x </b></a></dds>");
}

TEST_F(XmlParser, needsTheGlobals)
{
    ZUVXMLUTILSGlobals_finalize();
    EXPECT_EQ(parse("<a/>"), nullptr);
    EXPECT_EQ(onlyLine(), "!meet precondition: ZUVXMLUTILSGlobals are not initialized");
    ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
}

class XmlMerge : public XmlTest
{
protected:
    void SetUp() override
    {
        XmlTest::SetUp();
        first.reset(ZUVXMLUTILSParser_parseFile(
            folder.write("first.xml", "<dds version='1'>\n<a name='x'/>\n<b/></dds>").c_str()));
        second.reset(ZUVXMLUTILSParser_parseFile(
            folder
                .write("second.xml",
                       "<dds version='2' other='3'><a name='x'><c/></a>\n\n<d/></dds>")
                .c_str()));
    }
    void TearDown() override
    {
        first.reset();
        second.reset();
        XmlTest::TearDown();
    }

    Folder folder;
    Tree first;
    Tree second;
};

TEST_F(XmlMerge, addsBehindAndReplacesNothing)
{
    const std::string before = toText(second);
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(second.get(), &log), 1);
    ASSERT_EQ(ZUVXMLUTILSParser_mergeRoot(first.get(), second.get()), 1);
    EXPECT_EQ(toText(first),
              "<dds version=\"1\" other=\"3\"><a name=\"x\"/><b/><a name=\"x\"><c/></a>"
              "<d/></dds>");
    EXPECT_EQ(toText(second), before);
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(first.get()), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlMerge, keepsLinesAndFilePaths)
{
    ASSERT_EQ(ZUVXMLUTILSParser_mergeRoot(first.get(), second.get()), 1);
    second.reset();
    const auto *const d = ZUVXMLUTILSObject_getFirstChildWithTag(first.get(), "d");
    EXPECT_EQ(ZUVXMLUTILSObject_getLine(d), 3);
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(d), folder / "second.xml");
    const auto *const b = ZUVXMLUTILSObject_getFirstChildWithTag(first.get(), "b");
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(b), folder / "first.xml");
    // What comes from no file says so, whatever it joins.
    const Tree plain = parse("<dds><e/></dds>");
    ASSERT_EQ(ZUVXMLUTILSParser_mergeRoot(first.get(), plain.get()), 1);
    EXPECT_EQ(
        ZUVXMLUTILSObject_getFilePath(ZUVXMLUTILSObject_getFirstChildWithTag(first.get(), "e")),
        nullptr);
}

TEST_F(XmlMerge, refusesAnotherRoot)
{
    const std::string before = toText(first);
    const Tree other = parse("<brel_service><x/></brel_service>");
    EXPECT_EQ(ZUVXMLUTILSParser_mergeRoot(first.get(), other.get()), 0);
    EXPECT_EQ(onlyLine(), "!accept text, line 1: element <brel_service>: the document has another "
                          "root than the one that it joins");
    EXPECT_EQ(toText(first), before);
}

class XmlUrlGroup : public XmlTest
{
protected:
    XmlUrlGroup()
    {
        folder.write("a.xml", "<dds><a/></dds>");
        folder.write("b.xml", "<dds><b/></dds>");
        folder.write("bad.xml", "<dds>");
    }

    // The children of what the list gives, with A for the folder.
    std::string load(std::string list)
    {
        for (std::size_t at = list.find('@'); at != list.npos; at = list.find('@', at)) {
            list.replace(at, 1, folder / "");
        }
        const Tree tree(ZUVXMLUTILSParser_parseUrlGroupList(list.c_str()));
        return tree != nullptr ? toText(tree) : "refused";
    }

    Folder folder;
};

TEST_F(XmlUrlGroup, mergesTheDocumentsInTheirOrder)
{
    EXPECT_EQ(load("@a.xml"), "<dds><a/></dds>");
    EXPECT_EQ(load("@a.xml;@b.xml"), "<dds><a/><b/></dds>");
    EXPECT_EQ(load(" file://@b.xml ; ; [ @a.xml ] ;"), "<dds><b/><a/></dds>");
    EXPECT_EQ(load("str://\"<dds><c x=\"1\"/>;</dds>\";@a.xml"), "<dds><c x=\"1\"/>;<a/></dds>");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlUrlGroup, takesTheFirstOfAGroupThatExists)
{
    EXPECT_EQ(load("[@none.xml|@b.xml|@a.xml]"), "<dds><b/></dds>");
    EXPECT_EQ(load("[ @none.xml | str://\"<dds>|]</dds>\" | @a.xml ]"), "<dds>|]</dds>");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlUrlGroup, looksAtNoOtherWhenTheFirstIsWrong)
{
    EXPECT_EQ(load("[@bad.xml|@a.xml]"), "refused");
    EXPECT_EQ(log.texts().size(), 2U);
}

TEST_F(XmlUrlGroup, namesTheFilesOfAGroupWithoutOne)
{
    EXPECT_EQ(load("@a.xml;[@x.xml|@y.xml];@b.xml"), "refused");
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s, "!find file '" + (folder / "x.xml") + "'"},
         {&ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s, "!find file '" + (folder / "y.xml") + "'"}}));
}

TEST_F(XmlUrlGroup, refusesRootsThatDoNotFit)
{
    EXPECT_EQ(load("@a.xml;str://\"<x/>\""), "refused");
    EXPECT_EQ(onlyLine(), "!accept text, line 1: element <x>: the document has another root than "
                          "the one that it joins");
}

TEST_F(XmlUrlGroup, saysWhatIsWrongWithAList)
{
    const struct {
        const char *list;
        const char *reason;
    } cases[] = {
        {"", "it holds no URL"},
        {" ; ;", "it holds no URL"},
        {"[]", "a URL is empty"},
        {"[a.xml|]", "a URL is empty"},
        {"file://", "a URL is empty"},
        {"[a.xml", "']' is missing"},
        {"[a.xml] b.xml", "groups must be parted by ';'"},
        {"str://\"<a/>", "the double quote behind a document is missing"},
        {"str://\"<a x=\"1\"/> ", "the double quote behind a document is missing"},
    };
    for (const auto &[list, reason] : cases) {
        SCOPED_TRACE(list);
        EXPECT_EQ(load(list), "refused");
        EXPECT_EQ(onlyLine(), std::string("!parse: URL group list '") + list + "': " + reason);
    }
}

} // namespace
} // namespace zuv_test
