// The QoS, the logger's options and the types that a configuration holds.
#include <algorithm>
#include <cstdio>

#include "ConfigTest.h"
#include "SideTree.h"
#include "config/XmlQos.h"
#include "config/XmlSupport.hpp"
#include "platform/typesys/String.h"
#include "platform/xmlutils/Utils.h"

namespace
{

using zuv_test::at;
using zuv_test::ConfigTest;
using zuv_test::load;
using zuv_test::Tree;

// The parser reads a document that holds `libraries`, and a port with `content`.
class ConfigQos : public ConfigTest
{
protected:
    ConfigQos()
    {
        EXPECT_EQ(DDS_DataReaderQos_initialize(&readerQos_), DDS_RETCODE_OK);
        EXPECT_EQ(DDS_PublisherQos_initialize(&publisherQos_), DDS_RETCODE_OK);
        EXPECT_EQ(DDS_DomainParticipantQos_initialize(&participantQos_), DDS_RETCODE_OK);
    }
    void TearDown() override
    {
        DDS_DataReaderQos_finalize(&readerQos_);
        DDS_PublisherQos_finalize(&publisherQos_);
        DDS_DomainParticipantQos_finalize(&participantQos_);
        ConfigTest::TearDown();
    }

    void read(const std::string &content, const std::string &libraries = "")
    {
        makeParser(unchecked);
        ASSERT_EQ(load(parser, "<dds>" + libraries + "<port name='p'>" + content + "</port></dds>"),
                  1);
        port_ = at(parser, "::p");
        ASSERT_NE(port_, nullptr);
        treeBefore_ = sideTree();
        documentBefore_ = zuv_test::saved(parser);
    }
    ZUVXMLUTILSObject *child(const char *tag) const
    {
        return ZUVXMLUTILSObject_getFirstChildWithTag(port_, tag);
    }

    std::string sideTree() const { return zuv_test::describe(*parser->_xmlDdsQosRoot); }
    void expectEverythingIsAsBefore() const
    {
        EXPECT_EQ(sideTree(), treeBefore_);
        EXPECT_EQ(zuv_test::saved(parser), documentBefore_);
    }

    static std::string address(const void *object)
    {
        char text[32];
        std::snprintf(text, sizeof(text), "%p", object);
        return text;
    }

    static constexpr const char *kLibrary =
        "<qos_library name='l'><qos_profile name='base'>"
        "<datareader_qos topic_filter='Square'><history><depth>4</depth></history></datareader_qos>"
        "<datareader_qos><history><depth>5</depth></history></datareader_qos>"
        "</qos_profile></qos_library>";

    ZUVXMLUTILSObject *port_ = nullptr;
    DDS_DataReaderQos readerQos_ = {};
    DDS_PublisherQos publisherQos_ = {};
    DDS_DomainParticipantQos participantQos_ = {};

private:
    std::string treeBefore_;
    std::string documentBefore_;
};

TEST_F(ConfigQos, isUntouchedWithoutAnElement)
{
    read("");
    readerQos_.history.depth = 77;
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, "Square"), 1);
    EXPECT_EQ(readerQos_.history.depth, 77);
    expectEverythingIsAsBefore();
}

TEST_F(ConfigQos, comesFromTheElementItsBaseAndTheDefaults)
{
    read("<datareader_qos base_name='l::base'><deadline><period><sec>3</sec></period></deadline>"
         "</datareader_qos>",
         kLibrary);
    readerQos_.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS; // replaced
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, "Square"), 1);
    EXPECT_EQ(readerQos_.deadline.period.sec, 3);
    EXPECT_EQ(readerQos_.history.depth, 4);
    EXPECT_EQ(readerQos_.reliability.kind, DDS_BEST_EFFORT_RELIABILITY_QOS);
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, "Circle"), 1);
    EXPECT_EQ(readerQos_.history.depth, 5);
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, nullptr), 1);
    EXPECT_EQ(readerQos_.history.depth, 5);
    expectEverythingIsAsBefore();
}

