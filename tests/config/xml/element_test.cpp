// What elements have in common: names, references, targets, properties, children, and how they are written.
#include "ConfigTest.h"
#include "config/XmlChildIterator.h"

namespace zuv_test
{
namespace
{

using XmlElement = ConfigTest;

ZUVXMLUTILSObject *first(const Tree &tree)
{
    return ZUVXMLUTILSObject_getFirstChild(tree.get());
}

TEST_F(XmlElement, tagsStandInTheOrderOfASavedDocument)
{
    EXPECT_EQ(BRELXmlServiceTagId_COUNT, 6);
    EXPECT_EQ(BRELXmlAdministrationTagId_COUNT, 12);
    EXPECT_EQ(BRELXmlMonitoringTagId_COUNT, 9);
    EXPECT_EQ(BRELXmlDomainRouteTagId_COUNT, 1);
    EXPECT_EQ(BRELXmlConnectionTagId_COUNT, 6);
    EXPECT_EQ(BRELXmlSessionTagId_COUNT, 8);
    EXPECT_EQ(BRELXmlRouteTagId_COUNT, 11);
    EXPECT_EQ(BRELXmlStreamPortTagId_COUNT, 18);
    EXPECT_STREQ(BREL_XML_SERVICE_TAGS[BREL_XML_SERVICE_DOMAIN_ROUTE_TAG_ID], "domain_route");
    EXPECT_STREQ(BREL_XML_ADMINISTRATION_TAGS[BREL_XML_ADMINISTRATION_DISTLOG_TAG_ID],
                 "distributed_logger");
    EXPECT_STREQ(
        BREL_XML_ADMINISTRATION_TAGS[BREL_XML_ADMINISTRATION_REUSE_MONITORING_PARTICIPANT_TAG_ID],
        "reuse_monitoring_participant");
    EXPECT_STREQ(BREL_XML_MONITORING_TAGS[BREL_XML_MONITORING_SAMPLING_PERIOD_TAG_ID],
                 "statistics_sampling_period");
    EXPECT_STREQ(BREL_XML_DOMAIN_ROUTE_TAGS[BREL_XML_DOMAIN_ROUTE_ENTITY_MONITORING_TAG_ID],
                 "entity_monitoring");
    EXPECT_STREQ(BREL_XML_CONNECTION_TAGS[BREL_XML_CONNECTION_MEMORY_MANAGEMENT_TAG_ID],
                 "memory_management");
    EXPECT_STREQ(BREL_XML_SESSION_TAGS[BREL_XML_SESSION_PERIODIC_TAG_ID], "periodic_action");
    EXPECT_STREQ(BREL_XML_ROUTE_TAGS[BREL_XML_ROUTE_ORIGINAL_TIMESTAMP_TAG_ID],
                 "publish_with_original_timestamp");
    EXPECT_STREQ(BREL_XML_STREAM_PORT_TAGS[BREL_XML_STREAM_PORT_WAIT_FOR_ACK_TAG_ID],
                 "on_delete_wait_for_ack_timeout");
    EXPECT_STREQ(BREL_XML_STREAM_PORT_TAGS[BREL_XML_STREAM_PORT_AUTO_CONFIGURE_QOS_TAG_ID],
                 "auto_configure_qos");
}

TEST_F(XmlElement, tagsOfEachElement)
{
    using Tags = std::vector<std::string>;
    const auto tagsOf = [](const auto &array) { return Tags(std::begin(array), std::end(array)); };
    EXPECT_EQ(tagsOf(BREL_XML_SERVICE_TAGS), (Tags{"administration", "monitoring", "internal_clock",
                                                   "entity_monitoring", "jvm", "domain_route"}));
    EXPECT_EQ(
        tagsOf(BREL_XML_ADMINISTRATION_TAGS),
        (Tags{"domain_id", "distributed_logger", "domain_participant_qos", "participant_qos",
              "publisher_qos", "subscriber_qos", "datareader_qos", "datawriter_qos",
              "memory_management", "save_path", "save_on_update", "reuse_monitoring_participant"}));
    EXPECT_EQ(
        tagsOf(BREL_XML_MONITORING_TAGS),
        (Tags{"enabled", "domain_id", "ignore_initialization_failure", "status_publication_period",
              "statistics_sampling_period", "domain_participant_qos", "participant_qos",
              "publisher_qos", "datawriter_qos"}));
    EXPECT_EQ(tagsOf(BREL_XML_DOMAIN_ROUTE_TAGS), (Tags{"entity_monitoring"}));
    EXPECT_EQ(tagsOf(BREL_XML_CONNECTION_TAGS),
              (Tags{"domain_id", "domain_participant_qos", "participant_qos", "property",
                    "memory_management", "register_type"}));
    EXPECT_EQ(tagsOf(BREL_XML_SESSION_TAGS),
              (Tags{"entity_monitoring", "thread_pool", "auto_configure_publisher_qos",
                    "auto_configure_subscriber_qos", "periodic_action", "property", "publisher_qos",
                    "subscriber_qos"}));
    EXPECT_EQ(tagsOf(BREL_XML_ROUTE_TAGS),
              (Tags{"entity_monitoring", "route_types", "publish_with_original_info",
                    "publish_with_original_timestamp", "propagate_dispose", "propagate_unregister",
                    "topic_query_proxy", "stream_query_proxy", "filter_propagation",
                    "periodic_action", "enable_data_on_inputs"}));
    EXPECT_EQ(tagsOf(BREL_XML_STREAM_PORT_TAGS),
              (Tags{"entity_monitoring", "topic_name", "stream_name", "registered_type_name",
                    "allow_topic_name_filter", "allow_stream_name_filter",
                    "allow_registered_type_name_filter", "deny_topic_name_filter",
                    "deny_stream_name_filter", "deny_registered_type_name_filter", "creation_mode",
                    "property", "datawriter_qos", "datareader_qos", "content_filter",
                    "on_delete_wait_for_ack_timeout", "transformation", "auto_configure_qos"}));
}

TEST_F(XmlElement, aNameIsMadeOfTheTagAndANumber)
{
    const Tree tree = parse("<dds><session/><session name='x'/><session/><domain_route/><a_b_1c/>"
                            "</dds>");
    for (auto *child = first(tree); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        EXPECT_EQ(BRELXmlUtils_setAutoName(child), 1);
    }
    EXPECT_EQ(childrenOf(tree.get()),
              (std::vector<std::string>{"Session1", "x", "Session3", "DomainRoute1", "AB1c1"}));
}

TEST_F(XmlElement, aTagThatIsTooLongMakesNoName)
{
    const std::string tag(255, 't');
    const Tree tree = parse("<dds><" + tag + "/></dds>");
    EXPECT_EQ(BRELXmlUtils_setAutoName(first(tree)), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss,
          "!parse line 1: element <" + tag + ">: its tag is too long to make a name of it"}}));
}

