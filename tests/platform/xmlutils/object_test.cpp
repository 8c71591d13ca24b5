#include <thread>

#include "XmlTest.h"
#include "platform/xmlutils/Utils.h"

namespace zuv_test
{
namespace
{

class XmlObject : public XmlTest
{
};

TEST_F(XmlObject, walksElementsInTheOrderOfTheDocument)
{
    const Tree tree = parse("<dds> <a/> <!-- c --> <b><c/></b> <?pi x?> <a/> </dds>");
    EXPECT_EQ(childrenOf(tree.get()), (std::vector<std::string>{"a", "b", "a"}));
    ZUVXMLUTILSObject *const a = ZUVXMLUTILSObject_getFirstChild(tree.get());
    ZUVXMLUTILSObject *const b = ZUVXMLUTILSObject_getNextSibling(a);
    EXPECT_EQ(ZUVXMLUTILSObject_getPreviousSibling(b), a);
    EXPECT_EQ(ZUVXMLUTILSObject_getPreviousSibling(a), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getParent(b), tree.get());
    EXPECT_EQ(ZUVXMLUTILSObject_getParent(tree.get()), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getRoot(ZUVXMLUTILSObject_getFirstChild(b)), tree.get());
    EXPECT_EQ(ZUVXMLUTILSObject_getNextSibling(tree.get()), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getFirstChild(a), nullptr);
}

TEST_F(XmlObject, findsChildrenAndSiblingsByTheirTag)
{
    const Tree tree = parse("<dds><a/><b name='1'/><a/><b name='2'/></dds>");
    ZUVXMLUTILSObject *const first = ZUVXMLUTILSObject_getFirstChildWithTag(tree.get(), "b");
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(first), "1");
    ZUVXMLUTILSObject *const second = ZUVXMLUTILSObject_getNextSiblingWithTag(first, "b");
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(second), "2");
    EXPECT_EQ(ZUVXMLUTILSObject_getNextSiblingWithTag(second, "b"), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getNextSiblingWithTag(second, "a"), nullptr);
    EXPECT_STREQ(ZUVXMLUTILSObject_getTagName(ZUVXMLUTILSObject_getNextSiblingWithTag(first, "a")),
                 "a");
    EXPECT_EQ(ZUVXMLUTILSObject_getFirstChildWithTag(tree.get(), "B"), nullptr);
}

TEST_F(XmlObject, showsCommentsToWhoAsksForNodes)
{
    const Tree tree = parse("<dds><!-- 1 --><a/>\n<!-- 2 --><b/></dds>");
    ZUVXMLUTILSObject *const comment = ZUVXMLUTILSObject_getFirstNode(tree.get());
    EXPECT_STREQ(ZUVXMLUTILSObject_getTagName(comment), "#comment");
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(comment), "");
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(comment), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getFirstChild(comment), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getAttribute(comment, "x"), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getFirstAttribute(comment), nullptr);
    ZUVXMLUTILSObject *const a = ZUVXMLUTILSObject_getNextNode(comment);
    EXPECT_STREQ(ZUVXMLUTILSObject_getTagName(a), "a");
    ZUVXMLUTILSObject *const other = ZUVXMLUTILSObject_getNextNode(a);
    EXPECT_STREQ(ZUVXMLUTILSObject_getTagName(other), "#comment");
    EXPECT_EQ(ZUVXMLUTILSObject_getLine(other), 2);
    EXPECT_EQ(ZUVXMLUTILSObject_setUserData(other, &log), 0);
    EXPECT_EQ(onlyLine(), "!meet precondition: self is a comment");
}

TEST_F(XmlObject, givesNamesAndFullyQualifiedNames)
{
    const Tree tree = parse("<dds><svc name='s'><plain><r name='a::b'/></plain></svc></dds>");
    ZUVXMLUTILSObject *const service = ZUVXMLUTILSObject_getFirstChild(tree.get());
    ZUVXMLUTILSObject *const plain = ZUVXMLUTILSObject_getFirstChild(service);
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(service), "s");
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(plain), "");
    EXPECT_STREQ(ZUVXMLUTILSObject_getFullyQualifiedName(tree.get()), "::");
    EXPECT_STREQ(ZUVXMLUTILSObject_getFullyQualifiedName(service), "::s");
    EXPECT_STREQ(ZUVXMLUTILSObject_getFullyQualifiedName(plain), "::s");
    EXPECT_STREQ(ZUVXMLUTILSObject_getFullyQualifiedName(ZUVXMLUTILSObject_getFirstChild(plain)),
                 "::s::a::b");
}

