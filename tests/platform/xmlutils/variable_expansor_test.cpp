#include <map>

#include "XmlTest.h"
#include "platform/xmlutils/VariableExpansor.h"
#include "platform/xmlutils/XmlUtilsLog.h"

namespace zuv_test
{
namespace
{

using Values = std::map<std::string, std::string, std::less<>>;

const char *valueIn(const void *source, const char *name)
{
    const auto &values = *static_cast<const Values *>(source);
    const auto found = values.find(name);
    return found != values.end() ? found->second.c_str() : nullptr;
}

class XmlVariables : public XmlTest
{
protected:
    void SetUp() override
    {
        XmlTest::SetUp();
        ASSERT_EQ(ZUVXMLUTILSVariableExpansor_initialize(&expansor, &dictionary, &valueIn,
                                                         &defaults, &valueIn),
                  1);
    }

    std::string expanded(const std::string &text)
    {
        const Tree tree = parse(text);
        return ZUVXMLUTILSVisitor_visit(&expansor.visitor, tree.get()) ? toText(tree) : "refused";
    }

    Values dictionary;
    Values defaults;
    ZUVXMLUTILSVariableExpansor expansor = {};
};

TEST_F(XmlVariables, areReplacedInTextsAndAttributes)
{
    dictionary = {{"A", "1"}, {"b.c-d:e_9", "<&>"}};
    EXPECT_EQ(expanded("<r x='$(A)' name='n$(A)$(A)'><t>$(b.c-d:e_9) and $(A)</t></r>"),
              "<r x=\"1\" name=\"n11\"><t>&lt;&amp;&gt; and 1</t></r>");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlVariables, comeFromTheDictionaryThenTheEnvironmentThenTheDefaults)
{
    setenv("ZUV_XML_TEST_1", "environment", 1);
    setenv("ZUV_XML_TEST_2", "environment", 1);
    dictionary = {{"ZUV_XML_TEST_1", "dictionary"}};
    defaults = {{"ZUV_XML_TEST_1", "default"}, {"ZUV_XML_TEST_2", "default"}, {"X", "default"}};
    EXPECT_EQ(expanded("<r>$(ZUV_XML_TEST_1) $(ZUV_XML_TEST_2) $(X)</r>"),
              "<r>dictionary environment default</r>");
    unsetenv("ZUV_XML_TEST_1");
    unsetenv("ZUV_XML_TEST_2");
}

TEST_F(XmlVariables, stayAsTheyStandUntilSomebodyKnowsThem)
{
    ZUVXMLUTILSLog_g_instrumentationMask |= ZUV_LOG_BIT_WARNING;
    const Tree tree = parse("<r>\n<a x='$(LATER)'/></r>");
    ZUVXMLUTILSObject *const a = ZUVXMLUTILSObject_getFirstChild(tree.get());
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, a), 1);
    EXPECT_TRUE(log.isExactly({{&ZUVXMLUTILS_LOG_PARSER_PARSE_WARNING_dss,
                                "line 2: element <a>: variable 'LATER' is not known"}}));
    ZUVXMLUTILSLog_g_instrumentationMask &= ~ZUV_LOG_BIT_WARNING;
    const char *const held = ZUVXMLUTILSObject_getAttribute(a, "x");
    defaults = {{"LATER", "now"}};
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, a), 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(a, "x"), "now");
    EXPECT_STREQ(held, "$(LATER)") << "somebody may have borrowed it";
}

TEST_F(XmlVariables, keepBorrowedTextsAlive)
{
    const Tree tree = parse("<r name='$(A)'>$(A)</r>");
    const char *const name = ZUVXMLUTILSObject_getName(tree.get());
    const char *const text = ZUVXMLUTILSObject_getText(tree.get());
    dictionary = {{"A", "a value that is longer than what it replaces"}};
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, tree.get()), 1);
    EXPECT_STREQ(name, "$(A)");
    EXPECT_STREQ(text, "$(A)");
}