TEST_F(ConfigQos, keepsATopicFilterOfItsOwn)
{
    read("<datareader_qos base_name='l::base' topic_filter='Square'/>", kLibrary);
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, "Circle"), 1);
    EXPECT_EQ(readerQos_.history.depth, 4);
    expectEverythingIsAsBefore();
}

TEST_F(ConfigQos, takesTheFirstParticipantQos)
{
    const std::string name = "<participant_name><name>";
    const std::string end = "</name></participant_name>";
    read("<domain_participant_qos>" + name + "new" + end + "</domain_participant_qos>" +
         "<participant_qos>" + name + "old" + end + "</participant_qos>");
    EXPECT_EQ(BRELCfgFileParser_getParticipantQos(&participantQos_, port_), 1);
    EXPECT_STREQ(participantQos_.participant_name.name, "new");
    parser.reset();
    read("<participant_qos>" + name + "old" + end + "</participant_qos>" +
         "<domain_participant_qos>" + name + "new" + end + "</domain_participant_qos>");
    EXPECT_EQ(BRELCfgFileParser_getParticipantQos(&participantQos_, port_), 1);
    EXPECT_STREQ(participantQos_.participant_name.name, "old");
}

TEST_F(ConfigQos, keepsWhatALiveOneHas)
{
    read("<publisher_qos><presentation><ordered_access>true</ordered_access></presentation>"
         "</publisher_qos>");
    DDS_PublisherQos live;
    ASSERT_EQ(DDS_PublisherQos_initialize(&live), DDS_RETCODE_OK);
    live.presentation.coherent_access = DDS_BOOLEAN_TRUE;
    live.presentation.access_scope = DDS_TOPIC_PRESENTATION_QOS;
    DDS_StringSeq_set_length(&live.partition.name, 1);
    DDS_String_replace(DDS_StringSeq_get_reference(&live.partition.name, 0), "live");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(child("publisher_qos"), &live), 1);

    EXPECT_EQ(BRELCfgFileParser_getPublisherQos(&publisherQos_, port_), 1);
    EXPECT_TRUE(publisherQos_.presentation.ordered_access);
    EXPECT_TRUE(publisherQos_.presentation.coherent_access);
    EXPECT_EQ(publisherQos_.presentation.access_scope, DDS_TOPIC_PRESENTATION_QOS);
    ASSERT_EQ(DDS_StringSeq_get_length(&publisherQos_.partition.name), 1);
    EXPECT_STREQ(DDS_StringSeq_get(&publisherQos_.partition.name, 0), "live");
    EXPECT_FALSE(live.presentation.ordered_access) << "the live one is as it was";
    EXPECT_EQ(ZUVXMLUTILSObject_getAttribute(child("publisher_qos"), "base_name"), nullptr);
    expectEverythingIsAsBefore();
    DDS_PublisherQos_finalize(&live);
}

TEST_F(ConfigQos, keepsWhatALiveOneHasWhateverTheFilters)
{
    DDS_DataReaderQos live;
    ASSERT_EQ(DDS_DataReaderQos_initialize(&live), DDS_RETCODE_OK);
    live.history.depth = 9;
    for (const char *attribute : {"", "topic_filter='Sq*, C'", "topic_filter='Circle'",
                                  "base_name='BuiltinProfiles::AllSamples'"}) {
        parser.reset();
        read("<datareader_qos " + std::string(attribute) + "/>");
        ASSERT_EQ(ZUVXMLUTILSObject_setUserData(child("datareader_qos"), &live), 1);
        EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, "Square"), 1);
        EXPECT_EQ(readerQos_.history.depth, 9) << attribute;
        expectEverythingIsAsBefore();
    }
    DDS_DataReaderQos_finalize(&live);
}