TEST_F(XmlObject, keepsAFullNameThatSomebodyHoldsThroughARename)
{
    const Tree tree = parse("<dds><a name='x'><b name='y'/></a></dds>");
    ZUVXMLUTILSObject *const a = ZUVXMLUTILSObject_getFirstChild(tree.get());
    ZUVXMLUTILSObject *const b = ZUVXMLUTILSObject_getFirstChild(a);
    const char *const before = ZUVXMLUTILSObject_getFullyQualifiedName(b);
    ASSERT_EQ(ZUVXMLUTILSObject_setName(a, "z"), 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getFullyQualifiedName(b), "::z::y");
    EXPECT_STREQ(before, "::x::y");
}

TEST_F(XmlObject, renamesTagsAndBack)
{
    const Tree tree = parse("<dds><input x='1'>t</input></dds>");
    ZUVXMLUTILSObject *const input = ZUVXMLUTILSObject_getFirstChild(tree.get());
    ASSERT_EQ(ZUVXMLUTILSObject_setTagName(input, "route_input_update"), 1);
    EXPECT_EQ(toText(tree), "<dds><route_input_update x=\"1\">t</route_input_update></dds>");
    ASSERT_EQ(ZUVXMLUTILSObject_setTagName(input, "input"), 1);
    EXPECT_EQ(toText(tree), "<dds><input x=\"1\">t</input></dds>");
}

TEST_F(XmlObject, givesTheTextAsItStands)
{
    const Tree tree =
        parse("<dds><a> x &lt; &#65;\n</a><b/><c></c><d>one<e/>two</d><f> </f></dds>");
    ZUVXMLUTILSObject *child = ZUVXMLUTILSObject_getFirstChild(tree.get());
    const struct {
        const char *text;
        int isText;
    } expected[] = {{" x < A\n", 1}, {"", 0}, {"", 0}, {"one", 0}, {" ", 1}};
    for (const auto &[text, isText] : expected) {
        SCOPED_TRACE(text);
        EXPECT_STREQ(ZUVXMLUTILSObject_getText(child), text);
        EXPECT_EQ(ZUVXMLUTILSObject_isText(child), isText);
        child = ZUVXMLUTILSObject_getNextSibling(child);
    }
    EXPECT_STREQ(ZUVXMLUTILSObject_getText(tree.get()), "");
    EXPECT_EQ(ZUVXMLUTILSObject_isText(tree.get()), 0);
}

TEST_F(XmlObject, keepsTextThatSomethingPartsInOnePiece)
{
    for (const char *text :
         {"<a>12<!-- c -->34</a>", "<a><!-- c -->12<?p i?>34</a>", "<a>12<![CDATA[3]]>4</a>",
          "<a><![CDATA[1]]><!-- c -->2<!-- d -->34</a>"}) {
        SCOPED_TRACE(text);
        const Tree tree = parse(text);
        EXPECT_STREQ(ZUVXMLUTILSObject_getText(tree.get()), "1234");
        EXPECT_EQ(ZUVXMLUTILSObject_isText(tree.get()), 1);
    }
}

TEST_F(XmlObject, readsAndChangesAttributes)
{
    const Tree tree = parse("<a x='1 &amp;&#10;2' y=''/>");
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(tree.get(), "x"), "1 &\n2");
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(tree.get(), "y"), "");
    EXPECT_EQ(ZUVXMLUTILSObject_getAttribute(tree.get(), "z"), nullptr);
    ASSERT_EQ(ZUVXMLUTILSObject_setAttribute(tree.get(), "x", "a&amp;<b"), 1);
    ASSERT_EQ(ZUVXMLUTILSObject_setAttribute(tree.get(), "z", "new"), 1);
    ZUVXMLUTILSObject_removeAttribute(tree.get(), "y");
    ZUVXMLUTILSObject_removeAttribute(tree.get(), "none");
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(tree.get(), "x"), "a&amp;<b");
    EXPECT_EQ(toText(tree), "<a x=\"a&amp;amp;&lt;b\" z=\"new\"/>");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlObject, listsAttributesWithTheirPrefixes)
{
    const Tree tree = parse("<dds xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' b='1'"
                            " xsi:noNamespaceSchemaLocation='x.xsd' a='2'/>");
    std::string all;
    for (const auto *attribute = ZUVXMLUTILSObject_getFirstAttribute(tree.get());
         attribute != nullptr; attribute = ZUVXMLUTILSAttribute_getNext(attribute)) {
        all += std::string(ZUVXMLUTILSAttribute_getName(attribute)) + "=" +
               ZUVXMLUTILSAttribute_getValue(attribute) + " ";
    }
    EXPECT_EQ(all, "b=1 xsi:noNamespaceSchemaLocation=x.xsd a=2 ");
}

