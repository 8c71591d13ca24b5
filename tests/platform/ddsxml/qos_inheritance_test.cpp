// What a QoS inherits: by base names, across libraries and documents, and by topic filters.
#include <cstdlib>

#include "QosTree.h"
#include "platform/ddsxml/QosInheritance.hpp"
#include "support/FaultSweep.h"

namespace
{

using zuv_test::QosTree;

class QosInheritance : public QosTree
{
protected:
    int depthOf(const std::string &path) const
    {
        const DDS_DataReaderQos *const qos = readerQos(path);
        return qos == nullptr ? -1 : qos->history.depth;
    }
};

TEST_F(QosInheritance, keepsWhatIsNotMentioned)
{
    ASSERT_TRUE(add(library(
        "l", profile("name='base'",
                     "<datareader_qos><history><kind>KEEP_ALL_HISTORY_QOS</kind><depth>3</depth>"
                     "</history><deadline><period><sec>5</sec></period></deadline>"
                     "</datareader_qos>") +
                 profile("name='derived' base_name='l::base'", reader("", 7)))));
    const DDS_DataReaderQos *const qos = readerQos("l::derived");
    ASSERT_NE(qos, nullptr);
    EXPECT_EQ(qos->history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(qos->history.depth, 7);
    EXPECT_EQ(qos->deadline.period.sec, 5);
    EXPECT_EQ(qos->reliability.kind, DDS_BEST_EFFORT_RELIABILITY_QOS) << "the default";
    EXPECT_EQ(depthOf("l::base"), 3);
}

TEST_F(QosInheritance, replacesListsAndMergesProperties)
{
    const auto property = [](const std::string &name, const std::string &value) {
        return "<element><name>" + name + "</name><value>" + value + "</value></element>";
    };
    const auto names = [](const std::string &list) {
        return "<publisher_qos><partition><name>" + list + "</name></partition></publisher_qos>";
    };
    ASSERT_TRUE(add(library(
        "l",
        profile("name='base'", "<datareader_qos><property><value>" + property("a", "1") +
                                   property("b", "1") + "</value></property></datareader_qos>" +
                                   names("<element>x</element><element>y</element>")) +
            profile("name='derived' base_name='l::base'",
                    "<datareader_qos><property><value>" + property("b", "2") + property("c", "2") +
                        "</value></property></datareader_qos>" + names("<element>z</element>")))));
    const DDS_PropertyQosPolicy &properties = readerQos("l::derived")->property;
    EXPECT_EQ(DDS_PropertySeq_get_length(&properties.value), 3);
    EXPECT_STREQ(DDS_PropertyQosPolicyHelper_lookup_property(&properties, "a")->value, "1");
    EXPECT_STREQ(DDS_PropertyQosPolicyHelper_lookup_property(&properties, "b")->value, "2");
    ZUVXMLObject *const publisher =
        ZUVXMLObject_getFirstChildWithTag(element("l::derived"), "publisher_qos");
    const DDS_StringSeq &partition = DDS_XMLPublisherQos_get_dds_qos(publisher)->partition.name;
    ASSERT_EQ(DDS_StringSeq_get_length(&partition), 1);
    EXPECT_STREQ(DDS_StringSeq_get(&partition, 0), "z");
}

TEST_F(QosInheritance, findsABaseThatComesLater)
{
    ASSERT_TRUE(add(
        library("a", profile("name='derived' base_name='b::base'", reader("", 7))) +
        library("b", profile("name='base'", "<datareader_qos><history><kind>KEEP_ALL_HISTORY_QOS"
                                            "</kind></history></datareader_qos>"))));
    EXPECT_EQ(readerQos("a::derived")->history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(depthOf("a::derived"), 7);
}

TEST_F(QosInheritance, looksInTheOwnLibraryFirst)
{
    ASSERT_TRUE(
        add(library("l", profile("name='base'", reader("", 3)) + reader("name='bare'", 4))));
    ASSERT_TRUE(add(library("m", profile("name='base'", reader("", 5)))));
    ASSERT_TRUE(
        add(library("l", profile("name='near' base_name='base'", "<datareader_qos/>") +
                             profile("name='far' base_name='::m::base'", "<datareader_qos/>") +
                             profile("name='element'", "<datareader_qos base_name='bare'/>"))));
    EXPECT_EQ(depthOf("l::near"), 3);
    EXPECT_EQ(depthOf("l::far"), 5);
    EXPECT_EQ(depthOf("l::element"), 4);
}

TEST_F(QosInheritance, prefersTheBaseOfTheElement)
{
    ASSERT_TRUE(add(library(
        "l", profile("name='one'", reader("", 3)) + profile("name='two'", reader("", 4)) +
                 profile("name='derived' base_name='one'", "<datareader_qos base_name='two'/>"))));
    EXPECT_EQ(depthOf("l::derived"), 4);
}

TEST_F(QosInheritance, passesProfilesThatHaveNoQosOfThatKind)
{
    ASSERT_TRUE(
        add(library("l", profile("name='one'", reader("", 3)) +
                             profile("name='two' base_name='one'", "<publisher_qos/>") +
                             profile("name='three' base_name='two'", "<datareader_qos/>"))));
    EXPECT_EQ(depthOf("l::three"), 3);
}

// Each level changes one policy for some topics. The last one is as it is generated for the element of a port.
TEST_F(QosInheritance, goesThroughFiveLevelsInTwoDocumentsWithFilters)
{
    const auto policy = [](const std::string &filter, const std::string &text) {
        return "<datareader_qos topic_filter='" + filter + "'>" + text + "</datareader_qos>";
    };
    const auto seconds = [](const std::string &tags, int sec) {
        const std::size_t dot = tags.find('.');
        const std::string outer = tags.substr(0, dot), inner = tags.substr(dot + 1);
        return "<" + outer + "><" + inner + "><sec>" + std::to_string(sec) + "</sec></" + inner +
               "></" + outer + ">";
    };
    ASSERT_TRUE(add(library(
        "first",
        profile("name='one'",
                policy("*", "<history><depth>1</depth></history>" + seconds("deadline.period", 1) +
                                seconds("latency_budget.duration", 1) +
                                seconds("liveliness.lease_duration", 1) +
                                seconds("time_based_filter.minimum_separation", 1))) +
            profile("name='two' base_name='one'",
                    policy("Square, Circle*", seconds("deadline.period", 2)) +
                        policy("*", seconds("deadline.period", 20))))));
    ASSERT_TRUE(add(library(
        "second", profile("name='three' base_name='first::two'",
                          policy("Circle*", seconds("latency_budget.duration", 3)) +
                              policy("S*", seconds("latency_budget.duration", 30))) +
                      profile("name='four' base_name='three'",
                              policy("Circle[0-9]", seconds("liveliness.lease_duration", 4)) +
                                  policy("*", seconds("liveliness.lease_duration", 40))))));
    ASSERT_TRUE(add(library(
        "generated",
        profile("name='circle' base_name='second::four'", reader("topic_filter='Circle7'", 5)) +
            profile("name='square' base_name='second::four'", reader("topic_filter='Square'", 5)) +
            profile("name='triangle' base_name='second::four'",
                    reader("topic_filter='Triangle'", 5)))));

    const DDS_DataReaderQos *const circle = readerQos("generated::circle");
    EXPECT_EQ(circle->history.depth, 5);
    EXPECT_EQ(circle->liveliness.lease_duration.sec, 4);
    EXPECT_EQ(circle->latency_budget.duration.sec, 3);
    EXPECT_EQ(circle->deadline.period.sec, 2);
    EXPECT_EQ(circle->time_based_filter.minimum_separation.sec, 1);

    // The filter "*" of the fourth level is not covered by those of the third, but by the last one of the second.
    const DDS_DataReaderQos *const square = readerQos("generated::square");
    EXPECT_EQ(square->history.depth, 5);
    EXPECT_EQ(square->liveliness.lease_duration.sec, 40);
    EXPECT_EQ(square->latency_budget.duration.sec, 1);
    EXPECT_EQ(square->deadline.period.sec, 20);

    const DDS_DataReaderQos *const triangle = readerQos("generated::triangle");
    EXPECT_EQ(triangle->liveliness.lease_duration.sec, 40);
    EXPECT_EQ(triangle->deadline.period.sec, 20);
    EXPECT_EQ(triangle->time_based_filter.minimum_separation.sec, 1);
}

TEST_F(QosInheritance, takesTheFirstQosWhoseFilterCoversTheOwnOne)
{
    ASSERT_TRUE(add(library(
        "l", profile("name='base'", reader("topic_filter='A'", 2) +
                                        reader("topic_filter='A*, B'", 3) + reader("", 4)) +
                 profile("name='a' base_name='base'", "<datareader_qos topic_filter='A'/>") +
                 profile("name='ax' base_name='base'", "<datareader_qos topic_filter='AX'/>") +
                 profile("name='ab' base_name='base'", "<datareader_qos topic_filter='A?,B'/>") +
                 profile("name='c' base_name='base'", "<datareader_qos topic_filter='C'/>") +
                 profile("name='all' base_name='base'", "<datareader_qos/>"))));
    EXPECT_EQ(depthOf("l::a"), 2);
    EXPECT_EQ(depthOf("l::ax"), 3);
    EXPECT_EQ(depthOf("l::ab"), 3);
    EXPECT_EQ(depthOf("l::c"), 4);
    EXPECT_EQ(depthOf("l::all"), 4);
}

TEST(TopicFilters, coverOthersWhenTheyAdmitAllTheirTopics)
{
    using zuv::ddsxml::coversFilter;
    for (const char *narrower : {"", "a", "a*", "*", "a?", "[ab]c", "a,b,c"}) {
        EXPECT_TRUE(coversFilter("*", narrower)) << narrower;
        EXPECT_TRUE(coversFilter(narrower, narrower)) << narrower;
    }
    EXPECT_TRUE(coversFilter("a*", "ab*,ac"));
    EXPECT_TRUE(coversFilter("a, b*", "b1, a"));
    EXPECT_TRUE(coversFilter("a?", "ab"));
    EXPECT_FALSE(coversFilter("a?", "a*"));
    EXPECT_FALSE(coversFilter("[!x]", "*"));
    EXPECT_FALSE(coversFilter("a*", "a*,b"));
    EXPECT_FALSE(coversFilter("ab*", "a*"));
    EXPECT_FALSE(coversFilter("", "a"));
    EXPECT_FALSE(coversFilter("\\*", "*"));
}

TEST_F(QosInheritance, isTakenFromARecordThatWasChanged)
{
    ASSERT_TRUE(add(library("l", profile("name='live'", "<datareader_qos name='qos_update'/>"))));
    ZUVXMLObject *const live = element("l::live");
    DDS_XMLDataReaderQos_get_dds_qos(ZUVXMLObject_getFirstChild(live))->history.depth = 9;
    ASSERT_TRUE(add(library(
        "l", profile("name='new'", "<datareader_qos base_name='" +
                                       std::string(DDS_XMLObject_get_fully_qualified_name(live)) +
                                       "'/>"))));
    EXPECT_EQ(depthOf("l::new"), 9);
}

TEST_F(QosInheritance, refusesCirclesWithTheirPath)
{
    EXPECT_EQ(refusal(library("l", profile("name='a' base_name='b'", "") +
                                       profile("name='b' base_name='c'", "") +
                                       profile("name='c' base_name='a'", ""))),
              "!read text, line 1: qos_profile ::l::a: its bases go round in a circle: "
              "::l::a -> ::l::b -> ::l::c -> ::l::a");
    EXPECT_EQ(
        refusal(library("l", profile("name='a' base_name='a'", ""))),
        "!read text, line 1: qos_profile ::l::a: its bases go round in a circle: ::l::a -> ::l::a");
    EXPECT_EQ(refusal(library("l", profile("name='in' base_name='a'", "") +
                                       profile("name='a' base_name='b'", "") +
                                       profile("name='b' base_name='a'", ""))),
              "!read text, line 1: qos_profile ::l::a: its bases go round in a circle: "
              "::l::a -> ::l::b -> ::l::a");
    EXPECT_EQ(refusal(library("l", "<datareader_qos name='x' base_name='y'/>"
                                   "<datareader_qos name='y' base_name='x'/>")),
              "!read text, line 1: datareader_qos ::l::x: its bases go round in a circle: "
              "::l::x -> ::l::y -> ::l::x");
    EXPECT_EQ(refusal(library("l", profile("name='a'", "<datareader_qos base_name='l::a'/>"))),
              "!read text, line 1: datareader_qos ::l::a: its bases go round in a circle: ::l::a "
              "-> ::l::a");
    EXPECT_EQ(root_, nullptr);
}

TEST_F(QosInheritance, refusesBasesThatAreNotThereOrOfAnotherKind)
{
    EXPECT_EQ(refusal(library("l", profile("name='a' base_name='b'", ""))),
              "!read text, line 1: qos_profile ::l::a: the base 'b' is not there");
    EXPECT_EQ(
        refusal(library("l", "<datareader_qos name='b'/>" + profile("name='a' base_name='b'", ""))),
        "!read text, line 1: qos_profile ::l::a: the base 'b' is no profile");
    EXPECT_EQ(refusal(library("l", "<datawriter_qos name='b'/>" +
                                       profile("name='a'", "<datareader_qos base_name='b'/>"))),
              "!read text, line 1: datareader_qos ::l::a: the base 'b' is neither a profile nor of "
              "this kind");
}

TEST_F(QosInheritance, refusesRowsThatAreTooLong)
{
    std::string profiles = profile("name='p0'", reader("", 3));
    const auto next = [](std::size_t number) {
        return profile("name='p" + std::to_string(number) + "' base_name='p" +
                           std::to_string(number - 1) + "'",
                       "<datareader_qos/>");
    };
    for (std::size_t number = 1; number < zuv::ddsxml::kMaxInheritanceDepth; ++number) {
        profiles = next(number) + profiles; // the last one first
    }
    ASSERT_TRUE(add(library("l", profiles)));
    EXPECT_EQ(depthOf("l::p63"), 3);
    profiles = next(zuv::ddsxml::kMaxInheritanceDepth) + profiles;
    EXPECT_EQ(refusal(library("m", profiles)),
              "!read text, line 1: qos_profile ::m::p64: too many bases in a row");
}

TEST_F(QosInheritance, leavesTheTreeAsItWasAfterARefusal)
{
    ASSERT_TRUE(add(library("l", profile("name='a'", reader("", 3)))));
    EXPECT_NE(refusal(library("l", profile("name='b'", reader("", 4)) +
                                       profile("name='c' base_name='nobody'", ""))),
              "");
    EXPECT_EQ(element("l::b"), nullptr);
    EXPECT_EQ(depthOf("l::a"), 3);
}

TEST_F(QosInheritance, survivesAWantOfMemory)
{
    ASSERT_TRUE(add(library("l", profile("name='base'", reader("", 3)))));
    const std::string document = library(
        "l", profile("name='derived' base_name='base'",
                     "<datareader_qos><user_data><value>AQID</value></user_data></datareader_qos>"
                     "<publisher_qos><partition><name><element>x</element></name></partition>"
                     "</publisher_qos>"));
    for (unsigned count = 1;; ++count) {
        zuv_test::LogCapture log;
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const bool isAdded = add(document);
        const bool wasInjected = ZUVOsapiFault_getInjectedCount() != 0;
        ZUVOsapiFault_disarm();
        if (!wasInjected) {
            EXPECT_TRUE(isAdded);
            break;
        }
        EXPECT_EQ(isAdded, log.isEmpty());
        if (isAdded) { // from the reserve, or a second attempt
            DDS_XMLParser_free_dom(parser_, element("l::derived"));
        } else {
            EXPECT_EQ(element("l::derived"), nullptr);
        }
    }
    EXPECT_EQ(DDS_OctetSeq_get_length(&readerQos("l::derived")->user_data.value), 3);
    EXPECT_EQ(depthOf("l::derived"), 3);
}

TEST_F(QosInheritance, startsFromTheBuiltInProfiles)
{
    ASSERT_EQ(DDS_QosProvider_load_builtin_profilesI(parser_, &root_), 0);
    const auto writerQos = [this](const char *path) {
        return DDS_XMLDataWriterQos_get_dds_qos(
            ZUVXMLObject_getFirstChildWithTag(element(path), "datawriter_qos"));
    };
    DDS_DataWriterQos defaults;
    ASSERT_EQ(DDS_DataWriterQos_initialize(&defaults), DDS_RETCODE_OK);
    EXPECT_TRUE(DDS_DataWriterQos_equals(writerQos("BuiltinProfiles::Default"), &defaults));
    EXPECT_EQ(writerQos("BuiltinProfiles::BestEffort")->reliability.kind,
              DDS_BEST_EFFORT_RELIABILITY_QOS);
    EXPECT_EQ(readerQos("BuiltinProfiles::Reliable")->reliability.kind,
              DDS_RELIABLE_RELIABILITY_QOS);
    for (const char *path : {"BuiltinProfiles::LastValue", "BuiltinProfiles::AllSamples"}) {
        EXPECT_EQ(readerQos(path)->reliability.kind, DDS_RELIABLE_RELIABILITY_QOS) << path;
    }
    EXPECT_EQ(readerQos("BuiltinProfiles::LastValue")->durability.kind,
              DDS_TRANSIENT_LOCAL_DURABILITY_QOS);
    EXPECT_EQ(writerQos("BuiltinProfiles::LastValue")->durability.kind,
              DDS_TRANSIENT_LOCAL_DURABILITY_QOS);
    EXPECT_EQ(writerQos("BuiltinProfiles::AllSamples")->history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(readerQos("BuiltinProfiles::AllSamples")->resource_limits.max_samples, 1000);
    ASSERT_TRUE(add(
        library("l", profile("name='p' base_name='BuiltinProfiles::LastValue'", reader("", 7)))));
    EXPECT_EQ(readerQos("l::p")->durability.kind, DDS_TRANSIENT_LOCAL_DURABILITY_QOS);
}

// -- Variables ---------------------------------------------------------------------------------------------------

class QosVariables : public QosTree
{
protected:
    static std::string variables(const std::string &entries)
    {
        return "<configuration_variables>" + entries + "</configuration_variables>";
    }
    static std::string variable(const std::string &name, const std::string &value)
    {
        return "<element><name>" + name + "</name><value>" + value + "</value></element>";
    }
    static std::string readerOf(const std::string &depth)
    {
        return "<datareader_qos name='q'><history><depth>" + depth +
               "</depth></history></datareader_qos>";
    }
};

TEST_F(QosVariables, comeFromTheDocumentAndFromThoseBefore)
{
    ASSERT_TRUE(add(variables(variable("DEPTH", "3") + variable("OTHER", "$(DEPTH)4")) +
                    library("a", readerOf("$(DEPTH)"))));
    EXPECT_EQ(readerQos("a::q")->history.depth, 3);
    ASSERT_TRUE(add(library("b", readerOf("$(OTHER)"))));
    EXPECT_EQ(readerQos("b::q")->history.depth, 34);
    ASSERT_TRUE(add(library("$(LIBRARY)", readerOf("$(DEPTH)")) +
                    variables("<value>" + variable("LIBRARY", "c") + variable("DEPTH", "5") +
                              variable("DEPTH", "6") + "</value>")));
    EXPECT_EQ(readerQos("c::q")->history.depth, 6) << "the last definition counts";
}

TEST_F(QosVariables, yieldToTheEnvironment)
{
    ASSERT_EQ(setenv("ZUV_TEST_DEPTH", "8", 1), 0);
    EXPECT_TRUE(add(variables(variable("ZUV_TEST_DEPTH", "3")) +
                    library("a", readerOf("$(ZUV_TEST_DEPTH)"))));
    unsetenv("ZUV_TEST_DEPTH");
    EXPECT_EQ(readerQos("a::q")->history.depth, 8);
}

TEST_F(QosVariables, refuseADocumentThatTheyMakeWrong)
{
    EXPECT_EQ(refusal(library("a", readerOf("$(NOBODY)"))),
              "!read text, line 1: datareader_qos ::a::q: history.depth: '$(NOBODY)' is no number");
    EXPECT_NE(refusal(variables(variable("X", "$(X)")) + library("a", readerOf("$(X)"))), "");
    EXPECT_EQ(root_, nullptr);
}

} // namespace