TEST_F(ConfigQos, isAsItWasAfterAFailure)
{
    read("<datareader_qos base_name='l::nobody'/>");
    readerQos_.history.depth = 77;
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, "Square"), 0);
    EXPECT_EQ(readerQos_.history.depth, 77);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  "!read text, line 1: datareader_qos ::#zuv.brel_service.qos_library::" +
                      address(child("datareader_qos")) + ": the base 'l::nobody' is not there",
                  "!parse QoS configuration", "!parse XML snippet string"}));
    expectEverythingIsAsBefore();
}

// Five levels of base names in two files, each with a topic filter; the port is below them.
TEST_F(ConfigQos, inheritsThroughFiveLevelsInTwoFilesWithFilters)
{
    const auto profile = [](int level, const std::string &filter, const std::string &policy) {
        const std::string base = level > 1
                                     ? " base_name='" + std::string(level == 4 ? "first::" : "") +
                                           "p" + std::to_string(level - 1) + "'"
                                     : "";
        return "<qos_profile name='p" + std::to_string(level) + "'" + base +
               "><datareader_qos topic_filter='" + filter + "'>" + policy +
               "</datareader_qos></qos_profile>";
    };
    const auto seconds = [](const std::string &policy, const std::string &field, int level) {
        return "<" + policy + "><" + field + "><sec>" + std::to_string(level) + "</sec></" + field +
               "></" + policy + ">";
    };
    makeParser(checked);
    const zuv_test::Folder folder;
    const std::string first = folder.write(
        "first.xml", "<dds><qos_library name='first'>" +
                         profile(1, "*",
                                 seconds("time_based_filter", "minimum_separation", 1) +
                                     seconds("deadline", "period", 1)) +
                         profile(2, "Square*, Circle", seconds("deadline", "period", 2)) +
                         profile(3, "Square*", seconds("latency_budget", "duration", 3)) +
                         "</qos_library></dds>");
    const std::string second = folder.write(
        "second.xml", "<dds><qos_library name='second'>" +
                          profile(4, "SquareRed, SquareB*", "<history><depth>4</depth></history>") +
                          profile(5, "SquareRed", seconds("liveliness", "lease_duration", 5)) +
                          "</qos_library></dds>");
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), first.c_str()), 1);
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), second.c_str()), 1);
    const Tree port = zuv_test::parse("<port><datareader_qos base_name='second::p5'/></port>");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(port.get(), parser.get()), 1);
    const auto read = [&](const char *topic) {
        EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port.get(), topic), 1);
    };
    read("SquareRed");
    EXPECT_EQ(readerQos_.liveliness.lease_duration.sec, 5);
    EXPECT_EQ(readerQos_.history.depth, 4);
    EXPECT_EQ(readerQos_.latency_budget.duration.sec, 3);
    EXPECT_EQ(readerQos_.deadline.period.sec, 2);
    EXPECT_EQ(readerQos_.time_based_filter.minimum_separation.sec, 1);
    // Levels whose filter does not cover the topic are passed by.
    read("SquareBlue");
    EXPECT_EQ(readerQos_.liveliness.lease_duration.sec, DDS_DURATION_INFINITE_SEC);
    EXPECT_EQ(readerQos_.history.depth, 4);
    EXPECT_EQ(readerQos_.latency_budget.duration.sec, 3);
    read("Circle");
    EXPECT_EQ(readerQos_.history.depth, 1);
    EXPECT_EQ(readerQos_.latency_budget.duration.sec, 0);
    EXPECT_EQ(readerQos_.deadline.period.sec, 2);
    read("Triangle");
    EXPECT_EQ(readerQos_.deadline.period.sec, 1);
    EXPECT_EQ(readerQos_.time_based_filter.minimum_separation.sec, 1);
}