TEST_F(XmlVariables, leaveNothingBehindOfWhatNobodyHasRead)
{
    dictionary = {{"A", "a value that is longer than what it replaces"}};
    const Tree tree = parse("<r/>");
    const Tree snippet = parse("<s name='$(A)' x='$(A)'>$(A)</s>");
    expansor.isUnread = 1;
    ZUVXMLUTILSParser_freeDom(ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get()));
    const HeapCheck heap;
    ZUVXMLUTILSObject *const copy = ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get());
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, copy), 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(copy), dictionary["A"].c_str());
    EXPECT_STREQ(ZUVXMLUTILSObject_getText(copy), dictionary["A"].c_str());
    ZUVXMLUTILSParser_freeDom(copy);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(XmlVariables, leaveEverythingElseAlone)
{
    dictionary = {{"A", "1"}, {"", "2"}};
    for (const char *text :
         {"<r>$A</r>", "<r>$()</r>", "<r>$(A</r>", "<r>$( A)</r>", "<r>$(A B)</r>", "<r>${A}</r>",
          "<r>$</r>", "<r>$(</r>", "<r>$(Ä)</r>"}) {
        EXPECT_EQ(toText(parse(expanded(text))), toText(parse(text)));
    }
    EXPECT_EQ(expanded("<r>$($(A))</r>"), "<r>$(1)</r>");
    EXPECT_EQ(expanded("<r>$$(A)</r>"), "<r>$1</r>");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlVariables, expandOneElementAndNotItsChildren)
{
    dictionary = {{"A", "1"}};
    const Tree tree = parse("<r x='$(A)'><c>$(A)</c></r>");
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, tree.get()), 1);
    EXPECT_EQ(toText(tree), "<r x=\"1\"><c>$(A)</c></r>");
}

TEST_F(XmlVariables, areReplacedInValuesToo)
{
    dictionary = {{"A", "<$(B)>"}, {"B", "$(C)$(C)"}, {"C", "x$(UNKNOWN)"}};
    EXPECT_EQ(expanded("<r>$(A)</r>"), "<r>&lt;x$(UNKNOWN)x$(UNKNOWN)&gt;</r>");
}

TEST_F(XmlVariables, areFoundHoweverTheyAreWritten)
{
    dictionary = {{"A", "1"}};
    EXPECT_EQ(expanded("<r>&#36;(A)</r>"), "<r>1</r>");
    EXPECT_EQ(expanded("<r x='&#x24;(A)'/>"), "<r x=\"1\"/>");
    EXPECT_EQ(toText(parse(expanded("<r>$<![CDATA[(A)]]></r>"))), "<r>1</r>");
    // Also in what joins a tree that had none.
    const Tree tree = parse("<r/>");
    ASSERT_NE(ZUVXMLUTILSObject_copyAsChild(tree.get(), parse("<s>$(A)</s>").get()), nullptr);
    const Tree addition = parse("<r><t>$(A)</t></r>");
    ASSERT_EQ(ZUVXMLUTILSParser_mergeRoot(tree.get(), addition.get()), 1);
    EXPECT_EQ(ZUVXMLUTILSVisitor_visit(&expansor.visitor, tree.get()), 1);
    EXPECT_EQ(toText(tree), "<r><s>1</s><t>1</t></r>");
    const Tree plain = parse("<r/>");
    ASSERT_EQ(ZUVXMLUTILSObject_setAttribute(plain.get(), "x", "$(A)"), 1);
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, plain.get()), 1);
    EXPECT_EQ(toText(plain), "<r x=\"1\"/>");
}

TEST_F(XmlVariables, mayGiveAnElementItsName)
{
    dictionary = {{"N", "new"}};
    const Tree tree = parse("<dds><r name='$(N)'/></dds>");
    EXPECT_EQ(ZUVXMLUTILSVisitor_visit(&expansor.visitor, tree.get()), 1);
    EXPECT_NE(at(tree, "new"), nullptr);
    EXPECT_EQ(at(tree, "$(N)"), nullptr);
}