TEST_F(XmlObject, keepsProcessingInstructionsApartFromChildren)
{
    const Tree tree = parse("<a><b/><?p one?><?p two?></a>");
    EXPECT_STREQ(ZUVXMLUTILSObject_getProcessingInstruction(tree.get(), "p"), "one");
    EXPECT_EQ(ZUVXMLUTILSObject_getProcessingInstruction(tree.get(), "q"), nullptr);
    ASSERT_EQ(ZUVXMLUTILSObject_addProcessingInstruction(tree.get(), "q", "0"), 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getProcessingInstruction(tree.get(), "q"), "0");
    EXPECT_EQ(childrenOf(tree.get()), std::vector<std::string>{"b"});
    EXPECT_EQ(toText(tree), "<a><?q 0?><b/><?p one?><?p two?></a>");
    const Tree text = parse("<a>12</a>");
    ASSERT_EQ(ZUVXMLUTILSObject_addProcessingInstruction(text.get(), "q", ""), 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getText(text.get()), "12");
    EXPECT_EQ(ZUVXMLUTILSObject_isText(text.get()), 1);
}

TEST_F(XmlObject, knowsTheInstructionInFrontOfAnElement)
{
    const Tree tree = parse("<a><?p 0?><b/><?p 1?><?p 2?><!-- --><?q 3?><c/><d/></a>");
    const auto *const b = ZUVXMLUTILSObject_getFirstChild(tree.get());
    const auto *const c = ZUVXMLUTILSObject_getNextSibling(b);
    EXPECT_STREQ(ZUVXMLUTILSObject_getPrecedingInstruction(b, "p"), "0");
    EXPECT_EQ(ZUVXMLUTILSObject_getPrecedingInstruction(b, "q"), nullptr);
    EXPECT_STREQ(ZUVXMLUTILSObject_getPrecedingInstruction(c, "p"), "2");
    EXPECT_STREQ(ZUVXMLUTILSObject_getPrecedingInstruction(c, "q"), "3");
    EXPECT_EQ(ZUVXMLUTILSObject_getPrecedingInstruction(ZUVXMLUTILSObject_getNextSibling(c), "p"),
              nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getPrecedingInstruction(tree.get(), "p"), nullptr);
}

TEST_F(XmlObject, hasAnAttributeForATime)
{
    for (const char *text :
         {"<r><a/></r>", "<r><a x=\"1\"/></r>", "<r><a x=\"\" y=\"2\"/></r>",
          "<r><a w=\"0\" x=\"1\" y=\"2\"/></r>", "<r><a y=\"2\" x=\"1\"/></r>"}) {
        const Tree tree = parse(text);
        ZUVXMLUTILSObject *const a = ZUVXMLUTILSObject_getFirstChild(tree.get());
        ZUVXMLUTILSAttribute *former = nullptr;
        ASSERT_EQ(ZUVXMLUTILSObject_replaceAttribute(a, "x", "other", &former), 1);
        EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(a, "x"), "other");
        ZUVXMLUTILSObject_putBackAttribute(a, "x", former);
        EXPECT_EQ(toText(tree), text);
        // It is still the document's, so that an update carries it over.
        const Tree target = parse("<r><a/></r>");
        ASSERT_EQ(ZUVXMLUTILSUtils_updateObject(target.get(), tree.get()), 1);
        const char *const x = ZUVXMLUTILSObject_getAttribute(a, "x");
        const char *const carried =
            ZUVXMLUTILSObject_getAttribute(ZUVXMLUTILSObject_getFirstChild(target.get()), "x");
        EXPECT_EQ(x == nullptr ? "" : x, std::string(carried == nullptr ? "" : carried));
    }
}