TEST_F(ConfigQos, isRefusedWithItsPlaceAndThePathOfACircle)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, "<dds/>"), 1);
    const std::string before = sideTree();
    const zuv_test::Folder folder;
    const std::string path = folder.write("circle.xml", "<dds>\n"
                                                        "<types/>\n\n"
                                                        "<qos_library name='l'>\n"
                                                        "<!-- two\nlines -->\n"
                                                        "  <qos_profile name='a' base_name='b'/>\n"
                                                        "  <qos_profile name='b' base_name='a'/>\n"
                                                        "</qos_library>\n"
                                                        "</dds>\n");
    EXPECT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), path.c_str()), 0);
    EXPECT_EQ(log.texts().at(0), "!read " + path +
                                     ", line 7: qos_profile ::l::a: its bases go round in a "
                                     "circle: ::l::a -> ::l::b -> ::l::a");
    EXPECT_EQ(log.texts().at(1), "!parse QoS configuration");
    EXPECT_EQ(log.texts().at(2), "!generate QoS");
    EXPECT_EQ(sideTree(), before);
}

// Whatever stands between them, the text that the reader gets has each element on its line.
TEST_F(ConfigQos, isRefusedWithTheLineOfWhatIsWrong)
{
    makeParser(unchecked);
    const std::string good = "<dds>\n\n<configuration_variables>\n<value/>\n"
                             "</configuration_variables><qos_library name='k'/>"
                             "<qos_library name='l'> <!-- a\ncomment --> <qos_profile\n name='p'\n>"
                             "\n\n<datareader_qos\n>\n<property><value><element><name>n</name>"
                             "<value>several\nlines</value></element></value></property>\n"
                             "<history>\n<depth>";
    for (const char *rest : {"</depth></history></datareader_qos></qos_profile></qos_library>\n",
                             "</depth>\n</history></datareader_qos></qos_profile></qos_library>"}) {
        log.clear();
        EXPECT_EQ(load(parser, good + "x" + rest + "</dds>"), 0);
        const std::string lines = std::to_string(1 + std::count(good.begin(), good.end(), '\n'));
        EXPECT_EQ(log.texts().at(0),
                  "!read text, line " + lines +
                      ": datareader_qos ::l::p: history.depth: 'x' is no number");
        ASSERT_EQ(load(parser, "<dds/>"), 1); // from here on, documents are merged
    }
}

TEST_F(ConfigQos, isRefusedWithTheFileOfThePort)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, "<dds/>"), 1);
    const zuv_test::Folder folder;
    const std::string path = folder.write(
        "port.xml", "<dds>\n<port name='p'>\n<datareader_qos base_name='nobody'/>\n"
                    "<distributed_logger>\n<level>SOME</level></distributed_logger></port></dds>");
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), path.c_str()), 1);
    port_ = at(parser, "::p");
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port_, nullptr), 0);
    EXPECT_TRUE(log.texts().at(0).starts_with("!read " + path + ", line 3: datareader_qos "))
        << log.texts().at(0);
    log.clear();
    ZUV_DL_Options options = {};
    EXPECT_EQ(BRELCfgFileParser_getDistLogOptions(&options, child("distributed_logger")), 0);
    EXPECT_EQ(
        log.texts().at(0),
        "!parse line 4: element <distributed_logger>: level: 'SOME' is none of the names that "
        "it may have");
    EXPECT_TRUE(log.texts().at(1).starts_with("!read " + path + ", line 4: distributed_logger "))
        << log.texts().at(1);
}

TEST_F(ConfigQos, isRefusedWithItsOwnFileOfSeveral)
{
    makeParser(unchecked);
    const zuv_test::Folder folder;
    const std::string good = folder.write("good.xml", "<dds><qos_library name='l'/></dds>");
    const std::string bad =
        folder.write("bad.xml", "<dds>\n<qos_library name='l'><x_qos/>\n<datareader_qos>"
                                "<histroy/></datareader_qos></qos_library></dds>");
    EXPECT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), (good + ";" + bad).c_str()), 0);
    EXPECT_TRUE(log.texts().at(0).starts_with("!read " + bad + ", line 3: datareader_qos "))
        << log.texts().at(0);
}