TEST_F(XmlElement, namesWithinTheService)
{
    const Tree tree =
        parse("<dds><x name='svc'><x name='dr'><x name='ses'><x name='r'/></x></x></x></dds>");
    EXPECT_STREQ(BRELXmlObject_getFullyQualifiedNameRelativeToService(zuv_test::at(tree, "svc")),
                 "svc");
    EXPECT_STREQ(
        BRELXmlObject_getFullyQualifiedNameRelativeToService(zuv_test::at(tree, "svc::dr::ses::r")),
        "dr::ses::r");
}

TEST_F(XmlElement, aReferenceMayLeadNowhereButNotToAnotherKind)
{
    const Tree tree = parse("<dds><plugin_library name='L'><adapter_plugin name='A'/>"
                            "<java_adapter_plugin name='J'/><processor_plugin name='P'/>"
                            "</plugin_library><c/></dds>");
    ZUVXMLUTILSObject *const from = zuv_test::at(tree, "L::A");
    EXPECT_EQ(BRELXmlObject_checkReferencedObject(from, "L::A", "adapter_plugin"), 1);
    EXPECT_EQ(BRELXmlObject_checkReferencedObject(from, "L::J", "adapter_plugin"), 1);
    EXPECT_EQ(BRELXmlObject_checkReferencedObject(from, "L::none", "adapter_plugin"), 1);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(BRELXmlObject_checkReferencedObject(from, "L::P", "adapter_plugin"), 0);
    EXPECT_TRUE(log.isExactly({{&ZUVXMLUTILS_LOG_PARSER_ENTITY_WITH_TAG_NOT_PRESENT_ss,
                                "!find element 'L::P' with tag <adapter_plugin>"}}));
}