TEST_F(XmlVariables, failWhenTheyLeadBackToThemselves)
{
    dictionary = {{"A", "1$(B)"}, {"B", "2$(C)"}, {"C", "3$(A)"}, {"S", "$(S)"}};
    const Tree tree = parse("<r>\n<t y='1$(S)' x='z'>$(A)</t></r>");
    const std::string before = toText(tree);
    ZUVXMLUTILSObject *const t = ZUVXMLUTILSObject_getFirstChild(tree.get());
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, t), 0);
    EXPECT_EQ(onlyLine(), "!accept text, line 2: element <t>: variable 'S' leads back to itself");
    EXPECT_EQ(toText(tree), before);
    ZUVXMLUTILSObject_removeAttribute(t, "y");
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_visit(&expansor, t), 0);
    EXPECT_EQ(onlyLine(), "!accept text, line 2: element <t>: variable 'A' leads back to itself");
}

TEST_F(XmlVariables, failWhenTheyGrowBeyondTheLimits)
{
    for (char name = 'A'; name < 'Z'; ++name) {
        const std::string next(1, static_cast<char>(name + 1));
        dictionary[std::string(1, name)] = "$(" + next + ")$(" + next + ")";
    }
    dictionary["Z"] = "";
    EXPECT_EQ(expanded("<r>$(A)</r>"), "refused");
    EXPECT_EQ(onlyLine(),
              "!accept text, line 1: element <r>: more than 10000 variables are to be replaced");
    dictionary["Z"] = std::string(300, 'z');
    EXPECT_EQ(expanded("<r>$(A)</r>"), "refused");
    EXPECT_EQ(onlyLine(),
              "!accept text, line 1: element <r>: with its variables replaced a text is "
              "longer than 1048576 bytes");
    EXPECT_EQ(expanded("<r name='$(Z)'/>"), "refused");
    EXPECT_EQ(onlyLine(), "!accept text, line 1: element <r>: with its variables replaced the "
                          "element's name has more than 255 characters");
    for (int index = 0; index < 100; ++index) {
        dictionary["V" + std::to_string(index)] = "$(V" + std::to_string(index + 1) + ")";
    }
    EXPECT_EQ(expanded("<r>$(V0)</r>"), "refused");
    EXPECT_EQ(onlyLine(),
              "!accept text, line 1: element <r>: variables lead to each other more than 64 deep");
    EXPECT_EQ(expanded("<r>$(V40)</r>"), "<r>$(V100)</r>");
}

TEST_F(XmlVariables, failWhenTheirValuesAreMuchInAll)
{
    dictionary = {{"M", std::string(1000000, 'm')}, {"E", ""}};
    for (int index = 0; index < 100; ++index) {
        dictionary["E"] += "$(F)";
    }
    dictionary["F"] = "";
    std::string texts;
    for (int index = 0; index < 33; ++index) {
        texts += "<t>$(M)</t>";
    }
    EXPECT_NE(expanded("<r>" + texts + "</r>"), "refused");
    expansor.valueSize = 0;
    EXPECT_EQ(expanded("<r>" + texts + "<u>$(M)</u></r>"), "refused");
    EXPECT_EQ(onlyLine(), "!accept text, line 1: element <u>: the values of all variables come to "
                          "more than 33554432 bytes");
    // Also when they are empty, since each of them takes its time.
    std::string empty;
    for (int index = 0; index < 6000; ++index) {
        empty += "<t>$(E)</t>";
    }
    expansor.valueSize = 0;
    EXPECT_EQ(expanded("<r>" + empty + "</r>"), "refused");
    EXPECT_EQ(onlyLine(), "!accept text, line 1: element <t>: the values of all variables come to "
                          "more than 33554432 bytes");
}

TEST_F(XmlVariables, needNoSources)
{
    ASSERT_EQ(ZUVXMLUTILSVariableExpansor_initialize(&expansor, nullptr, nullptr, nullptr, nullptr),
              1);
    EXPECT_EQ(expanded("<r>$(ZUV_XML_NOBODY)</r>"), "<r>$(ZUV_XML_NOBODY)</r>");
    EXPECT_EQ(ZUVXMLUTILSVariableExpansor_initialize(nullptr, nullptr, nullptr, nullptr, nullptr),
              0);
    EXPECT_EQ(onlyLine(), "!meet precondition: self == ((void *)0)");
}

} // namespace
} // namespace zuv_test
