#include "XmlTest.h"
#include "platform/xmlutils/Transformer.h"

namespace zuv_test
{
namespace
{

struct TransformerDeleter {
    void operator()(ZUVXMLUTILSTransformer *transformer) const
    {
        ZUVXMLUTILSTransformer_delete(transformer);
    }
};
using Transformer = std::unique_ptr<ZUVXMLUTILSTransformer, TransformerDeleter>;

const std::string kHead =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' "
    "xmlns:saxon='http://icl.com/saxon' exclude-result-prefixes='saxon'>";

Transformer make(const std::string &body)
{
    const std::string text = kHead + body + "</xsl:stylesheet>";
    const char *const pieces[] = {text.c_str(), ""};
    return Transformer(ZUVXMLUTILSTransformer_newFromStringArray(pieces, 2));
}

class XmlTransformer : public XmlTest
{
protected:
    static std::string apply(const Transformer &transformer, const ZUVXMLUTILSObject *object)
    {
        const Tree result(ZUVXMLUTILSTransformer_transform(
            transformer.get(), const_cast<ZUVXMLUTILSObject *>(object)));
        return result != nullptr ? toText(result) : "refused";
    }
};

constexpr const char *kToQos =
    "<xsl:param name='LIBRARY'/><xsl:param name='PROFILE' select=\"'none'\"/>"
    "<xsl:template match='/*'><dds><qos_library name='{$LIBRARY}'><qos_profile name='{$PROFILE}'>"
    "<xsl:copy-of select='.'/></qos_profile></qos_library></dds></xsl:template>";

TEST_F(XmlTransformer, makesATreeOfADocument)
{
    const Transformer transformer =
        make("<xsl:template match='/*'><out><xsl:copy-of select='a/@name'/>"
             "<xsl:value-of select='count(*)'/></out></xsl:template>");
    const Tree tree = parse("<dds>\n<a name='x'/><b/></dds>");
    const std::string before = toText(tree);
    EXPECT_EQ(apply(transformer, tree.get()), "<out name=\"x\">2</out>");
    EXPECT_EQ(toText(tree), before);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlTransformer, takesAnElementForTheRootOfADocument)
{
    const Transformer transformer = make(kToQos);
    const Tree tree =
        parse("<dds><s name='s'><datareader_qos x='1'><a>2</a></datareader_qos></s></dds>");
    const std::string before = toText(tree);
    EXPECT_EQ(apply(transformer, ZUVXMLUTILSObject_getFirstChild(at(tree, "s"))),
              "<dds><qos_library name=\"\"><qos_profile name=\"none\"><datareader_qos x=\"1\">"
              "<a>2</a></datareader_qos></qos_profile></qos_library></dds>");
    EXPECT_EQ(toText(tree), before);
}

TEST_F(XmlTransformer, takesParametersAsTheyStand)
{
    const Transformer transformer = make(kToQos);
    const Tree tree = parse("<q/>");
    const ZUVXMLUTILSTransformationParameter parameters[] = {
        {"LIBRARY", "#zuv.'\"<&'1+1", ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING},
        {"PROFILE", "", ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING},
        {"UNKNOWN", "x", 13}};
    const Tree result(
        ZUVXMLUTILSTransformer_transformWithParams(transformer.get(), tree.get(), parameters, 3));
    ASSERT_NE(result, nullptr);
    const auto *const library = ZUVXMLUTILSObject_getFirstChild(result.get());
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(library), "#zuv.'\"<&'1+1");
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(ZUVXMLUTILSObject_getFirstChild(library), "name"),
                 "");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlTransformer, refusesParametersThatAreNoTexts)
{
    const Transformer transformer = make(kToQos);
    const Tree tree = parse("<q/>");
    const ZUVXMLUTILSTransformationParameter parameters[] = {{"LIBRARY", "x", 12}};
    EXPECT_EQ(
        ZUVXMLUTILSTransformer_transformWithParams(transformer.get(), tree.get(), parameters, 1),
        nullptr);
    EXPECT_EQ(onlyLine(), "!meet precondition: a parameter is no text");
}

TEST_F(XmlTransformer, givesLinesAlsoBeyondSixteenBits)
{
    const Transformer transformer =
        make("<xsl:template match='/*'><out><xsl:for-each select='a'><xsl:processing-instruction "
             "name='line'><xsl:value-of select='saxon:line-number()'/></xsl:processing-instruction>"
             "</xsl:for-each></out></xsl:template>");
    const Tree tree =
        parse("<dds><x name='x'>\n<a/>" + std::string(70000, '\n') + "<a/></x></dds>");
    EXPECT_EQ(apply(transformer, at(tree, "x")), "<out><?line 2?><?line 70002?></out>");
}