TEST_F(XmlObject, standsInItsTextOnTheLineThatItHad)
{
    const Tree tree = parse("<t>\n<a>\n\n<b/> <b/>\n<!-- one\ntwo --> <c>\nthree\n</c\n>\n<?p x\n"
                            "y?><d\nx='1'>\n\n<e/></d></a></t>");
    ZUVXMLUTILSObject *const a = ZUVXMLUTILSObject_getFirstChild(tree.get());
    ASSERT_EQ(ZUVXMLUTILSObject_restoreLines(a), 1);
    const std::string text = toText(a);
    EXPECT_EQ(text, "<a>\n\n<b/><b/><!-- one\ntwo -->\n<c>\nthree\n</c><?p x\ny?>\n\n\n"
                    "<d x=\"1\">\n\n<e/></d></a>");
    const Tree again = parse(text);
    const auto *one = ZUVXMLUTILSObject_getFirstChild(a);
    const auto *other = ZUVXMLUTILSObject_getFirstChild(again.get());
    for (; one != nullptr; one = ZUVXMLUTILSObject_getNextSibling(one)) {
        EXPECT_EQ(ZUVXMLUTILSObject_getLine(other) + 1, ZUVXMLUTILSObject_getLine(one));
        other = ZUVXMLUTILSObject_getNextSibling(other);
    }
}

TEST_F(XmlObject, carriesUserData)
{
    const Tree tree = parse("<a><b/></a>");
    ZUVXMLUTILSObject *const b = ZUVXMLUTILSObject_getFirstChild(tree.get());
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(b), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_setUserData(b, nullptr), 1);
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(b, &log), 1);
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(b), &log);
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(tree.get()), nullptr);
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(b, nullptr), 1);
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(b), nullptr);
}

TEST_F(XmlObject, knowsLinesBeyondSixteenBits)
{
    constexpr int kLines = 70000;
    std::string text = "<a>";
    for (int line = 2; line <= kLines; ++line) {
        text += line % 1000 == 0 ? "\n<b/>" : "\n";
    }
    text += "<c><d>1</d></c></a>";
    const Tree tree = parse(text);
    int line = 1000;
    for (const auto *child = ZUVXMLUTILSObject_getFirstChildWithTag(tree.get(), "b");
         child != nullptr; child = ZUVXMLUTILSObject_getNextSiblingWithTag(child, "b")) {
        EXPECT_EQ(ZUVXMLUTILSObject_getLine(child), line);
        line += 1000;
    }
    EXPECT_EQ(line, kLines + 1000);
    // Also beside user data, and in a copy.
    ZUVXMLUTILSObject *const c = ZUVXMLUTILSObject_getFirstChildWithTag(tree.get(), "c");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(c, &log), 1);
    EXPECT_EQ(ZUVXMLUTILSObject_getLine(c), kLines);
    const Tree other = parse("<a/>");
    const auto *const copy = ZUVXMLUTILSObject_copyAsChild(other.get(), c);
    EXPECT_EQ(ZUVXMLUTILSObject_getLine(copy), kLines);
    EXPECT_EQ(ZUVXMLUTILSObject_getLine(ZUVXMLUTILSObject_getFirstChild(copy)), kLines);
}

TEST_F(XmlObject, reportsMissingArgumentsAsPreconditions)
{
    EXPECT_EQ(ZUVXMLUTILSObject_getParent(nullptr), nullptr);
    EXPECT_EQ(onlyLine(), "!meet precondition: self == ((void *)0)");
    EXPECT_STREQ(ZUVXMLUTILSObject_getText(nullptr), "");
    EXPECT_EQ(onlyLine(), "!meet precondition: self == ((void *)0)");
    const Tree tree = parse("<a/>");
    EXPECT_EQ(ZUVXMLUTILSObject_lookUp(tree.get(), nullptr), nullptr);
    EXPECT_EQ(onlyLine(), "!meet precondition: fullName == ((void *)0)");
    EXPECT_EQ(ZUVXMLUTILSObject_setAttribute(tree.get(), "x", nullptr), 0);
    EXPECT_EQ(onlyLine(), "!meet precondition: value == ((void *)0)");
}