// A library has the variables that a service's own settings and earlier documents define, in whatever document it is.
TEST_F(ConfigQos, hasTheVariablesOfTheServiceInEachDocument)
{
    ASSERT_TRUE(ZUV_BrelServiceProperties_assert(&unchecked.user_environment, "DEPTH", "7"));
    makeParser(unchecked);
    const auto library = [](const char *name, const char *depth) {
        return "<qos_library name='" + std::string(name) +
               "'><qos_profile name='p'><datareader_qos><history><depth>" + depth +
               "</depth></history></datareader_qos></qos_profile></qos_library>";
    };
    const auto define = [](const char *name, const char *value) {
        return "<configuration_variables><element><name>" + std::string(name) + "</name><value>" +
               value + "</value></element></configuration_variables>";
    };
    ASSERT_EQ(load(parser, "<dds>" + define("DEPTH", "1") + define("later", "2") +
                               library("a", "$(DEPTH)") + "</dds>"),
              1);
    ASSERT_EQ(load(parser, "<dds>" + library("b", "$(DEPTH)") + library("c", "$(LATER)") +
                               define("later", "3") + library("d", "$(LATER)") + "</dds>"),
              1)
        << testing::PrintToString(log.texts());
    const auto depthOf = [&](const std::string &base) {
        const Tree port =
            zuv_test::parse("<port><datareader_qos base_name='" + base + "::p'/></port>");
        EXPECT_EQ(ZUVXMLUTILSObject_setUserData(port.get(), parser.get()), 1);
        EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port.get(), nullptr), 1);
        return readerQos_.history.depth;
    };
    EXPECT_EQ(depthOf("a"), 7);
    EXPECT_EQ(depthOf("b"), 7);
    EXPECT_EQ(depthOf("c"), 2);
    EXPECT_EQ(depthOf("d"), 3);
}

// The live element has then what the update says, as any other attribute.
TEST_F(ConfigQos, ofAnUpdateKeepsItsOwnBaseName)
{
    DDS_PublisherQos live;
    ASSERT_EQ(DDS_PublisherQos_initialize(&live), DDS_RETCODE_OK);
    for (const char *attributes :
         {"base_name='l::base' name='n'", "name='n' base_name='l::base'"}) {
        parser.reset();
        read("<publisher_qos " + std::string(attributes) + "/>", kLibrary);
        ASSERT_EQ(ZUVXMLUTILSObject_setUserData(child("publisher_qos"), &live), 1);
        const std::string before = zuv_test::toText(port_);
        EXPECT_EQ(BRELCfgFileParser_getPublisherQos(&publisherQos_, port_), 1);
        EXPECT_EQ(zuv_test::toText(port_), before);
        const Tree target = zuv_test::parse("<port><publisher_qos/></port>");
        ASSERT_EQ(ZUVXMLUTILSUtils_updateObject(target.get(), port_), 1);
        EXPECT_NE(zuv_test::toText(target).find("base_name=\"l::base\""), std::string::npos)
            << zuv_test::toText(target);
    }
    DDS_PublisherQos_finalize(&live);
}

TEST_F(ConfigQos, leavesNothingBehindOfAnotherElement)
{
    read("<datareader_qos/><distributed_logger/><publisher_qos/>");
    ZUV_DL_Options options = {};
    EXPECT_EQ(BRELCfgFileParser_getDistLogOptions(&options, child("datareader_qos")), 0);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"!find element 'datareader_qos'"});
    expectEverythingIsAsBefore();
    const auto get = [](ZUVXMLObject *) -> void * { return nullptr; };
    const auto copy = [](void *, const void *) { return DDS_RETCODE_OK; };
    EXPECT_EQ(
        BRELCfgFileParser_getEntityQos(&options, child("distributed_logger"), nullptr, get, copy),
        0);
    EXPECT_EQ(BRELCfgFileParser_getEntityQos(&options, child("publisher_qos"), nullptr, get, copy),
              0);
    expectEverythingIsAsBefore();
}

