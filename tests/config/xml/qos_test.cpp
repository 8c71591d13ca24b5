// The QoS, the logger's options and the types that a configuration holds.
#include <cstdio>

#include "ConfigTest.h"
#include "config/XmlQos.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"

namespace
{

using zuv_test::at;
using zuv_test::ConfigTest;
using zuv_test::load;

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

    // Names and tags of all in the tree of QoS libraries.
    std::string sideTree() const { return describe(parser->_xmlDdsQosRoot); }
    static std::string describe(const ZUVXMLObject *object)
    {
        std::string text =
            std::string(ZUVXMLObject_getTagName(object)) + " " + ZUVXMLObject_getName(object) + "(";
        for (const ZUVXMLObject *one = ZUVXMLObject_getFirstChild(object); one != nullptr;
             one = ZUVXMLObject_getNextSibling(one)) {
            text += describe(one);
        }
        return text + ")";
    }
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
              (std::vector<std::string>{"!read datareader_qos ::#zuv.brel_service.qos_library::" +
                                            address(child("datareader_qos")) +
                                            ": the base 'l::nobody' is not there",
                                        "!parse QoS configuration", "!parse XML snippet string"}));
    expectEverythingIsAsBefore();
}

TEST_F(ConfigQos, leavesNothingBehindWhateverFails)
{
    DDS_DataReaderQos live;
    ASSERT_EQ(DDS_DataReaderQos_initialize(&live), DDS_RETCODE_OK);
    live.history.depth = 9;
    read("<datareader_qos><user_data><value>AQID</value></user_data></datareader_qos>", kLibrary);
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(child("datareader_qos"), &live), 1);
    int failureCount = 0;
    for (unsigned count = 1;; ++count) {
        log.clear();
        DDS_DataReaderQos qos;
        ASSERT_EQ(DDS_DataReaderQos_initialize(&qos), DDS_RETCODE_OK);
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const int isRead = BRELCfgFileParser_getDataReaderQos(&qos, port_, "Square");
        const bool wasInjected = ZUVOsapiFault_getInjectedCount() != 0;
        ZUVOsapiFault_disarm();
        EXPECT_EQ(qos.history.depth, isRead ? 9 : 1);
        EXPECT_EQ(DDS_OctetSeq_get_length(&qos.user_data.value), isRead ? 3 : 0);
        EXPECT_TRUE(isRead || !log.isEmpty());
        DDS_DataReaderQos_finalize(&qos);
        expectEverythingIsAsBefore();
        failureCount += !isRead;
        if (!wasInjected) {
            EXPECT_TRUE(isRead);
            break;
        }
    }
    EXPECT_GT(failureCount, 50);
    DDS_DataReaderQos_finalize(&live);
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
