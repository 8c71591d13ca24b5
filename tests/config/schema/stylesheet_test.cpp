// The stylesheet that makes of a document, or of one QoS element, what the QoS side tree reads.
#include <optional>

#include "config/EmbeddedTexts.h"
#include "platform/xmlutils/Transformer.h"
#include "platform/xmlutils/XmlTest.h"

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

#define LIBRARY "#zuv.brel_service.qos_library"

class QosStylesheet : public XmlTest
{
protected:
    void SetUp() override
    {
        XmlTest::SetUp();
        transformer.reset(
            ZUVXMLUTILSTransformer_newFromStringArray(BREL_XSLT_TO_QOS, BREL_XSLT_TO_QOS_LENGTH));
        ASSERT_NE(transformer, nullptr) << testing::PrintToString(log.texts());
    }
    void TearDown() override
    {
        transformer.reset();
        XmlTest::TearDown();
    }

    Tree apply(ZUVXMLUTILSObject *object, const char *topicFilter = "") const
    {
        const ZUVXMLUTILSTransformationParameter parameters[] = {
            {"BREL_XMLSUPPORT_QOS_LIBRARY_NAME_PARAM", LIBRARY,
             ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING},
            {"BREL_XMLSUPPORT_QOS_PROFILE_NAME_PARAM", "0x55d0",
             ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING},
            {"BREL_XMLSUPPORT_QOS_TOPIC_FILTER_NAME_PARAM", topicFilter,
             ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING},
        };
        return Tree(
            ZUVXMLUTILSTransformer_transformWithParams(transformer.get(), object, parameters, 3));
    }
    // Of a document that is the element alone.
    std::string resultOf(const std::string &document, const char *topicFilter = "") const
    {
        const Tree tree = parse(document);
        const Tree result = apply(tree.get(), topicFilter);
        return result != nullptr ? toText(result) : "refused";
    }

    Transformer transformer;
};

std::string inLibrary(const std::string &content)
{
    const std::string start = "<dds><qos_library name=\"" LIBRARY "\"";
    const std::string end = content.empty() ? "/></dds>" : ">" + content + "</qos_library></dds>";
    return start + end;
}

std::string inProfile(const std::string &content)
{
    return inLibrary("<qos_profile name=\"0x55d0\">" + content + "</qos_profile>");
}

TEST_F(QosStylesheet, makesAProfileOfEachQos)
{
    for (const std::string tag : {"participant_qos", "domain_participant_qos", "subscriber_qos",
                                  "publisher_qos", "datareader_qos", "datawriter_qos"}) {
        EXPECT_EQ(resultOf("<" + tag + " base_name='l::p' x='1'>text<a>2</a><b c='3'><d/></b></" +
                           tag + ">"),
                  inProfile("<" + tag +
                            " base_name=\"l::p\" x=\"1\"><a>2</a><b c=\"3\"><d/></b></" + tag +
                            ">"));
        EXPECT_EQ(resultOf("<" + tag + "/>"), inProfile("<" + tag + "/>"));
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(QosStylesheet, addsTheTopicFilterWhereThereIsNone)
{
    EXPECT_EQ(
        resultOf("<datareader_qos base_name='p'><history/></datareader_qos>", "a \"b\" <*>"),
        inProfile(
            "<datareader_qos base_name=\"p\" topic_filter=\"a &quot;b&quot; &lt;*&gt;\"><history/>"
            "</datareader_qos>"));
    EXPECT_EQ(resultOf("<datawriter_qos/>", "T"),
              inProfile("<datawriter_qos topic_filter=\"T\"/>"));
    EXPECT_EQ(resultOf("<datareader_qos topic_filter='mine'/>", "T"),
              inProfile("<datareader_qos topic_filter=\"mine\"/>"));
    EXPECT_EQ(resultOf("<datareader_qos topic_filter=''/>", "T"),
              inProfile("<datareader_qos topic_filter=\"\"/>"));
}

TEST_F(QosStylesheet, putsADistributedLoggerIntoTheLibraryWithItsLine)
{
    const Tree tree =
        parse("<administration>\n\n<distributed_logger><level>FATAL</level></distributed_logger>"
              "</administration>");
    const Tree result = apply(ZUVXMLUTILSObject_getFirstChild(tree.get()));
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(
        toText(result),
        inLibrary(
            "<?zuv-linenumber 3?><distributed_logger><level>FATAL</level></distributed_logger>"
            "<?zuv-linenumber END-OF-XML-FRAGMENT?>"));
}

TEST_F(QosStylesheet, takesFromADocumentItsVariablesTypesAndLibrariesInThisOrderWithTheirLines)
{
    EXPECT_EQ(resultOf("<dds version='7.7.0' x='1'>\n<qos_library name='a'><qos_profile "
                       "name='p'/></qos_library>\n"
                       "<types/>\n<brel_service name='s'/><plugin_library name='l'/>\n"
                       "<configuration_variables/>\n<qos_library name='b'/>\n\n<types><struct "
                       "name='S'/></types>"
                       "</dds>"),
              "<dds version=\"7.7.0\" x=\"1\">"
              "<?zuv-linenumber 5?><configuration_variables/><?zuv-linenumber END-OF-XML-FRAGMENT?>"
              "<?zuv-linenumber 3?><types/><?zuv-linenumber END-OF-XML-FRAGMENT?>"
              "<?zuv-linenumber 8?><types><struct name=\"S\"/></types>"
              "<?zuv-linenumber END-OF-XML-FRAGMENT?>"
              "<?zuv-linenumber 2?><qos_library name=\"a\"><qos_profile name=\"p\"/></qos_library>"
              "<?zuv-linenumber END-OF-XML-FRAGMENT?>"
              "<?zuv-linenumber 6?><qos_library name=\"b\"/><?zuv-linenumber END-OF-XML-FRAGMENT?>"
              "<qos_library name=\"#zuv.brel_service.qos_library\"/></dds>");
    EXPECT_EQ(resultOf("<dds/>"), inLibrary(""));
}

TEST_F(QosStylesheet, leavesWhatItReadsAsItIs)
{
    const Tree tree = parse("<s><datareader_qos><history/></datareader_qos></s>");
    const std::string before = toText(tree);
    EXPECT_NE(apply(ZUVXMLUTILSObject_getFirstChild(tree.get()), "T"), nullptr);
    EXPECT_EQ(toText(tree), before);
}

TEST_F(QosStylesheet, stopsAtAnyOtherElement)
{
    const struct {
        const char *document;
        const char *reason;
    } cases[] = {
        {"<topic_qos/>", "Error at line1: Unexpected root element with tag=topic_qos"},
        {"\n\n<types/>", "Error at line3: Unexpected root element with tag=types"},
        {"<qos_library name='l'/>", "Error at line1: Unexpected root element with tag=qos_library"},
        {"<DDS/>", "Error at line1: Unexpected root element with tag=DDS"},
    };
    for (const auto &[document, reason] : cases) {
        EXPECT_EQ(resultOf(document), "refused");
        EXPECT_NE(onlyLine().find(reason), std::string::npos) << document;
    }
}

} // namespace
} // namespace zuv_test