TEST_F(ConfigQos, needsNoDocument)
{
    makeParser(unchecked);
    const std::string before = sideTree();
    const Tree port = zuv_test::parse(
        "<port><datareader_qos><history><depth>3</depth></history></datareader_qos></port>");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(port.get(), parser.get()), 1);
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(&readerQos_, port.get(), "T"), 1);
    EXPECT_EQ(readerQos_.history.depth, 3);
    EXPECT_EQ(sideTree(), before);
}

TEST_F(ConfigQos, notesWhatWasNotGenerated)
{
    read("<datareader_qos/>");
    masks.set(zuv_test::kWarnings);
    EXPECT_EQ(BRELCfgFileParser_lookUpLibraryNativeObject(child("datareader_qos")), nullptr);
    EXPECT_EQ(log.texts(), std::vector<std::string>{
                               "!find generated QoS profile for XML object; profile name = " +
                               address(child("datareader_qos"))});
    log.clear();
    parser.reset();
    makeParser(unchecked);
    const Tree element = zuv_test::parse("<datareader_qos/>");
    EXPECT_EQ(BRELCfgFileParser_lookUpLibraryNativeObject(element.get()), nullptr);
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(element.get(), parser.get()), 1);
    EXPECT_EQ(BRELCfgFileParser_lookUpLibraryNativeObject(element.get()), nullptr);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{"!Invalid XML DDS QoS Root (Core Parser)",
                                        "!find generated QoS Library for XML object"}));
}

TEST_F(ConfigQos, givesTheOptionsOfTheDistributedLogger)
{
    read("<distributed_logger><level>FATAL</level></distributed_logger>");
    ZUV_DL_Options options = {};
    EXPECT_EQ(BRELCfgFileParser_getDistLogOptions(&options, child("distributed_logger")), 1);
    EXPECT_EQ(options.level, ZUV_DL_FATAL_LEVEL);
    EXPECT_EQ(options.queueSize, 128);
    expectEverythingIsAsBefore();

    parser.reset();
    log.clear();
    read("<distributed_logger><level>SOME</level></distributed_logger>");
    EXPECT_EQ(BRELCfgFileParser_getDistLogOptions(&options, child("distributed_logger")), 0);
    EXPECT_EQ(options.level, ZUV_DL_FATAL_LEVEL);
    EXPECT_EQ(log.texts().size(), 4U) << testing::PrintToString(log.texts());
    expectEverythingIsAsBefore();
}

TEST_F(ConfigQos, findsTypesInTheFirstOfSeveralElements)
{
    read("", "<types><module name='m'><struct name='s'><member name='x' type='int32'/></struct>"
             "</module><const name='c' type='int32' value='1'/></types>"
             "<types><struct name='t'><member name='x' type='int32'/></struct></types>");
    const DDS_TypeCode *const type = BRELCfgFileParser_lookUpTypeCode(parser.get(), "m::s");
    ASSERT_NE(type, nullptr);
    EXPECT_STREQ(DDS_TypeCode_name(type, nullptr), "m::s");
    for (const char *none : {"t", "m", "c", "nobody", "m::nobody"}) {
        EXPECT_EQ(BRELCfgFileParser_lookUpTypeCode(parser.get(), none), nullptr) << none;
    }
    EXPECT_TRUE(log.isEmpty());
    parser.reset();
    read("");
    EXPECT_EQ(BRELCfgFileParser_lookUpTypeCode(parser.get(), "m::s"), nullptr);
}

TEST_F(ConfigQos, reportsWhatIsMissing)
{
    read("");
    EXPECT_EQ(BRELCfgFileParser_getDataReaderQos(nullptr, port_, nullptr), 0);
    EXPECT_EQ(BRELCfgFileParser_getPublisherQos(&publisherQos_, nullptr), 0);
    EXPECT_EQ(BRELCfgFileParser_getDistLogOptions(nullptr, port_), 0);
    EXPECT_EQ(BRELCfgFileParser_lookUpTypeCode(nullptr, "t"), nullptr);
    EXPECT_EQ(log.lines().size(), 4U);
}

} // namespace