TEST_F(XmlObject, copiesInFrontOfItsKindSoThatNobodyOfItStandsBefore)
{
    const Tree tree =
        parse("<s><thread_pool/><route name='1'/><auto name='2'/><route name='3'/></s>");
    const Tree snippet = parse("<route name='3'><x>1</x></route>");
    ZUVXMLUTILSObject *const copy = ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get());
    EXPECT_EQ(childrenOf(tree.get()),
              (std::vector<std::string>{"thread_pool", "3", "1", "2", "3"}));
    EXPECT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(copy, "3"), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(copy), 0);
    EXPECT_EQ(toText(copy), toText(snippet));
    EXPECT_EQ(ZUVXMLUTILSObject_getRoot(copy), tree.get());
    ZUVXMLUTILSParser_freeDom(copy);
    EXPECT_EQ(childrenOf(tree.get()), (std::vector<std::string>{"thread_pool", "1", "2", "3"}));
}

TEST_F(XmlObject, copiesTheFirstOfItsKindBehindAllOthers)
{
    const Tree tree = parse("<s><a/><b/></s>");
    const Tree snippet = parse("<c/>");
    ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get());
    EXPECT_EQ(toText(tree), "<s><a/><b/><c/></s>");
}

TEST_F(XmlObject, copiesWithoutUserDataAndWithoutAFile)
{
    const Folder folder;
    const Tree tree(ZUVXMLUTILSParser_parseFile(folder.write("f.xml", "<a><b/></a>").c_str()));
    const Tree snippet = parse("<c/>");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(snippet.get(), &log), 1);
    const auto *const copy = ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get());
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(copy), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(copy), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(ZUVXMLUTILSObject_getFirstChild(tree.get())),
              folder / "f.xml");
    // From a file into a tree that has none.
    const Tree plain = parse("<a/>");
    const auto *const other =
        ZUVXMLUTILSObject_copyAsChild(plain.get(), ZUVXMLUTILSObject_getFirstChild(tree.get()));
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(other), folder / "f.xml");
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(plain.get()), nullptr);
}

TEST_F(XmlObject, refusesACopyThatWouldGrowTooDeep)
{
    std::string text;
    for (int level = 0; level < ZUVXMLUTILS_DEPTH_MAX; ++level) {
        text = "<a>" + text + "</a>";
    }
    const Tree deep = parse(text);
    const Tree tree = parse(text);
    const auto deepest = [](ZUVXMLUTILSObject *from) {
        while (ZUVXMLUTILSObject *const child = ZUVXMLUTILSObject_getFirstChild(from)) {
            from = child;
        }
        return from;
    };
    ASSERT_NE(ZUVXMLUTILSObject_copyAsChild(deepest(tree.get()), deep.get()), nullptr);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(ZUVXMLUTILSObject_copyAsChild(deepest(tree.get()), deep.get()), nullptr);
    EXPECT_EQ(onlyLine(), "!accept text, line 1: element <a>: elements are nested too deeply");
}

TEST_F(XmlObject, movesBehindAllSiblings)
{
    const Tree tree = parse("<s><a name='1'/><a name='2'/><b/></s>");
    ZUVXMLUTILSObject_moveToEnd(at(tree, "1"));
    EXPECT_EQ(childrenOf(tree.get()), (std::vector<std::string>{"2", "b", "1"}));
    ZUVXMLUTILSObject_moveToEnd(at(tree, "1"));
    ZUVXMLUTILSObject_moveToEnd(tree.get());
    EXPECT_EQ(childrenOf(tree.get()), (std::vector<std::string>{"2", "b", "1"}));
}

TEST_F(XmlObject, freesAnElementWithWhatIsInIt)
{
    const Tree tree = parse("<a><b name='x'><c/></b><d/></a>");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(at(tree, "x"), &log), 1);
    ZUVXMLUTILSParser_freeDom(at(tree, "x"));
    ZUVXMLUTILSParser_freeDom(nullptr);
    EXPECT_EQ(toText(tree), "<a><d/></a>");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlObject, writesTextThatReadsAsTheSame)
{
    const char *const text = "<a x=\"&lt;&quot;&amp;\"><?p i?>1 &lt; 2 &amp; é<!-- c --></a>";
    const Tree tree = parse(text);
    EXPECT_EQ(toText(parse(toText(tree))), toText(tree));
}

} // namespace
} // namespace zuv_test