TEST_F(XmlElement, aTargetIsFoundByItsAddress)
{
    const Tree tree = parse("<dds><a/><b/></dds>");
    ZUVXMLUTILSObject *const a = first(tree);
    ZUVXMLUTILSObject *const b = ZUVXMLUTILSObject_getNextSibling(a);
    int record = 0;
    ZUVXMLUTILSObject_setUserData(b, &record);
    EXPECT_EQ(BRELXmlObject_getUpdateTarget(a), nullptr);
    EXPECT_EQ(BRELXmlObject_getUpdateTargetExtensionObject(a), nullptr);
    ASSERT_EQ(BRELXmlObject_setUpdateTarget(a, b), 1);
    EXPECT_EQ(BRELXmlObject_getUpdateTarget(a), b);
    EXPECT_EQ(BRELXmlObject_getUpdateTargetExtensionObject(a), &record);
    EXPECT_TRUE(log.isEmpty());
    ZUVXMLUTILSObject_setAttribute(a, BREL_XML_SUPPORT_UPDATE_TARGET_ATTR_NAME, "elsewhere");
    EXPECT_EQ(BRELXmlObject_getUpdateTarget(a), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_GET_FAILURE_s, "!get xml update target attribute"}}));
}

TEST_F(XmlElement, aTargetThatCannotBeSetIsReported)
{
    const Tree tree = parse("<dds><a/></dds>");
    ZUVOsapiFault_arm("xmlutils.attribute", 1, 0);
    EXPECT_EQ(BRELXmlObject_setUpdateTarget(first(tree), first(tree)), 0);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILURE_TEMPLATE, "!set attribute 'zuv_xml_object_update' of element <a>"},
         {&ZUV_LOG_ANY_FAILURE_s, "!set update target attribute"}}));
}

std::string textOf(const ZUV_BrelServiceProperties &properties)
{
    std::string text;
    for (int index = 0; index < properties.count; ++index) {
        text += std::string(properties.properties[index].name) + "=" +
                static_cast<const char *>(properties.properties[index].value) + ";";
    }
    return text;
}

TEST_F(XmlElement, propertiesComeInTwoForms)
{
    struct Case {
        const char *text;
        const char *properties;
    };
    const Case cases[] = {
        {"<p/>", ""},
        {"<p><value/></p>", ""},
        {"<p><value><element><name>a</name><value>1</value></element>"
         "<element><name>b</name></element></value></p>",
         "a=1;b=;"},
        {"<p><element><name>a</name><value>1</value></element>"
         "<other><name>A</name><value>2</value></other></p>",
         "a=2;"},
        {"<p><element><value>1</value></element></p>", "=1;"},
    };
    for (const auto &[text, expected] : cases) {
        ZUV_BrelServiceProperties properties;
        ZUV_BrelServiceProperties_initialize(&properties);
        EXPECT_EQ(BRELXmlProperty_parse(parse(text).get(), &properties), 1);
        EXPECT_EQ(textOf(properties), expected) << text;
        EXPECT_EQ(BRELXmlProperty_parseNoOverride(
                      parse("<p><e><name>a</name><value>9</value></e></p>").get(), &properties),
                  1);
        EXPECT_EQ(textOf(properties).find("a=9") != std::string::npos,
                  std::string(expected).find("a=") == std::string::npos);
        ZUV_BrelServiceProperties_finalize(&properties);
    }
}

TEST_F(XmlElement, aPropertyThatCannotBeAddedIsReportedAndKeepsThoseBefore)
{
    const Tree tree = parse("<p><e><name>a</name></e><e><name>b</name></e></p>");
    ZUV_BrelServiceProperties properties;
    ZUV_BrelServiceProperties_initialize(&properties);
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 4, 1);
    EXPECT_EQ(BRELXmlProperty_parse(tree.get(), &properties), 0);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(textOf(properties), "a=;");
    EXPECT_EQ(log.lines().back().message, &ZUV_LOG_ADD_FAILURE_s);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{"!allocate array of 2 elements of 16 bytes: out of memory",
                                        "!add property=b", "!add property"}));
    ZUV_BrelServiceProperties_finalize(&properties);
}

TEST_F(XmlElement, aPropertyIsFoundByName)
{
    const Tree tree = parse("<p><value><e><name>a</name></e><f><name>b</name></f></value></p>");
    EXPECT_STREQ(ZUVXMLUTILSObject_getTagName(BRELXmlProperty_lookUpElement(tree.get(), "b")), "f");
    EXPECT_EQ(BRELXmlProperty_lookUpElement(tree.get(), "c"), nullptr);
}