TEST_F(XmlTransformer, givesATreeLikeAnyOther)
{
    const Transformer transformer = make(
        "<xsl:template match='/'><dds><xsl:for-each select='//r'><r name='{.}'/></xsl:for-each>"
        "</dds></xsl:template>");
    std::string text = "<dds>";
    for (int index = 0; index < 50; ++index) {
        text += "<r>" + std::to_string(index) + "</r>";
    }
    const Tree tree = parse(text + "</dds>");
    const Tree result(ZUVXMLUTILSTransformer_transform(transformer.get(), tree.get()));
    ASSERT_NE(at(result, "42"), nullptr);
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(at(result, "42"), &log), 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getFullyQualifiedName(at(result, "42")), "::42");
    ASSERT_EQ(ZUVXMLUTILSObject_setTagName(at(result, "7"), "seven"), 1);
    ASSERT_EQ(ZUVXMLUTILSParser_mergeRoot(result.get(), tree.get()), 1);
    ASSERT_NE(ZUVXMLUTILSObject_copyAsChild(tree.get(), at(result, "7")), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(at(result, "7")), nullptr);
}

TEST_F(XmlTransformer, tellsTheMessageThatEndsATransformation)
{
    const Transformer transformer = make(
        "<xsl:template match='/*'><out><xsl:message terminate='yes'>Error at line<xsl:value-of "
        "select='saxon:line-number()'/>: Unexpected root element with tag=<xsl:value-of "
        "select='local-name()'/></xsl:message></out></xsl:template>");
    const Tree tree = parse("<dds>\n<bad/></dds>");
    EXPECT_EQ(apply(transformer, ZUVXMLUTILSObject_getFirstChild(tree.get())), "refused");
    EXPECT_EQ(onlyLine(),
              "!accept text, line 0: Error at line2: Unexpected root element with tag=bad");
}

TEST_F(XmlTransformer, refusesAResultWithoutAnElement)
{
    const Transformer transformer = make("<xsl:template match='/'>text</xsl:template>");
    EXPECT_EQ(apply(transformer, parse("<a/>").get()), "refused");
    EXPECT_EQ(onlyLine(),
              "!accept text, line 0: the result of the transformation holds no element");
}

TEST_F(XmlTransformer, refusesStylesheetsThatAreWrong)
{
    EXPECT_EQ(make("<xsl:template match='/['/>"), nullptr);
    EXPECT_EQ(
        onlyLine(),
        "!accept stylesheet, line 0: error xsltCompileStepPattern : Name expected compilation "
        "error: element template xsltCompilePattern : failed to compile '/['");
    EXPECT_EQ(make("<xsl:template>"), nullptr);
    EXPECT_EQ(log.texts().size(), 1U);
    log.clear();
    const char *const other = "<a/>";
    EXPECT_EQ(ZUVXMLUTILSTransformer_newFromStringArray(&other, 1), nullptr);
    EXPECT_EQ(log.texts().size(), 1U);
}

TEST_F(XmlTransformer, opensNothing)
{
    const Folder folder;
    folder.write("other.xsl", kHead + "</xsl:stylesheet>");
    const std::string path = folder.write(
        "main.xsl", kHead + "<xsl:import href='" + (folder / "other.xsl") + "'/></xsl:stylesheet>");
    EXPECT_EQ(ZUVXMLUTILSTransformer_newFromFile(path.c_str()), nullptr);
    EXPECT_EQ(log.texts().size(), 2U);
    log.clear();

    const Transformer transformer =
        make("<xsl:template match='/'><out><xsl:copy-of select=\"document('" +
             (folder / "main.xsl") + "')\"/></out></xsl:template>");
    EXPECT_EQ(apply(transformer, parse("<a/>").get()), "refused");
    EXPECT_EQ(log.texts().size(), 1U);
}

TEST_F(XmlTransformer, readsAStylesheetFromAFile)
{
    const Folder folder;
    const std::string path = folder.write(
        "a.xsl", kHead + "<xsl:template match='/'><b/></xsl:template></xsl:stylesheet>");
    const Transformer transformer(ZUVXMLUTILSTransformer_newFromFile(path.c_str()));
    ASSERT_NE(transformer, nullptr);
    EXPECT_EQ(apply(transformer, parse("<a/>").get()), "<b/>");
    EXPECT_EQ(ZUVXMLUTILSTransformer_newFromFile((folder / "none").c_str()), nullptr);
    EXPECT_EQ(log.texts().back(), "!load file '" + (folder / "none") + "'");
}

} // namespace
} // namespace zuv_test