std::vector<std::string> walk(const char *own, const char *base)
{
    const Tree tree = parse(own);
    const Tree baseTree = base != nullptr ? parse(base) : nullptr;
    BRELXmlObjectChildIterator iterator = {};
    BRELXmlObjectChildIterator_begin(&iterator, baseTree.get(), tree.get());
    std::vector<std::string> tags;
    while (const auto *child = BRELXmlObjectChildIterator_next(&iterator)) {
        tags.push_back(ZUVXMLUTILSObject_getTagName(child));
    }
    EXPECT_EQ(BRELXmlObjectChildIterator_next(&iterator), nullptr);
    return tags;
}

TEST_F(XmlElement, childrenOfABaseComeBehindTheOwnOnes)
{
    using Tags = std::vector<std::string>;
    EXPECT_EQ(walk("<x><a/><b/></x>", nullptr), (Tags{"a", "b"}));
    EXPECT_EQ(walk("<x><a/></x>", "<y><b/><c/></y>"), (Tags{"a", "b", "c"}));
    EXPECT_EQ(walk("<x><a/></x>", "<y><a/><c/></y>"), (Tags{"a", "c"}));
    EXPECT_EQ(walk("<x><a name='n'/></x>", "<y><c name='n'/><d/></y>"), (Tags{"a", "d"}));
    // The last one comes even if it is overridden.
    EXPECT_EQ(walk("<x><a/></x>", "<y><c/><a/></y>"), (Tags{"a", "c", "a"}));
    EXPECT_EQ(walk("<x><a/></x>", "<y><a/></y>"), (Tags{"a", "a"}));
    EXPECT_EQ(walk("<x/>", "<y/>"), Tags{});
}

std::string written(const Tree &tree)
{
    ZUVXMLUTILSSaveContext *const context = ZUVXMLUTILSSaveContext_newForMemory();
    BRELXmlObject_save(tree.get(), context);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getDepth(context), 0);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context), 1);
    const std::string text = ZUVXMLUTILSSaveContext_getText(context);
    ZUVXMLUTILSSaveContext_delete(context);
    return text;
}

TEST_F(XmlElement, elementsAreWrittenWithTheirIndentation)
{
    EXPECT_EQ(written(parse("<a x='1' y='2'/>")), "<a x=\"1\" y=\"2\"/>\n");
    EXPECT_EQ(written(parse("<a> text </a>")), "<a> text </a>\n");
    EXPECT_EQ(written(parse("<a><b><c>1</c><d/></b></a>")), "<a>\n"
                                                            "    <b>\n"
                                                            "        <c>1</c>\n"
                                                            "        <d/>\n"
                                                            "    </b>\n"
                                                            "</a>\n");
    EXPECT_EQ(written(parse("<dds><!-- gone --></dds>")),
              "<dds xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"/>\n");
    EXPECT_EQ(written(parse("<a xmlns:s='http://www.w3.org/2001/XMLSchema-instance' "
                            "s:noNamespaceSchemaLocation='x.xsd' b='1'/>")),
              "<a b=\"1\"/>\n");
    EXPECT_EQ(written(parse("<a b='&lt;'>&amp;</a>")), "<a b=\"<\">&</a>\n");
}

TEST_F(XmlElement, aMarkKeepsAnElementOutOfWhatIsSaved)
{
    const Tree tree = parse("<a><b/><c/><d/></a>");
    ZUVXMLUTILSObject *const b = first(tree);
    ZUVXMLUTILSObject *const c = ZUVXMLUTILSObject_getNextSibling(b);
    EXPECT_EQ(BRELXmlUtils_canSave(b), 1);
    EXPECT_EQ(BRELXmlUtils_addSavePI(b, 0), 1);
    EXPECT_EQ(BRELXmlUtils_addSavePI(c, 1), 1);
    EXPECT_EQ(BRELXmlUtils_canSave(b), 0);
    // The text "1" is not the number 1.
    EXPECT_EQ(BRELXmlUtils_canSave(c), 0);
    EXPECT_STREQ(ZUVXMLUTILSObject_getProcessingInstruction(b, "zuv-object-save"), "0");
    EXPECT_STREQ(ZUVXMLUTILSObject_getProcessingInstruction(c, "zuv-object-save"), "1");
    EXPECT_EQ(written(tree), "<a>\n    <d/>\n</a>\n");
    ZUVXMLUTILSObject *const d = ZUVXMLUTILSObject_getNextSibling(c);
    ASSERT_EQ(ZUVXMLUTILSObject_addProcessingInstruction(d, "zuv-object-save", "\x01"), 1);
    EXPECT_EQ(BRELXmlUtils_canSave(d), 1);
}

TEST_F(XmlElement, aMarkThatCannotBeAddedIsReported)
{
    const Tree tree = parse("<a/>");
    ZUVOsapiFault_arm("xmlutils.processing_instruction", 1, 0);
    EXPECT_EQ(BRELXmlUtils_addSavePI(tree.get(), 0), 0);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE,
                                "!add processing instruction 'zuv-object-save' to element <a>"},
                               {&ZUV_LOG_ADD_FAILURE_s, "!add save processing instruction"}}));
}

TEST_F(XmlElement, theDepthOfASaveDoesNotOverflow)
{
    const Tree tree = parse("<a/>");
    ZUVXMLUTILSSaveContext *const context = ZUVXMLUTILSSaveContext_newForMemory();
    ZUVXMLUTILSSaveContext_setDepth(context, INT_MAX);
    BRELXmlObject_saveElementTag(tree.get(), context, 17);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getDepth(context), INT_MAX);
    ZUVXMLUTILSSaveContext_setDepth(context, INT_MIN);
    BRELXmlObject_saveElementTag(tree.get(), context, 36);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getDepth(context), INT_MIN);
    ZUVXMLUTILSSaveContext_delete(context);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: depth == 2147483647"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: depth == -2147483648"}}));
}

TEST_F(XmlElement, theVersionIsThatOfTheProductWithWhatTheAttributeSays)
{
    struct Case {
        const char *text;
        int major, minor, release;
    };
    const Case cases[] = {
        {"<dds/>", 7, 7, 0},
        {"<dds version='6.1'/>", 6, 1, 0},
        {"<dds version='6.1.5'/>", 6, 1, 5},
        {"<dds version='x'/>", 7, 7, 0},
    };
    for (const auto &[text, major, minor, release] : cases) {
        ZUV_BrelServiceVersion version;
        BRELXmlUtils_getVersion(parse(text).get(), &version);
        EXPECT_EQ(version.major, major) << text;
        EXPECT_EQ(version.minor, minor) << text;
        EXPECT_EQ(version.release, release) << text;
        EXPECT_EQ(version.revision, 0);
    }
    EXPECT_TRUE(log.isEmpty());
    ZUV_BrelServiceVersion version;
    BRELXmlUtils_getVersion(parse("<dds version='99999999999999999999.1.1'/>").get(), &version);
    EXPECT_TRUE(log.isExactly({{&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss,
                                "!parse line 1: element <dds>: invalid value in attribute "
                                "'version'"}}));
}

TEST_F(XmlElement, aNullIsAFailedPrecondition)
{
    ZUVLog_g_detectPrecondition = 1;
    ZUVLog_g_preconditionDetected = 0;
    EXPECT_EQ(BRELXmlObject_getDomainId(nullptr), nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: xmlObject == ((void *)0)"}}));
    EXPECT_EQ(ZUVLog_g_preconditionDetected, 1);
    ZUVLog_g_detectPrecondition = ZUVLog_g_preconditionDetected = 0;
    int number = 0;
    DDS_Boolean boolean = 0;
    DDS_Duration_t duration = {};
    EXPECT_EQ(BRELXmlInt_getValue(nullptr, &number), 0);
    EXPECT_EQ(BRELXmlBoolean_getValue(nullptr, &boolean), 0);
    EXPECT_EQ(BRELXmlDuration_getValue(nullptr, &duration), 0);
    EXPECT_EQ(BRELXmlUtils_setAutoName(nullptr), 0);
    EXPECT_EQ(BRELXmlObject_getXmlSupport(nullptr), nullptr);
    EXPECT_EQ(BRELXmlObject_getUpdateTarget(nullptr), nullptr);
    EXPECT_EQ(BRELXmlUtils_addSavePI(nullptr, 1), 0);
    EXPECT_EQ(BRELXmlUtils_canSave(nullptr), 0);
    EXPECT_EQ(log.lines().size(), 9U);
}

} // namespace
} // namespace zuv_test
